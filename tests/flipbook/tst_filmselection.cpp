#include "flipbook/export/filmselection.h"

#include <QtTest/QTest>

class TestFilmSelection : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreSelected_data();
    void framesAreSelected();
    void aLongTimeDoesNotOverflow();
};

namespace
{

struct Case {
    FilmSelection selection;
    QVector<FilmStep> steps;
};

} // namespace

Q_DECLARE_METATYPE(Case)

void TestFilmSelection::framesAreSelected_data()
{
    // Of a film of five frames, of 10, 20, 30, 40 and 50 ms.
    QTest::addColumn<Case>("expected");
    const auto row = [](const char *name, const FilmSelection &selection,
                        const QVector<FilmStep> &steps) {
        QTest::newRow(name) << Case{selection, steps};
    };
    row("all", {}, {{0, 10}, {1, 20}, {2, 30}, {3, 40}, {4, 50}});
    row("some", {2, 4, 1, false, 1.0}, {{1, 20}, {2, 30}, {3, 40}});
    row("one", {5, 5, 1, false, 1.0}, {{4, 50}});
    row("from one on", {4, 0, 1, false, 1.0}, {{3, 40}, {4, 50}});
    row("every second", {1, 0, 2, false, 1.0}, {{0, 30}, {2, 70}, {4, 50}});
    row("every second of some", {2, 5, 2, false, 1.0}, {{1, 50}, {3, 90}});
    row("every tenth", {1, 0, 10, false, 1.0}, {{0, 150}});
    row("backwards", {1, 0, 1, true, 1.0}, {{4, 50}, {3, 40}, {2, 30}, {1, 20}, {0, 10}});
    row("every second, backwards", {1, 0, 2, true, 1.0}, {{4, 50}, {2, 70}, {0, 30}});
    row("beyond the end", {2, 6, 1, false, 1.0}, {});
    row("wholly beyond it", {6, 7, 1, false, 1.0}, {});
}

void TestFilmSelection::framesAreSelected()
{
    QFETCH(Case, expected);
    QCOMPARE(selectedSteps({10, 20, 30, 40, 50}, expected.selection), expected.steps);
}

void TestFilmSelection::aLongTimeDoesNotOverflow()
{
    const int most = 2147483647;
    const QVector<FilmStep> steps = selectedSteps({most, most}, {1, 0, 2, false, 1.0});
    QCOMPARE(steps, QVector<FilmStep>({{0, most}}));
}

QTEST_GUILESS_MAIN(TestFilmSelection)
#include "tst_filmselection.moc"
