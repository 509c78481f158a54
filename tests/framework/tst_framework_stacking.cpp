#include "framework/document.h"
#include "framework/page.h"
#include "tests/framework/paintedobject.h"

#include <QtTest/QTest>

#include <random>

namespace
{

constexpr int seeds = 60;
constexpr int steps = 120;

/// The layers of a page as plain lists, from bottom to top.
struct Model {
    QList<CBaseObject *> background;
    QList<CBaseObject *> normal;

    QList<CBaseObject *> &layer(Page::Layer which)
    {
        return which == Page::Layer::Background ? background : normal;
    }
};

bool isAscending(const QList<CBaseObject *> &objects)
{
    for (int i = 1; i < objects.size(); ++i) {
        if (objects.at(i - 1)->zValue() >= objects.at(i)->zValue())
            return false;
    }
    return true;
}

} // namespace

/// A page finds each object at the same place as a model made of plain lists.
class TestFrameworkStacking : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void placesAreThoseOfPlainLists();

private:
    static void verify(const Page &page, Model &model);
    static void verifyAtRandom(const Page &page, Model &model, unsigned seed);
};

void TestFrameworkStacking::verify(const Page &page, Model &model)
{
    QCOMPARE(page.objects(), model.background + model.normal);
    QVERIFY(isAscending(page.objects()));
    for (const CBaseObject *object : qAsConst(model.background))
        QVERIFY(object->zValue() < 0.0);
    for (const CBaseObject *object : qAsConst(model.normal))
        QVERIFY(object->zValue() >= 0.0);
    for (const Page::Layer layer : {Page::Layer::Background, Page::Layer::Normal}) {
        const QList<CBaseObject *> &list = model.layer(layer);
        for (int i = 0; i < list.size(); ++i) {
            QVERIFY(page.holds(list.at(i)));
            const Page::Place place = page.placeOf(list.at(i));
            QVERIFY(place.layer == layer);
            QCOMPARE(place.index, i);
        }
    }
}

/// The same in any order, as the page remembers where it found the last one.
void TestFrameworkStacking::verifyAtRandom(const Page &page, Model &model, unsigned seed)
{
    std::mt19937 random(seed);
    const QList<CBaseObject *> all = model.background + model.normal;
    for (int i = 0; i < 2 * all.size(); ++i) {
        CBaseObject *object = all.at(int(random() % unsigned(all.size())));
        const bool isBackground = model.background.contains(object);
        const Page::Place place = page.placeOf(object);
        QVERIFY(page.holds(object));
        QCOMPARE(place.layer == Page::Layer::Background, isBackground);
        QCOMPARE(place.index, (isBackground ? model.background : model.normal).indexOf(object));
    }
    QVERIFY(!page.holds(nullptr));
}

void TestFrameworkStacking::placesAreThoseOfPlainLists()
{
    for (unsigned seed = 1; seed <= seeds; ++seed) {
        std::mt19937 random(seed);
        const auto number = [&random](int most) { return int(random() % unsigned(most)); };
        Document document;
        Page *page = document.addPage(QRectF(0, 0, 100, 100));
        Model model;
        for (int step = 0; step < steps; ++step) {
            const Page::Layer layer =
                number(2) == 0 ? Page::Layer::Background : Page::Layer::Normal;
            const QList<CBaseObject *> all = page->objects();
            CBaseObject *any = all.isEmpty() ? nullptr : all.at(number(all.size()));
            const int action = any ? number(5) : 0;
            if (any && action > 1) {
                model.background.removeOne(any);
                model.normal.removeOne(any);
            }
            if (action < 2) {
                model.layer(layer).append(new PaintedObject);
                page->addObject(model.layer(layer).last(), layer);
            } else if (action == 2) {
                page->destroyObject(any);
                QVERIFY(!page->holds(any));
            } else {
                const int index = number(8) - 1;
                QList<CBaseObject *> &target = model.layer(layer);
                target.insert(qBound(0, index, target.size()), any);
                page->placeObject(any, {layer, index});
            }
            if (number(2) == 0)
                verify(*page, model);
            verifyAtRandom(*page, model, unsigned(random()));
            if (QTest::currentTestFailed())
                return;
        }
    }
}

QTEST_MAIN(TestFrameworkStacking)
#include "tst_framework_stacking.moc"
