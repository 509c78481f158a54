// The insertion of a frame into a film of 1,000 frames whose thumbnails the host has listed,
// compared with the import of the whole film.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

namespace
{

const QSize pixels(160, 120);

QString film()
{
    return Films::gif(QStringLiteral("insertion"), pixels, 1000,
                      [](int i) { return Drawings::cartoon(pixels, i); });
}

Comparison::Sides sides()
{
    const auto scene = std::make_shared<Scene>(film());
    Request().get(scene->image, SpecialPropertyId::Thumbnails);
    return {[scene] {
                const QByteArray input = Request::packed(qint32(500));
                const Comparison::CpuClock clock;
                Request(input).get(scene->image, SpecialPropertyId::InsertBlankFrame);
                return clock.seconds();
            },
            Comparison::cpuTime([] { const Scene imported(film()); })};
}

bool addRow()
{
    return Comparison::add({"12-insertion", "the import of the film", 1.0, 9}, sides);
}

const bool added = addRow();

} // namespace
