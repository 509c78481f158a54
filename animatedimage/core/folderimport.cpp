#include "animatedimage/core/folderimport.h"

#include "animatedimage/core/framenames.h"
#include "animatedimage/core/jsonkeys.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

namespace
{

/// The object in the file at @p path; an empty one if there is none.
QJsonObject readJsonObject(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The text ends at the first zero byte.
    const QString text = QString::fromUtf8(file.readAll().constData());
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

QList<CAnimatedPortrait> readFrames(const QString &path, const QJsonArray &elements)
{
    const QString folderName = QDir(path).dirName();
    QList<CAnimatedPortrait> frames;
    int number = 0;
    for (const QJsonValue &value : elements) {
        // Numbers are places in the list: an element that is passed over leaves a gap.
        ++number;
        const QJsonObject element = value.toObject();
        if (!element.contains(JsonKey::FileName))
            continue;
        const QImage image(path + QLatin1Char('/') + element.value(JsonKey::FileName).toString());
        frames.append({FrameNames::numbered(folderName, number), image});
    }
    return frames;
}

std::optional<int> number(const QJsonObject &config, QLatin1String key)
{
    return config.contains(key) ? std::optional<int>(config.value(key).toInt(0)) : std::nullopt;
}

std::optional<bool> flag(const QJsonObject &config, QLatin1String key)
{
    return config.contains(key) ? std::optional<bool>(config.value(key).toBool(false))
                                : std::nullopt;
}

} // namespace

FrameFolder readFrameFolder(const QString &path)
{
    const QJsonObject config = readJsonObject(path + QLatin1String("/config.json"));
    if (!config.contains(JsonKey::ImageList))
        return {};
    return {readFrames(path, config.value(JsonKey::ImageList).toArray()),
            number(config, JsonKey::ShiftInterval),
            flag(config, JsonKey::LockScale),
            flag(config, JsonKey::ImageMirror),
            flag(config, JsonKey::ImageFlip),
            number(config, JsonKey::LoopCount)};
}
