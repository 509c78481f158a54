#include "flipbook/documents/framefolderexport.h"

#include "flipbook/outputfile.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

QString fileName(int number)
{
    return QStringLiteral("frame-%1.png").arg(number, 4, 10, QLatin1Char('0'));
}

/// Whether proportions are kept is a setting that only the saved form tells.
bool keepsRatio(CBaseObject &object)
{
    QJsonObject form;
    object.saveJson(form);
    return form.value(QLatin1String("LockScale")).toBool();
}

} // namespace

QStringList exportFrameFolder(const Plugin &plugin, CBaseObject &object, const QString &folder,
                              const std::function<void(int)> &progress)
{
    QStringList losses;
    QJsonArray list;
    const Plugin::Frames frames = plugin.frames(object);
    for (const auto &[name, picture] : frames) {
        const QString file = fileName(list.size() + 1);
        list.append(QJsonObject{{QStringLiteral("filename"), file}});
        if (picture.isNull())
            losses.append(QStringLiteral("frame %1 is empty and has no file").arg(list.size()));
        else
            writePng(folder + QLatin1Char('/') + file, picture);
        if (progress)
            progress(list.size());
    }
    const AnimatedObject animated(object);
    const QJsonObject config{
        {QStringLiteral("ImageList"), list},
        {QStringLiteral("ShiftInterval"), animated.intervalMs()},
        {QStringLiteral("LockScale"), keepsRatio(object)},
        {QStringLiteral("ImageMirror"), object.isMirrored()},
        {QStringLiteral("ImageFlip"), object.isFlipped()},
        {QStringLiteral("LoopCount"), animated.loopCount()},
    };
    writeFile(folder + QLatin1String("/config.json"), QJsonDocument(config).toJson());
    return losses;
}
