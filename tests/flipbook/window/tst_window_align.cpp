#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>

/// Aligning: one object with the page of 960 x 720, several with what they cover together.
class TestWindowAlign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void oneObjectIsAlignedWithThePage_data();
    void oneObjectIsAlignedWithThePage();
    void severalAreAlignedWithEachOther_data();
    void severalAreAlignedWithEachOther();
    void aTurnedObjectIsAlignedByWhatItCovers();
    void whatIsAlignedAlreadyMakesNoStep();

private:
    QList<QPointF> places();

    std::unique_ptr<WindowFixture> m_fixture;
    QList<CBaseObject *> m_films;
};

/// Two of 40 x 30 at (100, 100) and (200, 150), and one of 80 x 60 at (300, 60).
void TestWindowAlign::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_films = {&m_fixture->addFilm({Qt::red}), &m_fixture->addFilm({Qt::green}, {200, 150}),
               &m_fixture->addFilm({Qt::blue}, {300, 60})};
    m_films.last()->setSize(QSizeF(80, 60), true, false);
    m_films.last()->setPos(QPointF(300, 60), false);
}

QList<QPointF> TestWindowAlign::places()
{
    QList<QPointF> places;
    for (CBaseObject *film : qAsConst(m_films))
        places.append(film->getPos());
    return places;
}

void TestWindowAlign::oneObjectIsAlignedWithThePage_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("step");
    QTest::addColumn<QPointF>("place");
    const auto row = [](const char *action, const char *step, const QPointF &place) {
        QTest::newRow(action) << QByteArray(action) << QString::fromLatin1(step) << place;
    };
    row("align-left", "Align Left", {0, 100});
    row("align-center", "Align Centre", {460, 100});
    row("align-right", "Align Right", {920, 100});
    row("align-top", "Align Top", {100, 0});
    row("align-middle", "Align Middle", {100, 345});
    row("align-bottom", "Align Bottom", {100, 690});
}

void TestWindowAlign::oneObjectIsAlignedWithThePage()
{
    QFETCH(const QByteArray, action);
    QFETCH(const QString, step);
    QFETCH(const QPointF, place);
    m_fixture->page().selectObjects({m_films.first()});
    m_fixture->trigger(action.constData());
    QCOMPARE(places(), QList<QPointF>({place, QPointF(200, 150), QPointF(300, 60)}));
    QCOMPARE(m_fixture->history(), QStringList({step}));
    m_fixture->trigger("undo");
    QCOMPARE(m_films.first()->getPos(), QPointF(100, 100));
}

void TestWindowAlign::severalAreAlignedWithEachOther_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("step");
    QTest::addColumn<QList<QPointF>>("wanted");
    const auto row = [](const char *action, const char *step, const QList<QPointF> &wanted) {
        QTest::newRow(action) << QByteArray(action) << QString::fromLatin1(step) << wanted;
    };
    // Together they cover 280 x 120 at (100, 60), whose middle is (240, 120).
    row("align-left", "Align Left", {{100, 100}, {100, 150}, {100, 60}});
    row("align-center", "Align Centre", {{220, 100}, {220, 150}, {200, 60}});
    row("align-right", "Align Right", {{340, 100}, {340, 150}, {300, 60}});
    row("align-top", "Align Top", {{100, 60}, {200, 60}, {300, 60}});
    row("align-middle", "Align Middle", {{100, 105}, {200, 105}, {300, 90}});
    row("align-bottom", "Align Bottom", {{100, 150}, {200, 150}, {300, 120}});
}

void TestWindowAlign::severalAreAlignedWithEachOther()
{
    QFETCH(const QByteArray, action);
    QFETCH(const QString, step);
    QFETCH(const QList<QPointF>, wanted);
    m_fixture->page().selectObjects(m_films);
    m_fixture->trigger(action.constData());
    QCOMPARE(places(), wanted);
    QCOMPARE(m_fixture->history(), QStringList({step}));
    m_fixture->trigger("undo");
    QCOMPARE(places(), QList<QPointF>({{100, 100}, {200, 150}, {300, 60}}));
    m_fixture->trigger("redo");
    QCOMPARE(places(), wanted);
}

void TestWindowAlign::aTurnedObjectIsAlignedByWhatItCovers()
{
    // About its middle (120, 115) a quarter turn covers 30 x 40 at (105, 95).
    m_films.first()->setRotate(90.0, false);
    m_fixture->page().selectObjects({m_films.first()});
    m_fixture->trigger("align-left");
    QCOMPARE(m_films.first()->getPos(), QPointF(-5, 100));
    m_fixture->trigger("align-bottom");
    QCOMPARE(m_films.first()->getPos(), QPointF(-5, 685));
}

void TestWindowAlign::whatIsAlignedAlreadyMakesNoStep()
{
    m_fixture->page().selectObjects({m_films.first()});
    m_fixture->trigger("align-left");
    m_fixture->trigger("align-left");
    QCOMPARE(m_fixture->history().size(), 1);
}

QTEST_MAIN(TestWindowAlign)
#include "tst_window_align.moc"
