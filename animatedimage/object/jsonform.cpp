#include "animatedimage/core/jsonkeys.h"
#include "animatedimage/object/savedform.h"
#include "host/gddocument.h"

bool CAnimatedImage::saveJson(QJsonObject &json)
{
    QList<QImage> images = SavedForm{*this}.storeOtherParams();
    CBaseObject::saveJson(json);
    getBelongDoc();

    json[JsonKey::isGif] = false;
    m_belongDoc->jsonImageList(json, images, JsonKey::imageList, true);
    json[JsonKey::shiftInterval] = m_shiftInterval;
    json[JsonKey::lockScale] = m_keepRatio;
    json[JsonKey::imageMirror] = m_mirror;
    json[JsonKey::imageFlip] = m_flip;
    json[JsonKey::loopCount] = m_loopCount;
    json[JsonKey::useGifInterval] = false;
    json[JsonKey::isRunning] = m_isRunning;
    return true;
}

bool CAnimatedImage::loadJson(QJsonObject &json)
{
    CBaseObject::loadJson(json);
    SavedForm::Frames saved = SavedForm{*this}.restoreOtherParams();

    // Members are looked up in a way that adds those that are missing, as null: a caller sees
    // from its object which members count.
    const bool isGif = json[JsonKey::isGif].toBool(false);
    getBelongDoc();
    QString gifPath;
    if (isGif)
        m_belongDoc->jsonFileReference(json, gifPath, JsonKey::gifFileName, false);
    else
        m_belongDoc->jsonImageList(json, saved.images, JsonKey::imageList, false);

    m_shiftInterval = json[JsonKey::shiftInterval].toInt(0);
    m_keepRatio = json[JsonKey::lockScale].toBool(false);
    m_mirror = json[JsonKey::imageMirror].toBool(false);
    m_flip = json[JsonKey::imageFlip].toBool(false);
    m_loopCount = json[JsonKey::loopCount].toInt(0);
    // Not used, but looked up like the others.
    (void)json[JsonKey::useGifInterval];
    (void)json[JsonKey::isRunning];
    m_isRunning = false;

    if (isGif)
        loadFromGifFile(gifPath);
    SavedForm{*this}.finishLoading(saved);
    return true;
}
