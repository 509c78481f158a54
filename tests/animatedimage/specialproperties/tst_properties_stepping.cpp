#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The requests that show a frame, and the one that plays and stops.
class TestPropertiesStepping : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStepWrapsAround_data();
    void aStepWrapsAround();
    void aStepTellsTheHostOnceMoreThanTheShownFrameDoes();
    void aStepToTheSameFrameStillTellsTheHost();
    void aStepOfTheBackgroundTypeRedrawsTheTileAlone();
    void aStepWhilePlayingCountsFromTheRewoundFrame_data();
    void aStepWhilePlayingCountsFromTheRewoundFrame();
    void aStepWithoutFramesOnlyStops();
    void aStepFromOutsideTheListIsSafe_data();
    void aStepFromOutsideTheListIsSafe();
    void anIndexShowsItsFrame_data();
    void anIndexShowsItsFrame();
    void anIndexIsReadWhereTheStreamStands();
    void aNameShowsTheFirstFrameThatHasIt_data();
    void aNameShowsTheFirstFrameThatHasIt();
    void aMissingFrameStopsAllTheSame_data();
    void aMissingFrameStopsAllTheSame();
    void playingAndStoppingGoesToTheBase();
    void playingAgainTellsTheStateAgain();
};

namespace
{

constexpr int next = 5001;
constexpr int previous = 5002;
constexpr int showAt = 5003;
constexpr int showNamed = 5004;
constexpr int play = 5013;

const QString geometry = QStringLiteral("changed 104");
const QString shown = QStringLiteral("changed 1002");

QString posted(const char *running)
{
    return QStringLiteral("posted 100 0 {\"settings\":[{\"id\":\"idImagePlay\",\"value\":\"%1\"}]} "
                          "-1")
        .arg(QLatin1String(running));
}

/// What showing another frame of the normal type tells the host: the geometry twice (by the new
/// centre and by the new shape), then the frame.
QStringList anotherFrame()
{
    return {geometry, geometry, shown};
}

QList<QImage> threeFrames()
{
    return solidFrames({{4, 4}, {4, 4}, {4, 4}});
}

} // namespace

void TestPropertiesStepping::aStepWrapsAround_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    for (int type : {-1, 0, 1, 2}) {
        QTest::addRow("next of 0, type %d", type) << next << type << 0 << 1;
        QTest::addRow("next of 1, type %d", type) << next << type << 1 << 2;
        QTest::addRow("next of the last, type %d", type) << next << type << 2 << 0;
        QTest::addRow("previous of the last, type %d", type) << previous << type << 2 << 1;
        QTest::addRow("previous of 1, type %d", type) << previous << type << 1 << 0;
        QTest::addRow("previous of 0, type %d", type) << previous << type << 0 << 2;
    }
}

void TestPropertiesStepping::aStepWrapsAround()
{
    QFETCH(int, id);
    QFETCH(int, type);
    QFETCH(int, before);
    QFETCH(int, after);
    Stage stage(threeFrames());
    stage.probe.animatedType() = type;
    stage.probe.runningIndex() = before;
    Request request(QByteArray::fromHex("0000000000000000"));

    QVERIFY(request.set(stage.image, id));

    QCOMPARE(stage.probe.runningIndex(), after);
    // No input, no answer, no rewinding.
    QCOMPARE(request.position(), qint64(0));
    QCOMPARE(request.bytes().toHex(), QByteArray("0000000000000000"));
}

void TestPropertiesStepping::aStepTellsTheHostOnceMoreThanTheShownFrameDoes()
{
    for (int id : {next, previous}) {
        Stage stage(threeFrames());
        Request request;
        QVERIFY(request.set(stage.image, id));
        QCOMPARE(stage.log.entries(), anotherFrame() << shown);
    }
}

void TestPropertiesStepping::aStepToTheSameFrameStillTellsTheHost()
{
    for (int id : {next, previous}) {
        Stage stage(solidFrames({{4, 4}}));
        Request request;
        QVERIFY(request.set(stage.image, id));
        QCOMPARE(stage.probe.runningIndex(), 0);
        QCOMPARE(stage.log.entries(), QStringList{shown});
    }
}

