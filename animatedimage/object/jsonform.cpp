#include "animatedimage/object/animatedimage.h"
#include "animatedimage/object/savedframes.h"
#include "host/gddocument.h"

namespace
{

namespace Key
{
const QLatin1String isGif("IsGif");
const QLatin1String imageList("ImageList");
const QLatin1String gifFileName("GifFileName");
const QLatin1String shiftInterval("ShiftInterval");
const QLatin1String lockScale("LockScale");
const QLatin1String imageMirror("ImageMirror");
const QLatin1String imageFlip("ImageFlip");
const QLatin1String loopCount("LoopCount");
const QLatin1String useGifInterval("UseGifInterval");
const QLatin1String isRunning("IsRunning");
} // namespace Key

} // namespace

bool CAnimatedImage::saveJson(QJsonObject &json)
{
    QList<QImage> images = storeOtherParams();
    CBaseObject::saveJson(json);
    getBelongDoc();

    json[Key::isGif] = false;
    m_belongDoc->jsonImageList(json, images, Key::imageList, true);
    json[Key::shiftInterval] = m_shiftInterval;
    json[Key::lockScale] = m_keepRatio;
    json[Key::imageMirror] = m_mirror;
    json[Key::imageFlip] = m_flip;
    json[Key::loopCount] = m_loopCount;
    json[Key::useGifInterval] = false;
    json[Key::isRunning] = m_isRunning;
    return true;
}

bool CAnimatedImage::loadJson(QJsonObject &json)
{
    CBaseObject::loadJson(json);
    SavedFrames saved = restoreOtherParams();

    // Members are looked up in a way that adds those that are missing, as null: a caller sees
    // from its object which members count.
    const bool isGif = json[Key::isGif].toBool(false);
    getBelongDoc();
    QString gifPath;
    if (isGif)
        m_belongDoc->jsonFileReference(json, gifPath, Key::gifFileName, false);
    else
        m_belongDoc->jsonImageList(json, saved.images, Key::imageList, false);

    m_shiftInterval = json[Key::shiftInterval].toInt(0);
    m_keepRatio = json[Key::lockScale].toBool(false);
    m_mirror = json[Key::imageMirror].toBool(false);
    m_flip = json[Key::imageFlip].toBool(false);
    m_loopCount = json[Key::loopCount].toInt(0);
    // Not used, but looked up like the others.
    (void)json[Key::useGifInterval];
    (void)json[Key::isRunning];
    m_isRunning = false;

    if (isGif)
        loadFromGifFile(gifPath);
    rebuildFrames(saved);
    finishLoading();
    return true;
}
