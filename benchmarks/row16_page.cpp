// A page of 16,000 objects compared with one of 1,000: linear work takes 16 times as long.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/scene.h"

#include <QtCore/QCoreApplication>

#include <benchmark/benchmark.h>

namespace
{

constexpr double mostGrowth = 20.0;

struct FilledPage {
    explicit FilledPage(int count)
        : page(document.addPage(QRectF(0, 0, 1000, 1000)))
    {
        for (int i = 0; i < count; ++i)
            objects.append(new CAnimatedImage(i, true, nullptr));
    }

    void addAll()
    {
        for (CBaseObject *object : qAsConst(objects))
            page->addObject(object);
    }

    /// As after the page was there for a moment: the scene has dealt with its new items.
    void addAllAndSettle()
    {
        addAll();
        QCoreApplication::processEvents();
    }

    Document document;
    Page *page;
    QList<CBaseObject *> objects;
};

double costOfAdding(int count)
{
    FilledPage filled(count);
    const Comparison::CpuClock clock;
    filled.addAll();
    return clock.seconds();
}

double costOfDestroying(int count)
{
    FilledPage filled(count);
    filled.addAllAndSettle();
    const Comparison::CpuClock clock;
    for (CBaseObject *object : qAsConst(filled.objects))
        filled.page->destroyObject(object);
    return clock.seconds();
}

double costOfFinding(int count)
{
    FilledPage filled(count);
    filled.addAllAndSettle();
    const Comparison::CpuClock clock;
    int places = 0;
    for (const CBaseObject *object : qAsConst(filled.objects))
        places += filled.page->holds(object) ? filled.page->placeOf(object).index : 0;
    benchmark::DoNotOptimize(places);
    return clock.seconds();
}

bool addCase(const char *name, double (*cost)(int))
{
    return Comparison::add(
        {std::string("16-page/") + name, "the same of 1,000 objects", mostGrowth, 5}, [cost] {
            return Comparison::Sides{[cost] { return cost(16000); }, [cost] { return cost(1000); }};
        });
}

const bool added = addCase("add", costOfAdding) && addCase("destroy", costOfDestroying) &&
                   addCase("find", costOfFinding);

} // namespace
