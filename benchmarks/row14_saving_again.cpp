// A document that is saved again after a frame was renamed, compared with its first saving.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"
#include "flipbook/document/documentfile.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

namespace
{

double savingCost(Document &document)
{
    const QString path = Films::folder() + QStringLiteral("saved.flipbook");
    const Comparison::CpuClock clock;
    saveDocument(document, path);
    return clock.seconds();
}

/// What saving costs for a document whose pictures nobody has seen yet.
double firstSavingCost()
{
    Scene scene(Films::cartoon());
    return savingCost(scene.document);
}

Comparison::Sides sides()
{
    const auto scene = std::make_shared<Scene>(Films::cartoon());
    savingCost(scene->document);
    return {[scene, number = 0]() mutable {
                const QString name = QStringLiteral("name %1").arg(++number);
                Request(Request::packed(qint32(3), name))
                    .set(scene->image, SpecialPropertyId::FrameName);
                return savingCost(scene->document);
            },
            firstSavingCost};
}

bool addRow()
{
    return Comparison::add({"14-saving-again", "the first saving", 0.1, 9}, sides);
}

const bool added = addRow();

} // namespace
