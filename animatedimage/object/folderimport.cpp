#include "animatedimage/core/framenames.h"
#include "animatedimage/object/animatedimage.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>

namespace
{

bool isGifPath(const QString &path)
{
    return path.contains(QLatin1String(".gif"), Qt::CaseInsensitive);
}

/// The object in the file at @p path; an empty one when there is none to be had.
QJsonObject readJsonObject(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return {};
    // The text ends at the first zero byte.
    const QString text = QString::fromUtf8(file.readAll().constData());
    return QJsonDocument::fromJson(text.toUtf8()).object();
}

} // namespace

bool CAnimatedImage::loadFromFile(const QString &path)
{
    m_portraits.clear();
    m_runningIndex = 0;
    const QPointer<CAnimatedImage> self(this);
    if (isGifPath(path)) {
        loadFromGifFile(path);
        sizeToFirstFrame(true);
    } else {
        readFrameFolder(path);
    }
    if (self)
        updateRegion(true);
    return true;
}

bool CAnimatedImage::loadFromFile(const QString &path, QIODevice *device)
{
    m_portraits.clear();
    m_runningIndex = 0;
    if (!isGifPath(path))
        return false;
    const QPointer<CAnimatedImage> self(this);
    loadFromGifFile(path, device);
    sizeToFirstFrame(true);
    if (self)
        updateRegion(true);
    return true;
}

bool CAnimatedImage::loadFromImage(const QImage *image)
{
    if (!image)
        return true;
    m_portraits.clear();
    m_runningIndex = 0;
    m_portraits.append({generatePortraitName(objectName(), true), image->copy()});
    m_regions.noteNewFrames();
    const QPointer<CAnimatedImage> self(this);
    sizeToFirstFrame(true);
    if (self)
        updateRegion(0, true);
    return true;
}

void CAnimatedImage::sizeToFirstFrame(bool notify)
{
    if (!m_portraits.isEmpty())
        setSize(m_portraits.constFirst().image.size(), false, notify);
}

void CAnimatedImage::readFrameFolder(const QString &path)
{
    const QJsonObject config = readJsonObject(path + QLatin1String("/config.json"));
    const QString listKey = QStringLiteral("ImageList");
    if (!config.contains(listKey))
        return;

    const QString folderName = QDir(path).dirName();
    const QString fileKey = QStringLiteral("filename");
    int number = 0;
    const QJsonArray elements = config.value(listKey).toArray();
    for (const QJsonValue &value : elements) {
        // Numbers are places in the list: an element that is passed over leaves a gap.
        ++number;
        const QJsonObject element = value.toObject();
        if (!element.contains(fileKey))
            continue;
        const QImage image(path + QLatin1Char('/') + element.value(fileKey).toString());
        m_portraits.append({FrameNames::numbered(folderName, number), image});
    }
    m_regions.noteNewFrames();
    readFolderSettings(config);
    sizeToFirstFrame(false);
}

/// Takes over the settings that are present. The timer keeps its interval until play starts.
void CAnimatedImage::readFolderSettings(const QJsonObject &config)
{
    const auto read = [&config](QLatin1String key, auto assign) {
        const auto found = config.constFind(key);
        if (found != config.constEnd())
            assign(*found);
    };
    read(QLatin1String("ShiftInterval"),
         [this](const QJsonValue &v) { m_shiftInterval = v.toInt(0); });
    read(QLatin1String("LockScale"),
         [this](const QJsonValue &v) { m_keepRatio = v.toBool(false); });
    read(QLatin1String("ImageMirror"),
         [this](const QJsonValue &v) { m_mirrored = v.toBool(false); });
    read(QLatin1String("ImageFlip"), [this](const QJsonValue &v) { m_flipped = v.toBool(false); });
    read(QLatin1String("LoopCount"), [this](const QJsonValue &v) { m_loopCount = v.toInt(0); });
}
