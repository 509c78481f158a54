// The opaque rectangles of a picture of 256 x 256 pixels.

#include "animatedimage/core/region.h"
#include "benchmarks/support/alphareading.h"
#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"

#include <benchmark/benchmark.h>

namespace
{

const QSize size(256, 256);

bool addCase(const char *name, double target, QImage (*draw)(const QSize &))
{
    return Comparison::add(
        {std::string("05-rectangles/") + name, "SSE2 reading of the alpha bytes", target, 41},
        [draw] {
            const QImage picture = draw(size);
            return Comparison::Sides{
                Comparison::cpuTime(
                    [picture] { benchmark::DoNotOptimize(OpaqueRegion::opaqueRects(picture, 1)); }),
                Comparison::cpuTime([picture] { benchmark::DoNotOptimize(leastAlpha(picture)); })};
        });
}

const bool added = addCase("opaque", 1.0, Drawings::opaque) && //
                   addCase("empty", 0.8, Drawings::empty) &&   //
                   addCase("blob", 1.5, Drawings::blob);

} // namespace
