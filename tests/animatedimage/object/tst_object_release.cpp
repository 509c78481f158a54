#include "tests/support/releaser.h"
#include "tests/support/stage.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QTimerEvent>
#include <QtTest/QTest>

namespace
{

constexpr int background = 1;

/// A tick as it happens: as an event of the timer.
void timerEvent(Stage &stage)
{
    QTimer *timer = stage.probe.timer();
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
}

void playToTheLastFrame(Stage &stage)
{
    stage->setLoopCount(0);
    stage->playImage(true);
    stage.probe.tick();
    stage.probe.tick();
}

/// Something that makes the object tell its host, and how often it tells.
struct Action {
    const char *name;
    int notifications;
    void (*prepare)(Stage &);
    void (*act)(Stage &);
};

const Action actions[] = {
    {"start at the first frame", 2, [](Stage &) {}, [](Stage &s) { s->playImage(true); }},
    {"start at another frame", 5, [](Stage &s) { s->setCurrentIndex(2); },
     [](Stage &s) { s->playImage(true); }},
    {"start again", 1, [](Stage &s) { s->playImage(true); }, [](Stage &s) { s->playImage(true); }},
    {"stop at another frame", 5,
     [](Stage &s) {
         s->playImage(true);
         s->setCurrentIndex(2);
     },
     [](Stage &s) { s->playImage(false); }},
    {"stop again", 1, [](Stage &) {}, [](Stage &s) { s->playImage(false); }},
    {"start a background", 3, [](Stage &s) { s.probe.animatedType() = background; },
     [](Stage &s) { s->playImage(true); }},
    {"show a frame", 3, [](Stage &) {}, [](Stage &s) { s->setCurrentIndex(1); }},
    {"show a frame of a background", 1, [](Stage &s) { s.probe.animatedType() = background; },
     [](Stage &s) { s->setCurrentIndex(1); }},
    {"tick", 4, [](Stage &s) { s->playImage(true); }, timerEvent},
    {"tick into the next pass", 4,
     [](Stage &s) {
         playToTheLastFrame(s);
         s->setLoopCount(-1);
     },
     timerEvent},
    {"last tick", 9, playToTheLastFrame, timerEvent},
    {"tick of a background", 1,
     [](Stage &s) {
         s.probe.animatedType() = background;
         s->playImage(true);
     },
     timerEvent},
    {"last tick of a background", 4,
     [](Stage &s) {
         s.probe.animatedType() = background;
         playToTheLastFrame(s);
     },
     timerEvent},
    {"last tick without frames", 3,
     [](Stage &s) {
         s.probe.frames().clear();
         s->setLoopCount(0);
         s->playImage(true);
     },
     timerEvent},
    {"resize", 1, [](Stage &) {}, [](Stage &s) { s->setSize(QSizeF(50.0, 60.0), true, true); }},
    {"resize a background", 1, [](Stage &s) { s.probe.animatedType() = background; },
     [](Stage &s) { s->setSize(QSizeF(50.0, 60.0), true, true); }},
    {"place", 1, [](Stage &) {},
     [](Stage &s) { s->setCenterPos(QPointF(9.0, 9.0), QSizeF(5.0, 5.0), 10.0, true); }},
    {"mirror", 2, [](Stage &) {}, [](Stage &s) { s->setMirror(true, true); }},
    {"flip", 2, [](Stage &) {}, [](Stage &s) { s->setFlip(true, true); }},
    {"move", 1, [](Stage &) {}, [](Stage &s) { s->setPos(QPointF(3.0, 3.0), true); }},
    {"move the pattern", 1,
     [](Stage &s) {
         s.probe.animatedType() = background;
         s.document.setAlternateMode(1);
     },
     [](Stage &s) { s->setPos(QPointF(3.0, 3.0), true); }},
};

/// An object with a shadow, so that the operations go all their way.
void makeReady(Stage &stage, const Action &action)
{
    stage->setLayerShadow(Qt::black, QPointF(2.0, 2.0));
    action.prepare(stage);
    stage.log.clear();
}

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

} // namespace

/// The host may end the object's life at any time, also during a notification.
class TestObjectRelease : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPlayingObjectGoesWithoutAWord();
    void anObjectOnNoPageGoesToo();
    void itLeavesItsPage();
    void itMayBeReleasedDuringAnyOfItsNotifications_data();
    void itMayBeReleasedDuringAnyOfItsNotifications();
};

void TestObjectRelease::aPlayingObjectGoesWithoutAWord()
{
    Stage stage(threeFrames());
    stage->playImage(true);
    stage.probe.tick();
    const QPointer<QTimer> timer = stage.probe.timer();
    QVERIFY(timer->isActive());
    stage.log.clear();
    stage.release();
    QVERIFY(stage.isReleased());
    QVERIFY(timer.isNull());
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestObjectRelease::anObjectOnNoPageGoesToo()
{
    const NotificationLog log;
    const QPointer<CAnimatedImage> image(new CAnimatedImage(1, true, nullptr));
    image->Release();
    QVERIFY(image.isNull());
    QCOMPARE(log.entries(), QStringList());
}

void TestObjectRelease::itLeavesItsPage()
{
    Stage stage(threeFrames());
    QCOMPARE(stage.page->objects().size(), 1);
    stage.release();
    QCOMPARE(stage.page->objects().size(), 0);
    stage.page->rendered();
}

void TestObjectRelease::itMayBeReleasedDuringAnyOfItsNotifications_data()
{
    QTest::addColumn<int>("action");
    QTest::addColumn<int>("nth");
    int index = 0;
    for (const Action &action : actions) {
        for (int nth = 1; nth <= action.notifications; ++nth)
            QTest::addRow("%s, notification %d", action.name, nth) << index << nth;
        ++index;
    }
}

void TestObjectRelease::itMayBeReleasedDuringAnyOfItsNotifications()
{
    QFETCH(int, action);
    QFETCH(int, nth);
    const Action &tried = actions[action];
    {
        // It tells as often as the rows assume.
        Stage stage(threeFrames());
        makeReady(stage, tried);
        tried.act(stage);
        QCOMPARE(stage.log.entries().size(), tried.notifications);
    }
    Stage stage(threeFrames());
    makeReady(stage, tried);
    const Releaser releaser(stage, nth);
    tried.act(stage);
    QVERIFY(stage.isReleased());
    // Nothing was notified after its end, and what it left can be painted.
    QCOMPARE(stage.log.entries().size(), nth);
    stage.page->rendered();
    QCoreApplication::processEvents();
}

QTEST_MAIN(TestObjectRelease)
#include "tst_object_release.moc"
