#include "animatedimage/core/paintedcopy.h"

#include <QtGui/QPaintEngine>
#include <QtGui/QPainter>

#include <cmath>

namespace
{

/// Whether the painter works on pixels of a format in which both kinds of picture are blended with
/// the same result.
bool paintsPixels(const QPainter &painter)
{
    const QPaintEngine *engine = painter.paintEngine();
    if (!engine || engine->type() != QPaintEngine::Raster)
        return false;
    const QPaintDevice *device = engine->paintDevice();
    if (device->devType() != QInternal::Image)
        return false;
    const QImage::Format format = static_cast<const QImage *>(device)->format();
    return format == QImage::Format_ARGB32_Premultiplied || format == QImage::Format_RGB32;
}

bool isWhole(double number)
{
    return number == std::floor(number);
}

/// Whether smoothing rounds both kinds of picture in the same way: without rotation, if the picture
/// is enlarged, or reduced to at least half its size at whole pixels.
bool isSmoothedAlike(const QPainter &painter, const QRectF &target, const QSize &pixels)
{
    const QTransform &transform = painter.deviceTransform();
    if (transform.type() > QTransform::TxScale)
        return false;
    const QRectF place = transform.mapRect(target);
    const double least = std::min(place.width() / pixels.width(), place.height() / pixels.height());
    if (least >= 1.0)
        return true;
    return least >= 0.5 && isWhole(place.left()) && isWhole(place.top()) &&
           isWhole(place.width()) && isWhole(place.height());
}

} // namespace

QImage PaintedCopy::of(const QImage &picture, const QPainter &painter, const QRectF &target)
{
    if (m_key != picture.cacheKey()) {
        drop();
        m_key = picture.cacheKey();
        return picture;
    }
    if (picture.format() != QImage::Format_ARGB32 || !paintsPixels(painter) ||
        !isSmoothedAlike(painter, target, picture.size())) {
        return picture;
    }
    if (m_copy.isNull())
        make(picture);
    return m_copy.isNull() ? picture : m_copy;
}

void PaintedCopy::make(const QImage &picture)
{
    const qint64 bytes = picture.sizeInBytes();
    if (!m_budget.take(bytes))
        return;
    m_bytes = bytes;
    m_copy = picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    // If memory runs out, the picture itself is painted.
    if (m_copy.isNull())
        drop();
}

void PaintedCopy::drop()
{
    m_copy = QImage();
    m_budget.giveBack(m_bytes);
    m_bytes = 0;
}
