#include "flipbook/editing/keeptiming.h"

#include "flipbook/base/failure.h"
#include "flipbook/editing/objectform.h"
#include "flipbook/import/framenames.h"
#include "flipbook/object/formkeys.h"

#include <QtCore/QJsonArray>

namespace
{

/// What the saved form of an object holds of its frames: three lists, paired by position.
struct FrameLists {
    QStringList names;
    QStringList sizes;
    QJsonArray pictures;
};

FrameLists repeated(const FrameLists &frames, const RepeatPlan &plan)
{
    FrameNames names(frames.names);
    FrameLists result;
    for (int i = 0; i < frames.pictures.size(); ++i) {
        const QString name = frames.names.value(i);
        for (int repeat = 0; repeat < plan.repeats.value(i, 1); ++repeat) {
            result.names.append(repeat == 0 ? name : names.give(name));
            result.sizes.append(frames.sizes.value(i));
            result.pictures.append(frames.pictures.at(i));
        }
    }
    return result;
}

} // namespace

CBaseObject *repeatFrames(const Plugin &plugin, Page &page, CBaseObject &object,
                          const RepeatPlan &plan, const QString &subject)
{
    if (plan.frameCount() > MaxRepeatedFrames)
        throw Failure{subject, QStringLiteral("keeping its timing would take %1 frames, more than "
                                              "the %2 that are allowed")
                                   .arg(plan.frameCount())
                                   .arg(MaxRepeatedFrames)};
    return rebuilt(plugin, page, object, [&object, &plan](QJsonObject &form) {
        FrameLists frames;
        // Saving has brought the parameters up to date.
        frames.names = object.getOtherParams(FormKey::FrameNames).toStringList();
        frames.sizes = object.getOtherParams(FormKey::FrameSizes).toStringList();
        frames.pictures = form.value(FormKey::ImageList).toArray();
        frames = repeated(frames, plan);

        QJsonObject params = form.value(FormKey::OtherParams).toObject();
        params.insert(FormKey::FrameNames, QJsonArray::fromStringList(frames.names));
        params.insert(FormKey::FrameSizes, QJsonArray::fromStringList(frames.sizes));
        form.insert(FormKey::OtherParams, params);
        form.insert(FormKey::ImageList, frames.pictures);
        form.insert(FormKey::ShiftInterval, plan.intervalMs);
    });
}
