// stb_rect_pack packs the rectangles, by the skyline method: it is in Debian, in wide use, and in
// the public domain.

#include "flipbook/export/atlaslayout.h"

#include <algorithm>
#include <cmath>
#include <stb_rect_pack.h>
#include <vector>

namespace
{

/// The layout on a sheet of @p width and no more than MaxAtlasSide rows, cut to what is used.
std::optional<AtlasLayout> packed(const QVector<QSize> &sizes, int width)
{
    std::vector<stbrp_node> nodes{std::size_t(width)};
    stbrp_context context;
    stbrp_init_target(&context, width, MaxAtlasSide, nodes.data(), int(nodes.size()));
    std::vector<stbrp_rect> rects;
    for (const QSize &size : sizes) {
        stbrp_rect rect = {};
        rect.id = int(rects.size());
        rect.w = size.width();
        rect.h = size.height();
        rects.push_back(rect);
    }
    if (!stbrp_pack_rects(&context, rects.data(), int(rects.size())))
        return std::nullopt;
    AtlasLayout layout;
    layout.places.resize(sizes.size());
    for (const stbrp_rect &rect : rects) {
        layout.places[rect.id] = QPoint(rect.x, rect.y);
        layout.size = layout.size.expandedTo(QSize(rect.x + rect.w, rect.y + rect.h));
    }
    return layout;
}

qint64 area(const QSize &size)
{
    return qint64(size.width()) * size.height();
}

/// Whether @p one is better: smaller, or nearer to a square.
bool isBetter(const AtlasLayout &one, const AtlasLayout &other)
{
    const auto unevenness = [](const QSize &size) { return qAbs(size.width() - size.height()); };
    if (area(one.size) != area(other.size))
        return area(one.size) < area(other.size);
    return unevenness(one.size) < unevenness(other.size);
}

} // namespace

std::optional<AtlasLayout> layOutAtlas(const QVector<QSize> &sizes)
{
    qint64 all = 0;
    int widest = 0;
    for (const QSize &size : sizes) {
        all += area(size);
        widest = std::max(widest, size.width());
    }
    if (widest > MaxAtlasSide)
        return std::nullopt;
    // Around a square: whole columns of the widest.
    std::optional<AtlasLayout> best;
    const int columns = std::max(1, int(std::sqrt(double(all)) / widest));
    for (const int count : {columns, columns + 1, columns + 2, 2 * columns + 2}) {
        const int width = int(std::min<qint64>(qint64(count) * widest, MaxAtlasSide));
        const std::optional<AtlasLayout> layout = packed(sizes, width);
        // Twice as wide as high only when nothing else holds them.
        const bool isWanted =
            layout && (!best || (count <= columns + 2 && isBetter(*layout, *best)));
        if (isWanted)
            best = layout;
    }
    const std::optional<AtlasLayout> widestSheet =
        best ? std::nullopt : packed(sizes, MaxAtlasSide);
    return best ? best : widestSheet;
}
