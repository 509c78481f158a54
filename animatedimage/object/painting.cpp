#include "animatedimage/core/backgroundtile.h"
#include "animatedimage/object/animatedimage.h"
#include "host/gddocument.h"
#include "host/gdpage.h"

#include <QtGui/QPainter>

#include <cmath>

namespace
{

bool isFinite(const QRectF &rect)
{
    return std::isfinite(rect.x()) && std::isfinite(rect.y()) && std::isfinite(rect.width()) &&
           std::isfinite(rect.height());
}

} // namespace

void CAnimatedImage::OnQPainterDraw(QPainter *painter)
{
    if (!painter)
        return;
    painter->setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                            QPainter::SmoothPixmapTransform);
    if (m_portraits.isEmpty())
        return;
    if (!m_belongDoc)
        getBelongDoc();
    if (isAlternateMode() && isBackgroundType()) {
        drawBackground(painter);
        return;
    }
    if (!isFrame(m_runningIndex))
        return;
    const QImage &image = m_portraits.at(m_runningIndex).image;
    painter->drawImage(m_rect, image, QRectF(QPointF(0.0, 0.0), QSizeF(image.size())));
}

void CAnimatedImage::drawBackground(QPainter *painter) const
{
    const double x =
        BackgroundTile::wrappedOffset(m_bgRect.x() - m_bgPos.x(), m_bgImage.width() / 2);
    const double y =
        BackgroundTile::wrappedOffset(m_bgRect.y() - m_bgPos.y(), m_bgImage.height() / 2);
    // A damaged document may hold any rectangle; the painter must not be asked for an endless one.
    if (isFinite(m_bgRect) && std::isfinite(x) && std::isfinite(y))
        BackgroundTile::paint(*painter, m_bgRect, m_bgImage, QPointF(x, y));
}

QRectF CAnimatedImage::boundingRect() const
{
    return isAlternateMode() && isBackgroundType() ? m_bgRect : CBaseObject::boundingRect();
}

void CAnimatedImage::generateBGImage(int index)
{
    measureOnce(index);
    m_bgImage = isFrame(index) ? BackgroundTile::tile(m_portraits.at(index).image, m_rect.size())
                               : QImage();
}

void CAnimatedImage::regenBGImage()
{
    m_bgRect = visibleRect();
    generateBGImage(m_runningIndex);
}

/// The part of the object that lies on its page, in item coordinates; all of it without a page.
QRectF CAnimatedImage::visibleRect()
{
    const QSizeF size = getSize();
    const IGdPage *page = GetPage();
    if (!page)
        return {QPointF(0.0, 0.0), size};
    // Where the object itself stands, not where its pattern was moved to.
    return BackgroundTile::visiblePart(CGDRootObject::getPos(), size, page->pageRect());
}
