#include "animatedimage/core/region.h"

namespace OpaqueRegion
{

namespace
{

qint64 area(const QRect &rect)
{
    return qint64(rect.width()) * rect.height();
}

/// Appends the opaque runs of one scan line; @p values points at the byte that is judged in the
/// first pixel.
void appendRuns(QList<QRect> &row, const uchar *values, int bytesPerPixel, int width, int y,
                int threshold)
{
    bool inRun = false;
    int start = 0;
    for (int x = 0; x < width; ++x) {
        if (values[qsizetype(x) * bytesPerPixel] >= threshold) {
            if (!inRun)
                start = x;
            if (x == width - 1)
                row.append(QRect(QPoint(start, y), QPoint(x - 1, y)));
            inRun = true;
        } else if (inRun) {
            row.append(QRect(QPoint(start, y), QPoint(x - 1, y)));
            inRun = false;
        }
    }
}

/// Whether every run of @p row lies exactly below its partner, so that their unions add nothing.
bool fitsBelow(const QList<QRect> &open, const QList<QRect> &row)
{
    if (open.size() != row.size())
        return false;
    for (int i = 0; i < row.size(); ++i) {
        if (area(open.at(i) | row.at(i)) != area(open.at(i)) + area(row.at(i)))
            return false;
    }
    return true;
}

} // namespace

QImage measuredImage(const QImage &source, int maxSide)
{
    const auto pixels = static_cast<qint32>(quint32(source.width()) * quint32(source.height()));
    if (pixels <= maxSide * maxSide)
        return source;
    return source.scaled(maxSide, maxSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

QList<QRect> rectsFromImage(const QImage &image, int threshold)
{
    const int bytesPerPixel = image.depth() / 8;
    if (bytesPerPixel != 1 && bytesPerPixel != 4)
        return {};

    QList<QRect> done;
    QList<QRect> open;
    QList<QRect> row;
    for (int y = 0; y < image.height(); ++y) {
        row.clear();
        // The judged byte is the last of its pixel: the value itself, or the alpha.
        const uchar *values = image.constScanLine(y) + bytesPerPixel - 1;
        appendRuns(row, values, bytesPerPixel, image.width(), y, threshold);
        if (row.isEmpty())
            continue;
        if (open.isEmpty())
            open = row;
        else
            mergeRects(done, open, row);
    }
    return done + open;
}

void mergeRects(QList<QRect> &done, QList<QRect> &open, const QList<QRect> &row)
{
    if (!fitsBelow(open, row)) {
        done += open;
        open = row;
        return;
    }
    for (int i = 0; i < row.size(); ++i)
        open[i] |= row.at(i);
}

QRect mirrored(const QRect &rect, int width)
{
    return {width - 1 - rect.right(), rect.y(), rect.width(), rect.height()};
}

QRect flipped(const QRect &rect, int height)
{
    return {rect.x(), height - 1 - rect.bottom(), rect.width(), rect.height()};
}

} // namespace OpaqueRegion
