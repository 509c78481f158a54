#include "animatedimage/core/backgroundtile.h"

#include <QtCore/QtMath>
#include <QtGui/QPainter>

#include <cmath>
#include <cstring>
#include <unistd.h>

namespace BackgroundTile
{

namespace
{

/// The raster painter works on coordinates up to this; beyond, it paints nothing or wrongly.
constexpr int Reach = 32767;

bool canHold(double width, double height)
{
    // Qt's own arithmetic on pictures ends here; their memory ends before.
    constexpr double longestSide = 1 << 28;
    // The tile is four pictures, and the scaled one that is painted into it is a fifth.
    constexpr double bytesPerUnit = 5.0 * sizeof(QRgb);
    const double memory = double(sysconf(_SC_PHYS_PAGES)) * double(sysconf(_SC_PAGESIZE));
    return width > 0.0 && height > 0.0 && width < longestSide && height < longestSide &&
           bytesPerUnit * width * height <= memory;
}

/// The part @p rect of @p image, sharing its pixels, which must outlive it. Not for palettes.
QImage view(const QImage &image, const QRect &rect)
{
    const uchar *first = image.constScanLine(rect.top()) + rect.left() * qptrdiff(sizeof(QRgb));
    return {first, rect.width(), rect.height(), image.bytesPerLine(), image.format()};
}

/// The pixels of @p rect, and one more all round for the smoothing at its edges.
QRect aroundPixels(const QRectF &rect)
{
    return rect.toAlignedRect().adjusted(-1, -1, 1, 1);
}

/// @p rect in pieces that one painting call covers; whole where it can be.
QList<QRectF> withinReach(const QRectF &rect)
{
    QList<QRectF> pieces;
    constexpr int longest = Reach - 4; // with the pixels around it, and parts of pixels
    const int columns = qCeil(rect.width() / longest);
    const int rows = qCeil(rect.height() / longest);
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            const QPointF corner(column * longest, row * longest);
            pieces.append(QRectF(rect.topLeft() + corner, QSizeF(longest, longest)) & rect);
        }
    }
    return pieces;
}

/// Whether painting @p image over transparent pixels gives the same as replacing them by it. A
/// picture that is not premultiplied loses some levels where it is nearly transparent.
bool isReplacing(const QImage &image)
{
    return image.format() == QImage::Format_RGB32 ||
           image.format() == QImage::Format_ARGB32_Premultiplied;
}

/// Paints @p scaled into the top left quarter of @p tiled, which has twice its size.
void paintQuarter(QImage &tiled, const QImage &scaled)
{
    const auto pieces = withinReach(scaled.rect());
    for (const QRectF &rect : pieces) {
        const QRect piece = rect.toRect();
        uchar *first = tiled.scanLine(piece.top()) + piece.left() * qptrdiff(sizeof(QRgb));
        QImage target(first, piece.width(), piece.height(), tiled.bytesPerLine(), tiled.format());
        QPainter painter(&target);
        if (isReplacing(scaled))
            painter.setCompositionMode(QPainter::CompositionMode_Source);
        painter.drawImage(0, 0, pieces.size() == 1 ? scaled : scaled.copy(piece));
    }
}

/// Copies the top left quarter of @p tiled to the other three.
void repeatQuarter(QImage &tiled)
{
    const int height = tiled.height() / 2;
    const auto half = size_t(tiled.bytesPerLine()) / 2;
    for (int y = 0; y < height; ++y) {
        uchar *line = tiled.scanLine(y);
        std::memcpy(line + half, line, half);
        std::memcpy(tiled.scanLine(y + height), line, 2 * half);
    }
}

} // namespace

QRectF visiblePart(const QPointF &position, const QSizeF &size, const QRectF &page)
{
    const QRectF object(position, size);
    return {QPointF(qMax(0.0, -position.x()), qMax(0.0, -position.y())),
            object.intersected(page).size()};
}

QImage tile(const QImage &frame, const QSizeF &size)
{
    if (!canHold(size.width(), size.height()))
        return {};
    const int width = qRound(size.width());
    const int height = qRound(size.height());
    QImage tiled(2 * width, 2 * height, QImage::Format_ARGB32);
    if (tiled.isNull())
        return {};
    const QColor transparent(255, 255, 255, 0);
    if (frame.isNull()) {
        tiled.fill(transparent);
        return tiled;
    }
    const QImage scaled =
        frame.scaled(width, height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    if (scaled.isNull())
        return {};
    if (!isReplacing(scaled))
        tiled.fill(transparent);
    paintQuarter(tiled, scaled);
    repeatQuarter(tiled);
    return tiled;
}

double wrappedOffset(double offset, int length)
{
    double wrapped = std::fmod(offset, length);
    while (wrapped < 0.0)
        wrapped += length;
    return wrapped;
}

void paint(QPainter &painter, const QRectF &part, const QImage &tile, const QPointF &offset)
{
    const QRectF source(offset, part.size());
    if (tile.width() <= Reach && tile.height() <= Reach) {
        painter.drawImage(part, tile, source);
        return;
    }
    const QList<QRectF> pieces = withinReach(source & QRectF(tile.rect()));
    // Smooth edges of two pieces would leave a seam between them.
    if (pieces.size() > 1)
        painter.setRenderHint(QPainter::Antialiasing, false);
    for (const QRectF &piece : pieces) {
        const QRect pixels = aroundPixels(piece) & tile.rect();
        painter.drawImage(piece.translated(part.topLeft() - offset), view(tile, pixels),
                          piece.translated(-pixels.topLeft()));
    }
}

} // namespace BackgroundTile
