// The drag of a handle: each step gives the object a size and asks for its shape. The film has 500
// frames of 300 rectangles.

#include "animatedimage/core/hitpath.h"
#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"

#include <benchmark/benchmark.h>

namespace
{

const QSize pixels(256, 256);

QImage frame(int i)
{
    return Drawings::rectangles(pixels, 300, i % 8);
}

/// A size that differs from step to step.
QSizeF sizeOf(int step)
{
    return {256.0 + step % 200, 256.0 + step % 150};
}

Comparison::Sides sides()
{
    const auto scene =
        std::make_shared<Scene>(Films::gif(QStringLiteral("handles"), pixels, 500, frame));
    scene->document.enterAlternateMode();
    const OpaqueRegion::Measured region = OpaqueRegion::measured(frame(0), 256);
    return {Comparison::cpuTime([scene, step = 0]() mutable {
                scene->image->setSize(sizeOf(++step), false, true);
                benchmark::DoNotOptimize(scene->image->shape().elementCount());
            }),
            Comparison::cpuTime([region, step = 0]() mutable {
                const QPainterPath path = HitPath::of(region.rects, region.size, sizeOf(++step));
                benchmark::DoNotOptimize(path.elementCount());
            })};
}

bool addRow()
{
    return Comparison::add({"20-resizing", "the shown path alone", 1.2, 41}, sides);
}

const bool added = addRow();

} // namespace
