#include "flipbook/import/filmcanvas.h"

#include <cstring>

namespace
{

constexpr int Opaque = 255;

/// @p numerator / @p denominator, rounded to the nearest.
int divided(int numerator, int denominator)
{
    return (numerator + denominator / 2) / denominator;
}

/// Colours weigh as much as they are opaque; neither is premultiplied.
QRgb over(QRgb top, QRgb bottom)
{
    const int above = qAlpha(top) * Opaque;
    const int below = qAlpha(bottom) * (Opaque - qAlpha(top));
    const int both = above + below;
    if (both == 0)
        return 0;
    const auto mixed = [&](int topColour, int bottomColour) {
        return divided(topColour * above + bottomColour * below, both);
    };
    return qRgba(mixed(qRed(top), qRed(bottom)), mixed(qGreen(top), qGreen(bottom)),
                 mixed(qBlue(top), qBlue(bottom)), divided(both, Opaque));
}

void putRow(QRgb *to, const QRgb *from, int count, FilmCanvas::Blend blend)
{
    if (blend == FilmCanvas::Blend::Source) {
        std::memcpy(to, from, std::size_t(count) * sizeof(QRgb));
        return;
    }
    for (int x = 0; x < count; ++x) {
        if (qAlpha(from[x]) == Opaque)
            to[x] = from[x];
        else if (qAlpha(from[x]) > 0)
            to[x] = over(from[x], to[x]);
    }
}

void put(QImage &canvas, const QImage &picture, const QPoint &place, FilmCanvas::Blend blend)
{
    for (int y = 0; y < picture.height(); ++y) {
        auto *to = reinterpret_cast<QRgb *>(canvas.scanLine(place.y() + y)) + place.x();
        const auto *from = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        putRow(to, from, picture.width(), blend);
    }
}

void clear(QImage &canvas, const QRect &place)
{
    for (int y = place.top(); y <= place.bottom(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(canvas.scanLine(y)) + place.left();
        std::memset(row, 0, std::size_t(place.width()) * sizeof(QRgb));
    }
}

} // namespace

FilmCanvas::FilmCanvas(const QSize &size)
    : m_canvas(size, QImage::Format_ARGB32)
{
    m_canvas.fill(0);
}

void FilmCanvas::dispose()
{
    if (m_disposal == Disposal::Clear)
        clear(m_canvas, m_place);
    if (m_disposal == Disposal::Restore)
        put(m_canvas, m_before, m_place.topLeft(), Blend::Source);
    m_before = QImage();
}

QImage FilmCanvas::show(const QImage &picture, const QPoint &place, Blend blend, Disposal disposal)
{
    dispose();
    m_place = QRect(place, picture.size());
    m_disposal = disposal;
    if (disposal == Disposal::Restore)
        m_before = m_canvas.copy(m_place);
    put(m_canvas, picture.convertToFormat(QImage::Format_ARGB32), place, blend);
    return m_canvas;
}
