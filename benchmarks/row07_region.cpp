// The opaque rectangles of a picture, compared with the region that Qt makes of its alpha mask.

#include "animatedimage/core/region.h"
#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"

#include <QtGui/QBitmap>
#include <QtGui/QRegion>

#include <benchmark/benchmark.h>

namespace
{

const QSize size(256, 256);

bool addCase(const char *name, double timesFaster, QImage (*draw)(const QSize &))
{
    return Comparison::add(
        {std::string("07-region/") + name, "QRegion(QBitmap) of the mask", 1.0 / timesFaster, 21},
        [draw] {
            const QImage picture = draw(size);
            return Comparison::Sides{
                Comparison::cpuTime([picture] {
                    benchmark::DoNotOptimize(OpaqueRegion::opaqueRects(picture, 1).size());
                }),
                Comparison::cpuTime([picture] {
                    const QRegion region(QBitmap::fromImage(picture.createAlphaMask()));
                    benchmark::DoNotOptimize(region.rectCount());
                })};
        });
}

const bool added = addCase("opaque", 7.0, Drawings::opaque) && //
                   addCase("empty", 7.0, Drawings::empty) &&   //
                   addCase("blob", 5.0, Drawings::blob);

} // namespace
