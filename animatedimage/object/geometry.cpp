#include "animatedimage/core/framelist.h"
#include "animatedimage/object/animatedimage.h"
#include "host/notificationcodes.h"

#include <new>

namespace
{

/// The status of an object that the host's own editing moves, also while presenting.
constexpr int MovedByHost = 2;

} // namespace

void CAnimatedImage::setSize(QSizeF size, bool keepCenter, bool notify)
try {
    if (!outlives([&] { CBaseObject::setSize(size, keepCenter, notify); }))
        return;
    updateRegion(false);
    // A background has one size for all its frames: that of the object.
    if (isBackgroundType())
        FrameList::resize(framesWithSizes(), m_rect.size());
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::setCenterPos(const QPointF &center, const QSizeF &size, double angle,
                                  bool update)
try {
    CGDRootObject::setCenterPos(center, size, angle, update);
    if (isBackgroundType()) {
        FrameList::resize(framesWithSizes(), m_rect.size());
        regenBGImage();
    }
    if (update) {
        updateRegion(false);
        updateAfterObjRectChanged(GetGraphicsItemPtr(), true);
    }
} catch (const std::bad_alloc &) {
}

QPointF CAnimatedImage::getPos()
{
    return isAlternateMode() && isBackgroundType() ? m_bgPos : CGDRootObject::getPos();
}

void CAnimatedImage::setPos(QPointF pos, bool notify)
try {
    if (isAlternateMode() && isBackgroundType() && m_status != MovedByHost) {
        m_bgPos = pos;
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
        return;
    }
    CGDRootObject::setPos(pos, notify);
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::setMirror(bool mirror, bool notify)
try {
    if (outlives([=] { CGDRootObject::setMirror(mirror, notify); }))
        followMirrorOrFlip();
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::setFlip(bool flip, bool notify)
try {
    if (outlives([=] { CGDRootObject::setFlip(flip, notify); }))
        followMirrorOrFlip();
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::followMirrorOrFlip()
{
    updateRegion(true);
    if (m_hasLayerEffects)
        clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}