void TestPropertiesStepping::aStepOfTheBackgroundTypeRedrawsTheTileAlone()
{
    Stage stage(solidFrames({{4, 2}, {8, 8}}));
    stage.probe.animatedType() = 1;
    Request request;

    QVERIFY(request.set(stage.image, next));

    QCOMPARE(stage.log.entries(), QStringList{shown});
    // The second frame, green, twice across and down at the object's size, which stays.
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 2.0));
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(8, 4, Qt::green));
}

void TestPropertiesStepping::aStepWhilePlayingCountsFromTheRewoundFrame_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("after");
    QTest::addColumn<QStringList>("told");
    const QStringList rewound = anotherFrame() << shown << posted("false");
    const QStringList rewoundTile{geometry, shown, posted("false")};
    QTest::addRow("next") << next << -1 << 1 << rewound + anotherFrame() + QStringList{shown};
    QTest::addRow("previous") << previous << -1 << 2
                              << rewound + anotherFrame() + QStringList{shown};
    QTest::addRow("next background") << next << 1 << 1 << rewoundTile + QStringList{shown};
    QTest::addRow("previous background") << previous << 1 << 2 << rewoundTile + QStringList{shown};
}

void TestPropertiesStepping::aStepWhilePlayingCountsFromTheRewoundFrame()
{
    QFETCH(int, id);
    QFETCH(int, type);
    QFETCH(int, after);
    QFETCH(QStringList, told);
    Stage stage(threeFrames());
    stage.image->playImage(true);
    stage.probe.tick();
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 2);
    stage.probe.animatedType() = type;
    stage.log.clear();
    Request request;

    QVERIFY(request.set(stage.image, id));

    QCOMPARE(stage.probe.runningIndex(), after);
    QVERIFY(!stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), told);
}

void TestPropertiesStepping::aStepWithoutFramesOnlyStops()
{
    for (int id : {next, previous}) {
        Stage stage;
        stage.probe.isRunning() = true;
        Request request;
        QVERIFY(request.set(stage.image, id));
        QCOMPARE(stage.probe.runningIndex(), 0);
        QVERIFY(!stage.probe.isRunning());
        QCOMPARE(stage.log.entries(), (QStringList{shown, posted("false")}));
    }
}

void TestPropertiesStepping::aStepFromOutsideTheListIsSafe_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("before");
    QTest::addColumn<int>("after");
    QTest::addRow("next of the greatest") << next << 2147483647 << 0;
    QTest::addRow("next of count") << next << 3 << 0;
    QTest::addRow("next of -1") << next << -1 << 0;
    QTest::addRow("previous of -1") << previous << -1 << 2;
    QTest::addRow("previous of the least") << previous << -2147483647 - 1 << 2;
    QTest::addRow("previous of count") << previous << 3 << 2;
}

void TestPropertiesStepping::aStepFromOutsideTheListIsSafe()
{
    QFETCH(int, id);
    QFETCH(int, before);
    QFETCH(int, after);
    Stage stage(threeFrames());
    stage.probe.runningIndex() = before;
    Request request;

    QVERIFY(request.set(stage.image, id));

    QCOMPARE(stage.probe.runningIndex(), after);
}

void TestPropertiesStepping::anIndexShowsItsFrame_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("index");
    QTest::addColumn<QStringList>("told");
    QTest::addRow("first") << -1 << 0 << (anotherFrame() << shown);
    QTest::addRow("the same") << -1 << 1 << QStringList{shown};
    QTest::addRow("last") << 0 << 2 << (anotherFrame() << shown);
    QTest::addRow("background first") << 1 << 0 << QStringList{shown};
    QTest::addRow("background, the same") << 1 << 1 << QStringList{shown};
    QTest::addRow("background last") << 1 << 2 << QStringList{shown};
}

void TestPropertiesStepping::anIndexShowsItsFrame()
{
    QFETCH(int, type);
    QFETCH(int, index);
    QFETCH(QStringList, told);
    Stage stage(threeFrames());
    stage.probe.runningIndex() = 1;
    stage.probe.animatedType() = type;
    Request request(Request::packed(qint32(index)));

    QVERIFY(request.set(stage.image, showAt));

    QCOMPARE(stage.probe.runningIndex(), index);
    QCOMPARE(stage.log.entries(), told);
    const QList<QColor> colors{Qt::red, Qt::green, Qt::blue};
    const QImage tile = type == 1 ? Pictures::solid(8, 8, colors.at(index)) : QImage();
    QCOMPARE(stage.probe.bgImage(), tile);
}

