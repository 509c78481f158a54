#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QGestureEvent>

/// The mouse and the arrow keys on the page. A film of 40 x 30 is at (100, 100); one unit of the
/// page is one pixel.
class TestWindowPage : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aClickSelectsAnObjectAndAClickBesideItNone();
    void draggingMovesTheObjectAsOneStep();
    void shiftKeepsTheMoveToOneDirection();
    void aCornerKeepsTheRatioByDefault();
    void shiftFreesTheRatio();
    void withoutTheRatioShiftKeepsIt();
    void altResizesAboutTheCentre();
    void anEdgeFollowsTheRatioToo();
    void theRotationHandleTurns();
    void aTurnedObjectIsResizedInItsOwnDirections();
    void escapeGivesBackWhatWasBeforeTheDrag();
    void undoIsIgnoredWhileTheMouseDrags();
    void arrowKeysNudgeAsOneStep();
    void theRubberBandSelectsWhatItTouches();
    void shiftAddsToTheSelectionAndTakesFromIt();
    void severalObjectsMoveTogether();
    void theObjectIsToldThatItIsMovedByHand();
    void ctrlWithTheWheelZoomsAboutThePointer();
    void aPinchOnATouchpadZoomsAboutThePointer();
    void aPinchOnAScreenZoomsAboutItsCentre();
    void theOnionSkinShowsTheNeighboursFaintly();
    void theMiddleButtonAndTheSpaceBarPan();
    void fitShowsTheWholePage();

private:
    CBaseObject &film() { return *m_film; }
    void select() { m_fixture->click({110, 110}); }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier)
    {
        QTest::keyClick(&m_fixture->view(), key, modifiers);
    }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowPage::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->view().setFocus();
}

void TestWindowPage::aClickSelectsAnObjectAndAClickBesideItNone()
{
    m_fixture->click({110, 110});
    QCOMPARE(m_fixture->session().film(), m_film);
    m_fixture->click({300, 300});
    QCOMPARE(m_fixture->session().film(), nullptr);
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowPage::draggingMovesTheObjectAsOneStep()
{
    m_fixture->drag({110, 110}, {160, 130});
    QCOMPARE(film().getPos(), QPointF(150, 120));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getPos(), QPointF(100, 100));
    m_fixture->trigger("redo");
    QCOMPARE(film().getPos(), QPointF(150, 120));
}

void TestWindowPage::shiftKeepsTheMoveToOneDirection()
{
    select();
    m_fixture->press({110, 110});
    m_fixture->moveTo({160, 130}, Qt::ShiftModifier);
    m_fixture->release({160, 130}, Qt::ShiftModifier);
    QCOMPARE(film().getPos(), QPointF(150, 100));
}

void TestWindowPage::aCornerKeepsTheRatioByDefault()
{
    select();
    m_fixture->drag({140, 130}, {180, 130});
    QCOMPARE(film().getSize(), QSizeF(80, 60));
    QCOMPARE(film().getPos(), QPointF(100, 100));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Resize")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getSize(), QSizeF(40, 30));
}

void TestWindowPage::shiftFreesTheRatio()
{
    select();
    m_fixture->drag({100, 100}, {60, 90}, Qt::ShiftModifier);
    QCOMPARE(film().getSize(), QSizeF(80, 40));
    QCOMPARE(film().getPos(), QPointF(60, 90));
}

void TestWindowPage::withoutTheRatioShiftKeepsIt()
{
    select();
    m_fixture->window().findChild<QCheckBox *>(QStringLiteral("keepRatio"))->click();
    m_fixture->drag({140, 130}, {180, 130});
    QCOMPARE(film().getSize(), QSizeF(80, 30));
    m_fixture->trigger("undo");
    m_fixture->drag({140, 130}, {180, 130}, Qt::ShiftModifier);
    QCOMPARE(film().getSize(), QSizeF(80, 60));
    m_fixture->trigger("undo");
    // The keys work together.
    m_fixture->drag({140, 130}, {160, 130}, Qt::AltModifier);
    QCOMPARE(film().getSize(), QSizeF(80, 30));
    QCOMPARE(film().getPos(), QPointF(80, 100));
}

void TestWindowPage::altResizesAboutTheCentre()
{
    select();
    m_fixture->drag({140, 130}, {180, 130}, Qt::AltModifier);
    QCOMPARE(film().getSize(), QSizeF(120, 90));
    QCOMPARE(film().getPos(), QPointF(60, 70));
}

