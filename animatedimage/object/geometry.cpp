#include "animatedimage/object/animatedimage.h"
#include "host/notificationcodes.h"

#include <QtCore/QPointer>

namespace
{

/// The status of an object that the host's own editing moves, also while presenting.
constexpr int movedByHost = 2;

} // namespace

void CAnimatedImage::setSize(QSizeF size, bool keepCenter, bool notify)
{
    const QPointer<CAnimatedImage> self(this);
    CBaseObject::setSize(size, keepCenter, notify);
    if (!self)
        return;
    updateRegion(false);
    if (isBackgroundType())
        followObjectSize();
}

/// A background has one size for all its frames: that of the object.
void CAnimatedImage::followObjectSize()
{
    for (CAnimatedPortrait &frame : m_portraits)
        frame.size = m_rect.size();
}

void CAnimatedImage::setCenterPos(const QPointF &center, const QSizeF &size, double angle,
                                  bool update)
{
    CGDRootObject::setCenterPos(center, size, angle, update);
    if (isBackgroundType()) {
        followObjectSize();
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
    if (isAlternateMode() && isBackgroundType() && m_status != movedByHost) {
        m_bgPos = pos;
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
        return;
    }
    CGDRootObject::setPos(pos, notify);
}

void CAnimatedImage::setMirror(bool mirror, bool notify)
{
    const QPointer<CAnimatedImage> self(this);
    CGDRootObject::setMirror(mirror, notify);
    if (self)
        followMirrorOrFlip();
}

void CAnimatedImage::setFlip(bool flip, bool notify)
{
    const QPointer<CAnimatedImage> self(this);
    CGDRootObject::setFlip(flip, notify);
    if (self)
        followMirrorOrFlip();
}

void CAnimatedImage::followMirrorOrFlip()
{
    updateRegion(true);
    if (m_hasLayerEffects)
        clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}