void TestPropertiesStepping::anIndexIsReadWhereTheStreamStands()
{
    Stage stage(threeFrames());
    Request request(QByteArray::fromHex("000000010000000200000001"));
    request.from(4);

    QVERIFY(request.set(stage.image, showAt));

    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(request.position(), qint64(8));
}

void TestPropertiesStepping::aNameShowsTheFirstFrameThatHasIt_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<int>("index");
    QTest::addRow("once") << QByteArray("00000002"
                                        "0061")
                          << 1;
    QTest::addRow("twice") << QByteArray("00000002"
                                         "0062")
                           << 2;
    QTest::addRow("case matters") << QByteArray("00000002"
                                                "0042")
                                  << 4;
    QTest::addRow("empty") << QByteArray("00000000") << 5;
}

void TestPropertiesStepping::aNameShowsTheFirstFrameThatHasIt()
{
    QFETCH(QByteArray, input);
    QFETCH(int, index);
    Stage stage;
    for (const char *name : {"x", "a", "b", "b", "B", ""})
        stage.addFrame(QLatin1String(name), Pictures::solid(4, 4, Qt::red));
    stage.log.clear();
    Request request(QByteArray::fromHex(input));

    QVERIFY(request.set(stage.image, showNamed));

    QCOMPARE(stage.probe.runningIndex(), index);
    QCOMPARE(stage.log.entries(), anotherFrame() << shown);
}

void TestPropertiesStepping::aMissingFrameStopsAllTheSame_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("input");
    QTest::addRow("index -1") << showAt << QByteArray("ffffffff");
    QTest::addRow("index -2") << showAt << QByteArray("fffffffe");
    QTest::addRow("index count") << showAt << QByteArray("00000003");
    QTest::addRow("index greatest") << showAt << QByteArray("7fffffff");
    QTest::addRow("index cut short") << showAt << QByteArray("000000");
    QTest::addRow("no index") << showAt << QByteArray();
    QTest::addRow("unknown name") << showNamed
                                  << QByteArray("00000002"
                                                "0066");
    QTest::addRow("name cut short") << showNamed << QByteArray("000000060066005f00");
    QTest::addRow("no name") << showNamed << QByteArray();
}

void TestPropertiesStepping::aMissingFrameStopsAllTheSame()
{
    QFETCH(int, id);
    QFETCH(QByteArray, input);
    Stage stage(threeFrames());
    stage.image->playImage(true);
    stage.probe.tick();
    stage.log.clear();
    Request request(QByteArray::fromHex(input));

    QVERIFY(request.set(stage.image, id));

    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), anotherFrame() << shown << posted("false"));
    stage.log.clear();

    Request again(QByteArray::fromHex(input));
    QVERIFY(again.set(stage.image, id));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesStepping::playingAndStoppingGoesToTheBase()
{
    Stage stage(threeFrames());
    stage.probe.runningIndex() = 2;
    Request start(QByteArray::fromHex("0001"));
    start.from(1);

    QVERIFY(!start.set(stage.image, play));

    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.log.entries(), anotherFrame() << shown << posted("true"));
    QCOMPARE(start.position(), qint64(2));
    stage.log.clear();

    Request stop(QByteArray::fromHex("00"));
    QVERIFY(!stop.set(stage.image, play));
    QVERIFY(!stage.probe.isRunning());
    QVERIFY(!stage.probe.timer()->isActive());
    QCOMPARE(stage.log.entries(), (QStringList{shown, posted("false")}));
}

void TestPropertiesStepping::playingAgainTellsTheStateAgain()
{
    Stage stage(threeFrames());
    Request stop(QByteArray::fromHex("00"));

    QVERIFY(!stop.set(stage.image, play));

    QCOMPARE(stage.log.entries(), QStringList{posted("false")});
}

QTEST_MAIN(TestPropertiesStepping)
#include "tst_properties_stepping.moc"
