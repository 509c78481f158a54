// The opaque rectangles of pictures that have thousands of them. Beside the least that a list of
// them can cost: 1.2 times filling the list, and 12 times reading the alpha bytes.

#include "animatedimage/core/region.h"
#include "benchmarks/support/alphareading.h"
#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"

#include <benchmark/benchmark.h>

namespace
{

const QSize size(256, 256);

QList<QRect> filled(const QList<QRect> &model)
{
    QList<QRect> list;
    list.reserve(model.size());
    for (const QRect &rect : model)
        list.append(rect);
    return list;
}

Comparison::Cost floorOf(const QImage &picture)
{
    const QList<QRect> rects = OpaqueRegion::rectsFromImage(picture, 1);
    const auto fill =
        Comparison::cpuTime([rects] { benchmark::DoNotOptimize(filled(rects).size()); });
    const auto read =
        Comparison::cpuTime([picture] { benchmark::DoNotOptimize(leastAlpha(picture)); });
    return [fill, read] { return 1.2 * fill() + 12.0 * read(); };
}

bool addCase(const char *name, QImage (*draw)(const QSize &))
{
    return Comparison::add(
        {std::string("06-many-rectangles/") + name, "1.2 list filling + 12 readings", 0.8, 21},
        [draw] {
            const QImage picture = draw(size);
            return Comparison::Sides{Comparison::cpuTime([picture] {
                                         benchmark::DoNotOptimize(
                                             OpaqueRegion::rectsFromImage(picture, 1).size());
                                     }),
                                     floorOf(picture)};
        });
}

const bool added = addCase("text", Drawings::text) && //
                   addCase("dither", [](const QSize &s) { return Drawings::dither(s); }) &&
                   addCase("checker", Drawings::checker) && //
                   addCase("noise", Drawings::noise);

} // namespace
