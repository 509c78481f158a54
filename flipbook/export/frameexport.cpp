#include "flipbook/export/frameexport.h"

#include "flipbook/base/outputfile.h"
#include "flipbook/object/animatedobject.h"
#include "framework/document.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <algorithm>

namespace
{

QString frameFile(int number, int count)
{
    const int digits = std::max(3, QString::number(count).size());
    return QStringLiteral("frame-%1.png").arg(number, digits, 10, QLatin1Char('0'));
}

QJsonObject configOf(CBaseObject &object, const QJsonObject &state, const QJsonArray &list)
{
    return {{QStringLiteral("ImageList"), list},
            {QStringLiteral("ShiftInterval"), state.value(QLatin1String("ShiftInterval"))},
            {QStringLiteral("LoopCount"), state.value(QLatin1String("LoopCount"))},
            {QStringLiteral("LockScale"), state.value(QLatin1String("LockScale"))},
            {QStringLiteral("ImageMirror"), object.isMirrored()},
            {QStringLiteral("ImageFlip"), object.isFlipped()}};
}

} // namespace

QStringList exportFrames(Document &document, CBaseObject &object, const QString &folder,
                         const std::function<void(int)> &progress)
{
    // The saved form has everything, and leaves each picture in the store as a PNG file.
    document.setKeepsImagesInline(false);
    QJsonObject state;
    object.saveJson(state);
    const QJsonArray images = state.value(QLatin1String("ImageList")).toArray();

    QStringList warnings;
    QJsonArray list;
    for (int i = 0; i < images.size(); ++i) {
        const QString name = frameFile(i + 1, images.size());
        list.append(QJsonObject{{QStringLiteral("filename"), name}});
        const QString digest = images.at(i).toObject().value(QLatin1String("digest")).toString();
        const QByteArray png = document.imageStore().png(digest);
        if (png.isEmpty())
            warnings << QStringLiteral("frame %1 is empty; %2 is not written").arg(i + 1).arg(name);
        else
            writeFile(folder + QLatin1Char('/') + name, png);
        progress(i + 1);
    }
    // Last, so that a folder that was not finished is not a frame folder.
    writeFile(folder + QStringLiteral("/config.json"),
              QJsonDocument(configOf(object, state, list)).toJson());
    return warnings;
}
