#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>

/// Each handle, dragged with the mouse. A film of 40 x 30 is at (100, 100), so that its centre is
/// at (120, 115); one unit of the page is one pixel.
class TestWindowHandles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aHandleMovesItsSidesAndTheOppositeOnesStay_data();
    void aHandleMovesItsSidesAndTheOppositeOnesStay();
    void ofATurnedObjectTheOppositeSidesStayToo_data();
    void ofATurnedObjectTheOppositeSidesStayToo();
    void pastTheOppositeSideOneUnitIsLeft_data();
    void pastTheOppositeSideOneUnitIsLeft();
    void theRotationHandleFollowsTheMouse_data();
    void theRotationHandleFollowsTheMouse();
    void escapeGivesTheAngleBack();

private:
    QRectF shownRect() const { return {m_film->getPos(), m_film->getSize()}; }
    void dragAndUndo(const QPointF &from, const QPointF &way, Qt::KeyboardModifiers modifiers,
                     const QRectF &expected);

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowHandles::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->view().setFocus();
    m_fixture->page().selectObjects({m_film});
}

void TestWindowHandles::dragAndUndo(const QPointF &from, const QPointF &way,
                                    Qt::KeyboardModifiers modifiers, const QRectF &expected)
{
    m_fixture->drag(from, from + way, modifiers);
    QCOMPARE(shownRect(), expected);
    QCOMPARE(m_fixture->history().last(), QStringLiteral("Resize"));
    m_fixture->trigger("undo");
    QCOMPARE(shownRect(), QRectF(100, 100, 40, 30));
}

void TestWindowHandles::aHandleMovesItsSidesAndTheOppositeOnesStay_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("way");
    QTest::addColumn<QRectF>("free");
    QTest::addColumn<QRectF>("kept");
    QTest::addColumn<QRectF>("aboutCentre");
    const auto row = [](const char *name, const QPointF &from, const QPointF &way,
                        const QRectF &free, const QRectF &kept, const QRectF &aboutCentre) {
        QTest::newRow(name) << from << way << free << kept << aboutCentre;
    };
    // With the ratio kept, the side that changes more decides: all become twice as large. A side
    // ignores the way along it, and then grows to both ends of the other direction.
    row("top left", {100, 100}, {-20, -30}, {80, 70, 60, 60}, {60, 70, 80, 60}, {80, 70, 80, 90});
    row("top", {120, 100}, {50, -30}, {100, 70, 40, 60}, {80, 70, 80, 60}, {100, 70, 40, 90});
    row("top right", {140, 100}, {20, -30}, {100, 70, 60, 60}, {100, 70, 80, 60}, {80, 70, 80, 90});
    row("left", {100, 115}, {-40, 50}, {60, 100, 80, 30}, {60, 85, 80, 60}, {60, 100, 120, 30});
    row("right", {140, 115}, {40, 50}, {100, 100, 80, 30}, {100, 85, 80, 60}, {60, 100, 120, 30});
    row("bottom left", {100, 130}, {-20, 30}, {80, 100, 60, 60}, {60, 100, 80, 60},
        {80, 70, 80, 90});
    row("bottom", {120, 130}, {50, 30}, {100, 100, 40, 60}, {80, 100, 80, 60}, {100, 70, 40, 90});
    row("bottom right", {140, 130}, {20, 30}, {100, 100, 60, 60}, {100, 100, 80, 60},
        {80, 70, 80, 90});
}

void TestWindowHandles::aHandleMovesItsSidesAndTheOppositeOnesStay()
{
    QFETCH(QPointF, from);
    QFETCH(QPointF, way);
    QFETCH(QRectF, free);
    QFETCH(QRectF, kept);
    QFETCH(QRectF, aboutCentre);
    auto &keepsRatio = *m_fixture->window().findChild<QCheckBox *>(QStringLiteral("keepRatio"));
    QVERIFY(keepsRatio.isChecked());
    dragAndUndo(from, way, Qt::NoModifier, kept);
    dragAndUndo(from, way, Qt::ShiftModifier, free);
    dragAndUndo(from, way, Qt::ShiftModifier | Qt::AltModifier, aboutCentre);
    keepsRatio.click();
    dragAndUndo(from, way, Qt::NoModifier, free);
    dragAndUndo(from, way, Qt::ShiftModifier, kept);
    dragAndUndo(from, way, Qt::AltModifier, aboutCentre);
}

