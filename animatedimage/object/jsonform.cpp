#include "animatedimage/core/jsonkeys.h"
#include "animatedimage/object/savedform.h"
#include "host/gddocument.h"

#include <new>

bool CAnimatedImage::saveJson(QJsonObject &json)
try {
    QList<QImage> images = SavedForm{*this}.storeOtherParams();
    CBaseObject::saveJson(json);
    getBelongDoc();

    json[JsonKey::IsGif] = false;
    m_belongDoc->jsonImageList(json, images, JsonKey::ImageList, true);
    json[JsonKey::ShiftInterval] = m_shiftInterval;
    json[JsonKey::LockScale] = m_keepRatio;
    json[JsonKey::ImageMirror] = m_mirror;
    json[JsonKey::ImageFlip] = m_flip;
    json[JsonKey::LoopCount] = m_loopCount;
    json[JsonKey::UseGifInterval] = false;
    json[JsonKey::IsRunning] = m_isRunning;
    return true;
} catch (const std::bad_alloc &) {
    return false;
}

bool CAnimatedImage::loadJson(QJsonObject &json)
try {
    CBaseObject::loadJson(json);
    SavedForm::Frames saved = SavedForm{*this}.restoreOtherParams();

    // Members are looked up in a way that adds those that are missing, as null: a caller sees
    // from its object which members count.
    const bool isGif = json[JsonKey::IsGif].toBool(false);
    getBelongDoc();
    QString gifPath;
    if (isGif)
        m_belongDoc->jsonFileReference(json, gifPath, JsonKey::GifFileName, false);
    else
        m_belongDoc->jsonImageList(json, saved.images, JsonKey::ImageList, false);

    m_shiftInterval = json[JsonKey::ShiftInterval].toInt(0);
    m_keepRatio = json[JsonKey::LockScale].toBool(false);
    m_mirror = json[JsonKey::ImageMirror].toBool(false);
    m_flip = json[JsonKey::ImageFlip].toBool(false);
    m_loopCount = json[JsonKey::LoopCount].toInt(0);
    // Not used, but looked up like the others.
    (void)json[JsonKey::UseGifInterval];
    (void)json[JsonKey::IsRunning];
    m_isRunning = false;

    if (isGif)
        loadFromGifFile(gifPath);
    SavedForm{*this}.finishLoading(saved);
    return true;
} catch (const std::bad_alloc &) {
    return false;
}
