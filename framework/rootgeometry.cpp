#include "framework/geometrycheck.h"
#include "host/gdrootobject.h"

#include <QtWidgets/QGraphicsItem>

namespace
{

constexpr int TurnsFreely = 2;

double handleSize = 8.0;

} // namespace

void CGDRootObject::setPos(QPointF pos, bool notify)
{
    if (!isPlace(pos))
        return;
    geometryAboutToChange();
    m_pos = pos;
    geometryChanged(notify);
}

void CGDRootObject::setCenterPos(const QPointF &center, const QSizeF &size, double angle, bool)
{
    const QPointF pos = center - QPointF(size.width() / 2, size.height() / 2);
    if (!isExtent(size) || !isPlace(pos) || !std::isfinite(angle))
        return;
    const QRectF rect(QPointF(0, 0), size);
    // Objects that play are given the same place again with each frame.
    if (rect != m_rect || pos != m_pos)
        geometryAboutToChange();
    m_rect = rect;
    m_pos = pos;
    // The direction of an object that does not turn is not how it is painted: it stays.
    if (m_rotateType == TurnsFreely)
        m_rotateDegree = angle;
    geometryChanged(false);
}

QPointF CGDRootObject::getPos()
{
    return m_pos;
}

void CGDRootObject::setMirror(bool mirror, bool notify)
{
    geometryAboutToChange();
    m_mirrored = mirror;
    geometryChanged(notify);
}

void CGDRootObject::setFlip(bool flip, bool notify)
{
    geometryAboutToChange();
    m_flipped = flip;
    geometryChanged(notify);
}

QSizeF CGDRootObject::getSize() const
{
    return m_rect.size();
}

QRectF CGDRootObject::getClientRect() const
{
    return m_rect;
}

bool CGDRootObject::isMirrored() const
{
    return m_mirrored;
}

bool CGDRootObject::isFlipped() const
{
    return m_flipped;
}

double CGDRootObject::getRotate() const
{
    return m_rotateType == TurnsFreely ? m_rotateDegree : 0.0;
}

int CGDRootObject::getKTRotateType() const
{
    return m_rotateType;
}

double CGDRootObject::getKTRotateDegree() const
{
    return m_rotateDegree;
}

void CGDRootObject::setRotate(double degrees, bool notify)
{
    if (!std::isfinite(degrees))
        return;
    geometryAboutToChange();
    m_rotateDegree = degrees;
    geometryChanged(notify);
}

void CGDRootObject::setKTRotateType(int type)
{
    geometryAboutToChange();
    m_rotateType = type == 0 || type == 1 ? type : TurnsFreely;
    geometryChanged(false);
}

double CGDRootObject::getHandleSize() const
{
    return handleSize;
}

void CGDRootObject::SetHandleSize(double size)
{
    if (std::isfinite(size) && size >= 0.0)
        handleSize = size;
}

void CGDRootObject::updateAfterObjRectChanged(QGraphicsItem *item, bool notify)
{
    // What was painted before is painted over, also where only the shape or the bounds changed.
    geometryAboutToChange();
    m_rectStale = false;
    if (item)
        item->update();
    geometryChanged(notify);
}

void CGDRootObject::geometryAboutToChange() {}

void CGDRootObject::geometryChanged(bool) {}