void TestWindowHandles::ofATurnedObjectTheOppositeSidesStayToo_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("way");
    QTest::addColumn<QRectF>("seen");
    const auto row = [](const char *name, const QPointF &from, const QPointF &way,
                        const QRectF &seen) { QTest::newRow(name) << from << way << seen; };
    // Turned by a right angle the film covers 30 x 40 at (105, 95).
    row("top left", {105, 95}, {-20, -30}, {85, 65, 50, 70});
    row("top", {120, 95}, {50, -30}, {105, 65, 30, 70});
    row("top right", {135, 95}, {20, -30}, {105, 65, 50, 70});
    row("left", {105, 115}, {-40, 50}, {65, 95, 70, 40});
    row("right", {135, 115}, {40, 50}, {105, 95, 70, 40});
    row("bottom left", {105, 135}, {-20, 30}, {85, 95, 50, 70});
    row("bottom", {120, 135}, {50, 30}, {105, 95, 30, 70});
    row("bottom right", {135, 135}, {20, 30}, {105, 95, 50, 70});
}

void TestWindowHandles::ofATurnedObjectTheOppositeSidesStayToo()
{
    QFETCH(QPointF, from);
    QFETCH(QPointF, way);
    QFETCH(QRectF, seen);
    m_film->setRotate(90.0, false);
    m_fixture->drag(from, from + way, Qt::ShiftModifier);
    QCOMPARE(m_film->getSize(), seen.size().transposed());
    QCOMPARE(shownRect().center(), seen.center());
    QCOMPARE(m_film->getRotate(), 90.0);
}

void TestWindowHandles::pastTheOppositeSideOneUnitIsLeft_data()
{
    QTest::addColumn<QPointF>("from");
    QTest::addColumn<QPointF>("way");
    QTest::addColumn<QRectF>("expected");
    const auto row = [](const char *name, const QPointF &from, const QPointF &way,
                        const QRectF &expected) { QTest::newRow(name) << from << way << expected; };
    row("top left", {100, 100}, {100, 90}, {139, 129, 1, 1});
    row("top", {120, 100}, {0, 90}, {100, 129, 40, 1});
    row("top right", {140, 100}, {-90, 90}, {100, 129, 1, 1});
    row("left", {100, 115}, {100, 0}, {139, 100, 1, 30});
    row("right", {140, 115}, {-90, 0}, {100, 100, 1, 30});
    row("bottom left", {100, 130}, {100, -90}, {139, 100, 1, 1});
    row("bottom", {120, 130}, {0, -90}, {100, 100, 40, 1});
    row("bottom right", {140, 130}, {-90, -90}, {100, 100, 1, 1});
}

void TestWindowHandles::pastTheOppositeSideOneUnitIsLeft()
{
    QFETCH(QPointF, from);
    QFETCH(QPointF, way);
    QFETCH(QRectF, expected);
    dragAndUndo(from, way, Qt::ShiftModifier, expected);
}

void TestWindowHandles::theRotationHandleFollowsTheMouse_data()
{
    QTest::addColumn<QPointF>("to");
    QTest::addColumn<bool>("snaps");
    QTest::addColumn<double>("angle");
    QTest::newRow("half a right angle") << QPointF(151, 84) << false << 45.0;
    QTest::newRow("to the right") << QPointF(151, 115) << false << 90.0;
    QTest::newRow("upside down") << QPointF(120, 146) << false << 180.0;
    QTest::newRow("to the left") << QPointF(89, 115) << false << 270.0;
    // 16 across and 31 up are 27.3 degrees, 31 across and 15 up are 64.2.
    QTest::newRow("27 degrees in steps") << QPointF(136, 84) << true << 30.0;
    QTest::newRow("64 degrees in steps") << QPointF(151, 100) << true << 60.0;
    QTest::newRow("a little to the left in steps") << QPointF(119, 84) << true << 0.0;
}

void TestWindowHandles::theRotationHandleFollowsTheMouse()
{
    QFETCH(QPointF, to);
    QFETCH(bool, snaps);
    QFETCH(double, angle);
    // Two handles above the middle of the top edge.
    m_fixture->drag({120, 84}, to, snaps ? Qt::ShiftModifier : Qt::NoModifier);
    QCOMPARE(m_film->getRotate(), angle);
    QCOMPARE(shownRect(), QRectF(100, 100, 40, 30));
}

void TestWindowHandles::escapeGivesTheAngleBack()
{
    m_fixture->press({120, 84});
    m_fixture->moveTo({151, 115});
    QCOMPARE(m_film->getRotate(), 90.0);
    QTest::keyClick(&m_fixture->view(), Qt::Key_Escape);
    m_fixture->release({151, 115});
    QCOMPARE(m_film->getRotate(), 0.0);
    QCOMPARE(m_fixture->history(), QStringList());
}

QTEST_MAIN(TestWindowHandles)
#include "tst_window_handles.moc"
