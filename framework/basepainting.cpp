#include "framework/geometrycheck.h"
#include "host/baseobject.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>

#include <algorithm>

namespace
{

/// A shadow needs no more pixels than this on a side: it has no finer detail.
constexpr double MaxShadowSide = 2048.0;

QSize shadowPixels(const QSizeF &size)
{
    return QSize(qCeil(std::min(size.width(), MaxShadowSide)),
                 qCeil(std::min(size.height(), MaxShadowSide)));
}

/// Turns what is painted next around the middle of @p rect.
void mirrorAndFlip(QPainter *painter, const QRectF &rect, bool mirror, bool flip)
{
    painter->translate(rect.center());
    painter->scale(mirror ? -1.0 : 1.0, flip ? -1.0 : 1.0);
    painter->translate(-rect.center());
}

} // namespace

void CBaseObject::paint(QPainter *painter, const QStyleOptionGraphicsItem *, QWidget *)
{
    if (!painter)
        return;
    if (m_hasLayerEffects)
        paintShadow(painter);
    paintContent(painter);
}

void CBaseObject::paintContent(QPainter *painter)
{
    painter->save();
    if (m_mirrored || m_flipped)
        mirrorAndFlip(painter, m_rect, m_mirrored, m_flipped);
    OnQPainterDraw(painter);
    painter->restore();
}

void CBaseObject::paintShadow(QPainter *painter)
{
    const QSize pixels = shadowPixels(m_rect.size());
    if (pixels.isEmpty())
        return;
    // The cache holds the silhouette as the content is: neither mirrored nor moved.
    if (m_shadowCache.size() != pixels) {
        m_shadowCache = QImage(pixels, QImage::Format_ARGB32_Premultiplied);
        m_shadowCache.fill(Qt::transparent);
        QPainter silhouette(&m_shadowCache);
        silhouette.save();
        silhouette.scale(pixels.width() / m_rect.width(), pixels.height() / m_rect.height());
        OnQPainterDraw(&silhouette);
        silhouette.restore();
        silhouette.setCompositionMode(QPainter::CompositionMode_SourceIn);
        silhouette.fillRect(m_shadowCache.rect(), m_shadowColor);
    }
    painter->save();
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->translate(m_shadowOffset);
    mirrorAndFlip(painter, m_rect, m_mirrored, m_flipped);
    painter->drawImage(m_rect, m_shadowCache);
    painter->restore();
}

void CBaseObject::setLayerShadow(const QColor &color, const QPointF &offset)
{
    if (!isPlace(offset))
        return;
    geometryAboutToChange();
    m_hasLayerEffects = color.isValid();
    m_shadowColor = color;
    m_shadowOffset = offset;
    clearLayerEffectCache(ClearLayerEffectCacheReason::EffectChanged);
}

void CBaseObject::clearLayerEffectCache(ClearLayerEffectCacheReason)
{
    m_shadowCache = QImage();
    update();
}
