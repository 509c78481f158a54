#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/animatedimage/specialproperties/letters.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The request that moves a frame to another place.
class TestPropertiesMoving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void movingReordersAndAnswersThumbnails_data();
    void movingReordersAndAnswersThumbnails();
    void movingToNoOtherPlaceDoesNothing_data();
    void movingToNoOtherPlaceDoesNothing();
    void movingKeepsEverythingOfAFrame();
};

namespace
{

constexpr int moveFrame = 5015;

using namespace Letters;

} // namespace

void TestPropertiesMoving::movingReordersAndAnswersThumbnails_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QString>("after");
    QTest::addRow("forward") << 0 << 2 << QStringLiteral("bcad");
    QTest::addRow("to the end") << 1 << 3 << QStringLiteral("acdb");
    QTest::addRow("to the next place") << 1 << 2 << QStringLiteral("acbd");
    QTest::addRow("back") << 2 << 0 << QStringLiteral("cabd");
    QTest::addRow("from the end") << 3 << 1 << QStringLiteral("adbc");
    QTest::addRow("all the way") << 0 << 3 << QStringLiteral("bcda");
}

void TestPropertiesMoving::movingReordersAndAnswersThumbnails()
{
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QString, after);
    Stage stage;
    addFrames(stage, "abcd");
    stage.probe.runningIndex() = 1;
    Request request(Request::packed(qint32(from), qint32(to)));
    request.from(7);

    // The base answers.
    QVERIFY(!request.set(stage.image, moveFrame));

    QCOMPARE(order(stage), after);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList());
    AnswerBytes answer(request.bytes());
    QString named;
    const QList<QPair<QString, QImage>> thumbnails = answer.thumbnails();
    for (const auto &thumbnail : thumbnails) {
        named += thumbnail.first;
        QCOMPARE(thumbnail.second, Pictures::solid(150, 150, Qt::red));
    }
    QVERIFY(answer.isSound() && answer.atEnd());
    QCOMPARE(named, after);
    QCOMPARE(request.bytes().left(10).toHex(),
             QByteArray("00000004"
                        "00000002") +
                 QByteArray::number(after.at(0).unicode(), 16).rightJustified(4, '0'));
}

void TestPropertiesMoving::movingToNoOtherPlaceDoesNothing_data()
{
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addRow("the same place") << 1 << 1;
    QTest::addRow("to count") << 0 << 4;
    QTest::addRow("to the greatest") << 0 << 2147483647;
    QTest::addRow("to -1") << 0 << -1;
    QTest::addRow("to -2") << 0 << -2;
    QTest::addRow("from -1") << -1 << 0;
    QTest::addRow("from -2") << -2 << 0;
    QTest::addRow("from count") << 4 << 0;
    QTest::addRow("from the greatest") << 2147483647 << 0;
}

void TestPropertiesMoving::movingToNoOtherPlaceDoesNothing()
{
    QFETCH(int, from);
    QFETCH(int, to);
    Stage stage;
    addFrames(stage, "abcd");
    const QByteArray input = Request::packed(qint32(from), qint32(to));
    Request request(input);

    QVERIFY(!request.set(stage.image, moveFrame));

    QCOMPARE(order(stage), QStringLiteral("abcd"));
    QCOMPARE(request.bytes(), input);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesMoving::movingKeepsEverythingOfAFrame()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    stage.probe.frame(0).size = QSizeF(1.5, 2.5);
    Request request(Request::packed(qint32(0), qint32(1)));

    QVERIFY(!request.set(stage.image, moveFrame));

    const CAnimatedPortrait &frame = stage.probe.frame(1);
    QCOMPARE(frame.name, QStringLiteral("f_1"));
    QCOMPARE(frame.image, Pictures::solid(4, 3, Qt::red));
    QCOMPARE(frame.size, QSizeF(1.5, 2.5));
    QCOMPARE(frame.regionSize, QSize(4, 3));
    QCOMPARE(frame.rects, QList<QRect>{QRect(0, 0, 3, 3)});
    QVERIFY(!frame.path.isEmpty());
}

QTEST_MAIN(TestPropertiesMoving)
#include "tst_properties_moving.moc"
