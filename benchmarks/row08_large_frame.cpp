// The region of a frame of 1280 x 720 pixels, which is measured on a smaller copy.

#include "animatedimage/core/region.h"
#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"

#include <benchmark/benchmark.h>

namespace
{

const QSize size(1280, 720);

bool addCase(const char *name, double target, QImage (*draw)())
{
    return Comparison::add(
        {std::string("08-large-frame/") + name, "QImage::scaled alone", target, 21}, [draw] {
            const QImage picture = draw();
            return Comparison::Sides{
                Comparison::cpuTime([picture] {
                    const auto measured =
                        OpaqueRegion::measured(picture, OpaqueRegion::MeasuredSide);
                    benchmark::DoNotOptimize(measured.rects.size());
                }),
                Comparison::cpuTime([picture] {
                    const QImage scaled =
                        picture.scaled(256, 256, Qt::KeepAspectRatio, Qt::SmoothTransformation);
                    benchmark::DoNotOptimize(scaled.constBits());
                })};
        });
}

const bool added = addCase("ARGB32", 1.12, [] { return Drawings::blob(size); }) &&
                   addCase("RGB32", 1.02, [] { return Drawings::photo(size, 0); });

} // namespace
