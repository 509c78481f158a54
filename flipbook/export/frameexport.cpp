#include "flipbook/export/frameexport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/base/saturating.h"
#include "flipbook/export/framefilename.h"
#include "flipbook/object/animatedobject.h"
#include "flipbook/object/formkeys.h"
#include "framework/document.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <new>

namespace
{

QJsonObject configOf(CBaseObject &object, const QJsonObject &state, const QJsonArray &list)
{
    return {{FormKey::ImageList, list},
            {FormKey::ShiftInterval, state.value(FormKey::ShiftInterval)},
            {FormKey::LoopCount, state.value(FormKey::LoopCount)},
            {FormKey::LockScale, state.value(FormKey::LockScale)},
            {FormKey::ImageMirror, object.isMirrored()},
            {FormKey::ImageFlip, object.isFlipped()}};
}

} // namespace

QStringList exportFrames(Document &document, CBaseObject &object, const MemoryAccount &memory,
                         OutputFolder &folder, const std::function<void(int)> &progress)
{
    // The saved form has everything, and leaves each picture in the store as a PNG file.
    document.setKeepsImagesInline(false);
    ImageStore &store = document.imageStore();
    store.setCapacity(Saturating::sum(memory.room(), store.byteCount()));
    QJsonObject state;
    if (!object.saveJson(state))
        throw std::bad_alloc();
    if (store.hasOverflowed())
        throw Failure{folder.path(),
                      QStringLiteral("its pictures as PNG files would need more memory than "
                                     "the %1 that are left of what --max-memory allows")
                          .arg(MemoryBudget::text(memory.room()))};
    const QJsonArray images = state.value(FormKey::ImageList).toArray();

    QStringList warnings;
    QJsonArray list;
    for (int i = 0; i < images.size(); ++i) {
        const QString frame = AnimatedObject(object).frameName(i);
        const QString name = frameFileName(i + 1, images.size(), frame);
        list.append(QJsonObject{{FormKey::FileName, name}, {FormKey::Name, frame}});
        const QString digest = images.at(i).toObject().value(QLatin1String("digest")).toString();
        const QByteArray png = store.png(digest);
        if (png.isEmpty())
            warnings << QStringLiteral("frame %1 is empty; %2 is not written").arg(i + 1).arg(name);
        else
            folder.write(name, png);
        progress(i + 1);
    }
    // Last, so that a folder that was not finished is not a frame folder.
    folder.write(QStringLiteral("config.json"),
                 QJsonDocument(configOf(object, state, list)).toJson());
    return warnings;
}
