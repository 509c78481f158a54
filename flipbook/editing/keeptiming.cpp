#include "flipbook/editing/keeptiming.h"

#include "flipbook/base/failure.h"
#include "flipbook/editing/objectform.h"
#include "flipbook/object/formkeys.h"

#include <QtCore/QJsonArray>
#include <QtCore/QSet>

namespace
{

/// What the saved form of an object holds of its frames: three lists, paired by position.
struct FrameLists {
    QStringList names;
    QStringList sizes;
    QJsonArray pictures;
};

/// The name of a repeat: the first free one from @p number on, which then becomes the next.
QString repeatName(const QString &name, int &number, QSet<QString> &taken)
{
    QString candidate;
    do {
        candidate = QStringLiteral("%1 (%2)").arg(name, QString::number(number++));
    } while (taken.contains(candidate));
    taken.insert(candidate);
    return candidate;
}

FrameLists repeated(const FrameLists &frames, const RepeatPlan &plan)
{
    QSet<QString> taken(frames.names.cbegin(), frames.names.cend());
    FrameLists result;
    for (int i = 0; i < frames.pictures.size(); ++i) {
        const QString name = frames.names.value(i);
        int number = 2;
        for (int repeat = 0; repeat < plan.repeats.value(i, 1); ++repeat) {
            result.names.append(repeat == 0 ? name : repeatName(name, number, taken));
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
