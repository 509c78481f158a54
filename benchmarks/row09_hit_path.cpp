// The hit path itself, from rectangles that are known.

#include "animatedimage/core/hitpath.h"
#include "benchmarks/support/comparison.h"

#include <benchmark/benchmark.h>

namespace
{

OpaqueRegion::Rects rectangles(int count)
{
    OpaqueRegion::Rects rects;
    for (int i = 0; i < count; ++i)
        rects.emplace_back(i % 128 * 2, i / 128, 1, 1);
    return rects;
}

QPainterPath bare(const OpaqueRegion::Rects &rects, double scale)
{
    QPainterPath path;
    path.reserve(5 * int(rects.size()));
    for (const QRect &rect : rects)
        path.addRect(rect.x() * scale, rect.y() * scale, rect.width() * scale,
                     rect.height() * scale);
    return path;
}

bool addCase(int count)
{
    return Comparison::add(
        {"09-hit-path/" + std::to_string(count), "reserve and addRect", 1.05, 41}, [count] {
            const OpaqueRegion::Rects rects = rectangles(count);
            return Comparison::Sides{Comparison::cpuTime([rects] {
                                         const QPainterPath path =
                                             HitPath::of(rects, QSize(256, 256), QSizeF(300, 200));
                                         benchmark::DoNotOptimize(path.elementCount());
                                     }),
                                     Comparison::cpuTime([rects] {
                                         const QPainterPath path = bare(rects, 300.0 / 256.0);
                                         benchmark::DoNotOptimize(path.elementCount());
                                     })};
        });
}

const bool added = addCase(10) && addCase(1000) && addCase(16000);

} // namespace