void TestWindowPage::anEdgeFollowsTheRatioToo()
{
    select();
    m_fixture->drag({140, 115}, {180, 115});
    QCOMPARE(film().getSize(), QSizeF(80, 60));
    QCOMPARE(film().getPos(), QPointF(100, 85));
}

void TestWindowPage::theRotationHandleTurns()
{
    select();
    // Two handles above the middle of the top edge, to the right of the centre.
    m_fixture->drag({120, 84}, {151, 115});
    QCOMPARE(film().getRotate(), 90.0);
    QCOMPARE(film().getPos(), QPointF(100, 100));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Rotate")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getRotate(), 0.0);
}

void TestWindowPage::aTurnedObjectIsResizedInItsOwnDirections()
{
    film().setRotate(90.0, false);
    select();
    // Its right edge is below now, 20 from the centre at (120, 115).
    m_fixture->drag({120, 135}, {120, 175}, Qt::ShiftModifier);
    QCOMPARE(film().getSize(), QSizeF(80, 30));
    const QPointF center = ObjectHandles::geometryOf(film()).center();
    QCOMPARE(center, QPointF(120, 135));
}

void TestWindowPage::escapeGivesBackWhatWasBeforeTheDrag()
{
    select();
    m_fixture->press({140, 130});
    m_fixture->moveTo({200, 190});
    QCOMPARE(film().getSize(), QSizeF(120, 90));
    key(Qt::Key_Escape);
    QCOMPARE(film().getSize(), QSizeF(40, 30));
    m_fixture->release({200, 190});
    QCOMPARE(film().getSize(), QSizeF(40, 30));
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowPage::undoIsIgnoredWhileTheMouseDrags()
{
    m_fixture->drag({110, 110}, {160, 130});
    m_fixture->press({160, 130});
    m_fixture->moveTo({260, 230});
    key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(film().getPos(), QPointF(250, 220));
    m_fixture->release({260, 230});
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move"), QStringLiteral("Move")}));
    key(Qt::Key_Z, Qt::ControlModifier);
    QCOMPARE(film().getPos(), QPointF(150, 120));
}

void TestWindowPage::arrowKeysNudgeAsOneStep()
{
    select();
    key(Qt::Key_Right);
    key(Qt::Key_Right);
    key(Qt::Key_Up, Qt::ShiftModifier);
    QCOMPARE(film().getPos(), QPointF(102, 90));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Nudge")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getPos(), QPointF(100, 100));
}

void TestWindowPage::theRubberBandSelectsWhatItTouches()
{
    CBaseObject &other = m_fixture->addFilm({Qt::blue}, {200, 100});
    m_fixture->addFilm({Qt::blue}, {400, 300});
    m_fixture->drag({90, 90}, {210, 110});
    QCOMPARE(m_fixture->session().selection(), QList<CBaseObject *>({m_film, &other}));
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowPage::shiftAddsToTheSelectionAndTakesFromIt()
{
    CBaseObject &other = m_fixture->addFilm({Qt::blue}, {200, 100});
    select();
    m_fixture->click({210, 110}, Qt::ShiftModifier);
    QCOMPARE(m_fixture->session().selection(), QList<CBaseObject *>({m_film, &other}));
    m_fixture->click({110, 110}, Qt::ShiftModifier);
    QCOMPARE(m_fixture->session().selection(), QList<CBaseObject *>({&other}));
}

void TestWindowPage::severalObjectsMoveTogether()
{
    CBaseObject &other = m_fixture->addFilm({Qt::blue}, {200, 100});
    m_fixture->page().selectObjects({m_film, &other});
    m_fixture->drag({110, 110}, {120, 140});
    QCOMPARE(film().getPos(), QPointF(110, 130));
    QCOMPARE(other.getPos(), QPointF(210, 130));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move 2 Objects")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getPos(), QPointF(100, 100));
    QCOMPARE(other.getPos(), QPointF(200, 100));
}

void TestWindowPage::theObjectIsToldThatItIsMovedByHand()
{
    QCOMPARE(film().getStatus(), 0);
    m_fixture->press({110, 110});
    m_fixture->moveTo({160, 130});
    QCOMPARE(film().getStatus(), 2);
    m_fixture->release({160, 130});
    QCOMPARE(film().getStatus(), 0);
}

void TestWindowPage::ctrlWithTheWheelZoomsAboutThePointer()
{
    PageView &view = m_fixture->view();
    const QPoint pointer = view.mapFromScene(QPointF(300, 200));
    QWheelEvent event(pointer, view.viewport()->mapToGlobal(pointer), QPoint(), QPoint(0, 960),
                      Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(view.viewport(), &event);
    QCOMPARE(view.zoom(), 2.0);
    const QPointF below = view.mapToScene(pointer);
    QVERIFY2(QLineF(below, QPointF(300, 200)).length() <= 1.0,
             qPrintable(QStringLiteral("%1, %2").arg(below.x()).arg(below.y())));
}

void TestWindowPage::aPinchOnATouchpadZoomsAboutThePointer()
{
    PageView &view = m_fixture->view();
    const QPoint pointer = view.mapFromScene(QPointF(300, 200));
    QNativeGestureEvent event(Qt::ZoomNativeGesture, nullptr, pointer, pointer,
                              view.viewport()->mapToGlobal(pointer), 0.5, 0, 0);
    QCoreApplication::sendEvent(view.viewport(), &event);
    QCOMPARE(view.zoom(), 1.5);
    QVERIFY(QLineF(view.mapToScene(pointer), QPointF(300, 200)).length() <= 1.0);
}

void TestWindowPage::aPinchOnAScreenZoomsAboutItsCentre()
{
    PageView &view = m_fixture->view();
    const QPoint centre = view.mapFromScene(QPointF(300, 200));
    QPinchGesture gesture;
    gesture.setCenterPoint(view.viewport()->mapToGlobal(centre));
    gesture.setScaleFactor(2.0);
    gesture.setChangeFlags(QPinchGesture::ScaleFactorChanged);
    QGestureEvent event({&gesture});
    QCoreApplication::sendEvent(view.viewport(), &event);
    QCOMPARE(view.zoom(), 2.0);
    QVERIFY(QLineF(view.mapToScene(centre), QPointF(300, 200)).length() <= 1.0);
}

void TestWindowPage::theOnionSkinShowsTheNeighboursFaintly()
{
    // The second of three frames is shown, which is empty: blue and red are its neighbours.
    CBaseObject &film = m_fixture->addFilm({Qt::red, Qt::transparent, Qt::blue}, {400, 300});
    m_fixture->page().selectObjects({&film});
    m_fixture->trigger("next-frame");
    const auto colour = [this] {
        QWidget &viewport = *m_fixture->view().viewport();
        return viewport.grab().toImage().pixelColor(m_fixture->view().mapFromScene({410, 325}));
    };
    QCOMPARE(colour(), QColor(Qt::white));
    m_fixture->trigger("onion-skin");
    // 30 % of red on white is (255, 179, 179), 30 % of blue on that (179, 125, 202); the painter
    // rounds the opacity to a 256th.
    const QColor skin = colour();
    QVERIFY2(qAbs(skin.red() - 179) <= 2 && qAbs(skin.green() - 125) <= 2 &&
                 qAbs(skin.blue() - 202) <= 2,
             qPrintable(skin.name()));
    // While it plays nothing else is shown.
    m_fixture->trigger("play");
    QVERIFY(colour() != skin);
    m_fixture->trigger("play");
    m_fixture->trigger("onion-skin");
}

void TestWindowPage::theMiddleButtonAndTheSpaceBarPan()
{
    PageView &view = m_fixture->view();
    view.centerOn(480, 360);
    const QPointF before = view.mapToScene(QPoint(0, 0));
    QTest::mousePress(view.viewport(), Qt::MiddleButton, {}, QPoint(100, 100));
    m_fixture->movePointer(QPoint(130, 110));
    QTest::mouseRelease(view.viewport(), Qt::MiddleButton, {}, QPoint(130, 110));
    QCOMPARE(view.mapToScene(QPoint(0, 0)), before - QPointF(30, 10));

    QTest::keyPress(&view, Qt::Key_Space);
    QTest::mousePress(view.viewport(), Qt::LeftButton, {}, QPoint(130, 110));
    m_fixture->movePointer(QPoint(100, 100));
    QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, QPoint(100, 100));
    QTest::keyRelease(&view, Qt::Key_Space);
    QCOMPARE(view.mapToScene(QPoint(0, 0)), before);
    QVERIFY(!AnimatedObject(film()).isPlaying());
}

void TestWindowPage::fitShowsTheWholePage()
{
    m_fixture->trigger("zoom-fit");
    const QRect shown = m_fixture->view().mapFromScene(QRectF(0, 0, 960, 720)).boundingRect();
    QVERIFY(m_fixture->view().viewport()->rect().contains(shown));
    m_fixture->trigger("zoom-original");
    QCOMPARE(m_fixture->view().zoom(), 1.0);
}

QTEST_MAIN(TestWindowPage)
#include "tst_window_page.moc"
