#include "animatedimage/core/framelist.h"
#include "animatedimage/object/animatedimage.h"
#include "host/notificationcodes.h"

namespace
{

/// The status of an object that the host's own editing moves, also while presenting.
constexpr int MovedByHost = 2;

} // namespace

void CAnimatedImage::setSize(QSizeF size, bool keepCenter, bool notify)
{
    if (!outlives([&] { CBaseObject::setSize(size, keepCenter, notify); }))
        return;
    updateRegion(false);
    // A background has one size for all its frames: that of the object.
    if (isBackgroundType())
        FrameList::resize(framesWithSizes(), m_rect.size());
}

void CAnimatedImage::setCenterPos(const QPointF &center, const QSizeF &size, double angle,
                                  bool update)
{
    CGDRootObject::setCenterPos(center, size, angle, update);
    if (isBackgroundType()) {
        FrameList::resize(framesWithSizes(), m_rect.size());
        regenBGImage();
    }
    if (update) {
        updateRegion(false);
        updateAfterObjRectChanged(GetGraphicsItemPtr(), true);
    }
}

QPointF CAnimatedImage::getPos()
{
    return isAlternateMode() && isBackgroundType() ? m_bgPos : CGDRootObject::getPos();
}

void CAnimatedImage::setPos(QPointF pos, bool notify)
{
    if (isAlternateMode() && isBackgroundType() && m_status != MovedByHost) {
        m_bgPos = pos;
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
        return;
    }
    CGDRootObject::setPos(pos, notify);
}

void CAnimatedImage::setMirror(bool mirror, bool notify)
{
    if (outlives([=] { CGDRootObject::setMirror(mirror, notify); }))
        followMirrorOrFlip();
}

void CAnimatedImage::setFlip(bool flip, bool notify)
{
    if (outlives([=] { CGDRootObject::setFlip(flip, notify); }))
        followMirrorOrFlip();
}

void CAnimatedImage::followMirrorOrFlip()
{
    updateRegion(true);
    if (m_hasLayerEffects)
        clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}
