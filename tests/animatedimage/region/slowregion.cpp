#include "slowregion.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace SlowRegion
{

namespace
{

/// A rectangle by its inclusive corners; one of no width has its right edge left of its left one.
struct Corners {
    int left;
    int top;
    int right;
    int bottom;

    long area() const { return long(right - left + 1) * (bottom - top + 1); }
};

using Rectangles = std::vector<Corners>;

Corners united(const Corners &a, const Corners &b)
{
    return {std::min(a.left, b.left), std::min(a.top, b.top), std::max(a.right, b.right),
            std::max(a.bottom, b.bottom)};
}

bool isOpaque(const QImage &image, int x, int y, int threshold)
{
    const int bytesPerPixel = image.depth() / 8;
    unsigned char pixel[4] = {};
    std::memcpy(pixel, image.constScanLine(y) + qint64(x) * bytesPerPixel, size_t(bytesPerPixel));
    return bytesPerPixel == 1 ? pixel[0] >= threshold : pixel[3] >= threshold;
}

Rectangles runsOfRow(const QImage &image, int y, int threshold)
{
    Rectangles row;
    bool inRun = false;
    int start = 0;
    for (int x = 0; x <= image.width() - 1; ++x) {
        const bool opaque = isOpaque(image, x, y, threshold);
        if (opaque && !inRun)
            start = x;
        const bool isLastColumn = x == image.width() - 1;
        if ((opaque && isLastColumn) || (!opaque && inRun))
            row.push_back({start, y, x - 1, y});
        inRun = opaque;
    }
    return row;
}

void append(Rectangles &list, const Rectangles &more)
{
    list.insert(list.end(), more.begin(), more.end());
}

void merge(Rectangles &done, Rectangles &open, const Rectangles &row)
{
    bool allFit = open.size() == row.size();
    for (size_t i = 0; allFit && i < row.size(); ++i)
        allFit = united(open[i], row[i]).area() == open[i].area() + row[i].area();
    if (allFit) {
        for (size_t i = 0; i < row.size(); ++i)
            open[i] = united(open[i], row[i]);
    } else {
        append(done, open);
        open = row;
    }
}

} // namespace

QList<QRect> rectsFromImage(const QImage &image, int threshold)
{
    const int bytesPerPixel = image.depth() / 8;
    if (bytesPerPixel != 1 && bytesPerPixel != 4)
        return {};

    Rectangles done;
    Rectangles open;
    for (int y = 0; y <= image.height() - 1; ++y) {
        const Rectangles row = runsOfRow(image, y, threshold);
        if (row.empty())
            continue;
        if (open.empty())
            open = row;
        else
            merge(done, open, row);
    }
    append(done, open);

    QList<QRect> rects;
    for (const Corners &each : done)
        rects.append(QRect(QPoint(each.left, each.top), QPoint(each.right, each.bottom)));
    return rects;
}

} // namespace SlowRegion
