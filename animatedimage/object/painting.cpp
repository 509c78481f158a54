#include "animatedimage/core/backgroundtile.h"
#include "animatedimage/object/animatedimage.h"
#include "host/gdpage.h"

#include <QtGui/QPainter>

#include <cmath>
#include <new>

namespace
{

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

/// Paints @p part of a pattern of tiles that was moved to @p position.
void paintPattern(QPainter &painter, const QRectF &part, const QPointF &position,
                  const QImage &tile)
{
    const double x = BackgroundTile::wrappedOffset(part.x() - position.x(), tile.width() / 2);
    const double y = BackgroundTile::wrappedOffset(part.y() - position.y(), tile.height() / 2);
    // A damaged document may hold any rectangle; the painter must not be asked for an endless one.
    if (isFinite(part) && std::isfinite(x) && std::isfinite(y))
        BackgroundTile::paint(painter, part, tile, QPointF(x, y));
}

} // namespace

void CAnimatedImage::OnQPainterDraw(QPainter *painter)
try {
    if (!painter)
        return;
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                            QPainter::SmoothPixmapTransform);
    if (m_portraits.isEmpty())
        return;
    if (!m_belongDoc)
        getBelongDoc();
    if (isAlternateMode() && isBackgroundType()) {
        paintPattern(*painter, m_bgRect, m_bgPos, m_bgImage);
        return;
    }
    if (!isFrame(m_runningIndex))
        return;
    const QImage &image = m_portraits.at(m_runningIndex).image;
    painter->drawImage(m_rect, m_paintedCopy.of(image, *painter, m_rect),
                       QRectF(QPointF(0.0, 0.0), QSizeF(image.size())));
} catch (const std::bad_alloc &) {
}

QRectF CAnimatedImage::boundingRect() const
{
    return isAlternateMode() && isBackgroundType() ? m_bgRect : CBaseObject::boundingRect();
}

void CAnimatedImage::generateBGImage(int index)
try {
    measureOnce(index);
    m_bgImage = isFrame(index) ? BackgroundTile::tile(m_portraits.at(index).image, m_rect.size())
                               : QImage();
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::regenBGImage()
try {
    m_bgRect = visibleRect();
    generateBGImage(m_runningIndex);
} catch (const std::bad_alloc &) {
}

QRectF CAnimatedImage::visibleRect()
{
    const QSizeF size = getSize();
    const IGdPage *page = GetPage();
    if (!page)
        return {QPointF(0.0, 0.0), size};
    // The position of the object itself, not that of its pattern.
    return BackgroundTile::visiblePart(CGDRootObject::getPos(), size, page->pageRect());
}
