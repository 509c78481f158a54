#include "benchmarks/support/drawings.h"

#include <QtGui/QPainter>

#include <cmath>
#include <random>

namespace Drawings
{

namespace
{

QImage blank(const QSize &size)
{
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    return image;
}

/// A picture whose pixel (x, y) is opaque where @p isOpaque says so.
template<typename IsOpaque>
QImage drawn(const QSize &size, IsOpaque isOpaque)
{
    QImage image = blank(size);
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            if (isOpaque(x, y))
                line[x] = qRgb(40 + x % 160, 60, 90 + y % 120);
        }
    }
    return image;
}

} // namespace

QImage opaque(const QSize &size)
{
    return drawn(size, [](int, int) { return true; });
}

QImage empty(const QSize &size)
{
    return blank(size);
}

QImage blob(const QSize &size)
{
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::darkCyan);
    painter.setPen(Qt::NoPen);
    painter.drawEllipse(QRectF(QPointF(0, 0), QSizeF(size)).adjusted(8, 8, -8, -8));
    return image;
}

QImage text(const QSize &size)
{
    QImage image = blank(size);
    QPainter painter(&image);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPixelSize(14);
    painter.setFont(font);
    painter.setPen(Qt::black);
    painter.drawText(image.rect(), Qt::TextWordWrap,
                     QStringLiteral("The quick brown fox jumps over the lazy dog. ").repeated(40));
    return image;
}

QImage dither(const QSize &size, int phase)
{
    static constexpr int order[4][4] = {
        {0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    return drawn(size, [&](int x, int y) {
        return (x + phase) % size.width() * 16 / size.width() > order[y % 4][x % 4];
    });
}

QImage checker(const QSize &size)
{
    return drawn(size, [](int x, int y) { return (x + y) % 2 == 0; });
}

QImage noise(const QSize &size)
{
    std::mt19937 random(1);
    return drawn(size, [&](int, int) { return random() % 2 == 0; });
}

QImage rectangles(const QSize &size, int count, int phase)
{
    const int columns = int(std::ceil(std::sqrt(count)));
    const int rows = (count + columns - 1) / columns;
    const int width = size.width() / columns;
    const int height = size.height() / rows;
    // Gaps between them, and columns that begin one row apart: no row has the runs of the one
    // above.
    return drawn(size, [&](int x, int y) {
        const int column = x / width;
        const int row = (y + phase) % size.height() / height;
        return column < columns && row < rows && row * columns + column < count &&
               x % width < width - 2 && (y + phase) % height < height - 2;
    });
}

QImage cartoon(const QSize &size, int phase)
{
    QImage image = blank(size);
    QPainter painter(&image);
    painter.setPen(QPen(Qt::black, 3));
    const double w = size.width();
    const double h = size.height();
    const double step = phase % 60 / 60.0;
    const double swing = std::sin(step * 6.28318);
    painter.setBrush(QColor(240, 200, 60));
    painter.drawEllipse(QPointF(w * (0.2 + 0.6 * step), h * 0.3), w * 0.12, w * 0.12);
    painter.setBrush(QColor(60, 120, 220));
    painter.drawRect(QRectF(w * (0.1 + 0.6 * step), h * 0.45, w * 0.2, h * 0.3));
    painter.setBrush(QColor(90, 60, 30));
    painter.drawRect(QRectF(w * (0.12 + 0.6 * step + 0.05 * swing), h * 0.75, w * 0.05, h * 0.2));
    painter.drawRect(QRectF(w * (0.22 + 0.6 * step - 0.05 * swing), h * 0.75, w * 0.05, h * 0.2));
    painter.setBrush(QColor(60, 160, 70));
    painter.drawRect(QRectF(0, h * 0.95, w, h * 0.05));
    return image;
}

QImage photo(const QSize &size, int phase)
{
    QImage image(size, QImage::Format_RGB32);
    std::mt19937 random{unsigned(phase + 1)};
    for (int y = 0; y < size.height(); ++y) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            const double wave = std::sin((x + 3 * phase) * 0.011) + std::cos(y * 0.017);
            const int grain = int(random() % 24);
            line[x] = qRgb(int(100 + 40 * wave) + grain, x * 200 / size.width() + grain,
                           y * 200 / size.height() + grain);
        }
    }
    return image;
}

} // namespace Drawings
