#include "tests/animatedimage/geometry/attributes.h"
#include "tests/support/releaser.h"

#include <QtTest/QTest>

namespace
{

using namespace Attributes;

constexpr int background = 1;

/// An attribute that makes the object tell its host, and how often it tells.
struct Action {
    const char *name;
    int notifications;
    void (*prepare)(Stage &);
    bool (*act)(Stage &);
};

void suspendAtTheLastFrame(Stage &stage)
{
    playTo(stage, 2);
    enableTimer(stage, false);
}

bool endPresenting(Stage &stage)
{
    return send(stage, AttributeId::LeaveAlternateMode);
}

const Action actions[] = {
    {"the timer's return", 7, suspendAtTheLastFrame, [](Stage &s) { return enableTimer(s, true); }},
    {"a resumption", 5, suspendAtTheLastFrame, [](Stage &s) { return startStepped(s, true); }},
    {"a start on the timer", 7, [](Stage &s) { playTo(s, 2); },
     [](Stage &s) { return startStepped(s); }},
    {"a start of what plays", 6, suspendAtTheLastFrame, [](Stage &s) { return startStepped(s); }},
    {"a start of what is stopped", 4,
     [](Stage &s) {
         enableTimer(s, false);
         s->setCurrentIndex(2);
     },
     [](Stage &s) { return startStepped(s); }},
    {"a start of a background", 2,
     [](Stage &s) {
         s.probe.animatedType() = background;
         enableTimer(s, false);
     },
     [](Stage &s) { return startStepped(s); }},
    {"a tick", 4,
     [](Stage &s) {
         s->setShiftInterval(40);
         playByHost(s);
     },
     tick},
    {"a tick of a background", 1,
     [](Stage &s) {
         s.probe.animatedType() = background;
         s->setShiftInterval(40);
         playByHost(s);
     },
     tick},
    {"the last tick", 4,
     [](Stage &s) {
         s->setShiftInterval(10);
         s->setLoopCount(0);
         playByHost(s);
     },
     tick},
    {"a tick without playback", 1, [](Stage &) {}, tick},
    {"the end of presenting", 2, [](Stage &) {}, endPresenting},
    {"the end of presenting what played", 6,
     [](Stage &s) {
         playTo(s, 2);
         send(s, AttributeId::EnterAlternateMode);
         s->playImage(false);
     },
     endPresenting},
};

QList<QImage> threeFrames()
{
    return solidFrames({{10, 10}, {20, 10}, {10, 30}});
}

/// An object with a shadow, so that the attributes go all their way.
void makeReady(Stage &stage, const Action &action)
{
    stage->setLayerShadow(Qt::black, QPointF(2.0, 2.0));
    action.prepare(stage);
    stage.log.clear();
}

} // namespace

/// The host may end the object's life while an attribute makes it tell something.
class TestGeometryRelease : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void itMayBeReleasedDuringAnyOfItsNotifications_data();
    void itMayBeReleasedDuringAnyOfItsNotifications();
};

void TestGeometryRelease::itMayBeReleasedDuringAnyOfItsNotifications_data()
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

void TestGeometryRelease::itMayBeReleasedDuringAnyOfItsNotifications()
{
    QFETCH(int, action);
    QFETCH(int, nth);
    const Action &tried = actions[action];
    {
        // It tells as often as the rows assume.
        Stage stage(threeFrames());
        makeReady(stage, tried);
        QVERIFY(tried.act(stage));
        QCOMPARE(stage.log.entries().size(), tried.notifications);
    }
    Stage stage(threeFrames());
    makeReady(stage, tried);
    const Releaser releaser(stage, nth);
    QVERIFY(tried.act(stage));
    QVERIFY(stage.isReleased());
    // Nothing is notified of an object that is gone.
    QCOMPARE(stage.log.entries().size(), nth);
    QCOMPARE(stage.page->objects().size(), 0);
}

QTEST_MAIN(TestGeometryRelease)
#include "tst_geometry_release.moc"
