#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The requests that read frames and state.
class TestPropertiesReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aNameIsAnsweredOverItsIndex_data();
    void aNameIsAnsweredOverItsIndex();
    void aNameOutsideTheListIsEmpty_data();
    void aNameOutsideTheListIsEmpty();
    void bytesBehindAnAnswerStay();
    void thumbnailsAreCountedNamedAndFitted();
    void thumbnailsOfNoFramesAreACountOfNothing();
    void aFrameIsAnsweredInFull();
    void theUnusedBitsOfARowAreNotSent();
    void aFrameWithoutAPictureIsAMarker();
    void aFrameOutsideTheListIsNotAnswered_data();
    void aFrameOutsideTheListIsNotAnswered();
    void stateIsWrittenWhereTheStreamStands_data();
    void stateIsWrittenWhereTheStreamStands();
    void theNameShownIsWrittenWhereTheStreamStands();
    void theNameShownIsEmptyOutsideTheList_data();
    void theNameShownIsEmptyOutsideTheList();
    void answersFollowTheByteOrderOfTheStream();
    void readingTellsTheHostNothing();
};

namespace
{

/// State whose numbers all differ.
void fillState(Stage &stage)
{
    stage.probe.animatedType() = 7;
    stage.probe.runningIndex() = 1;
    stage.probe.isRunning() = true;
    stage.probe.shiftInterval() = 258;
    stage.probe.loopCount() = -2;
}

} // namespace

void TestPropertiesReading::aNameIsAnsweredOverItsIndex_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addColumn<QByteArray>("answer");
    // The length of the text in bytes, then its UTF-16 units.
    QTest::addRow("first") << QByteArray("00000000") << QByteArray("000000060066005f0031");
    QTest::addRow("middle") << QByteArray("00000001") << QByteArray("0000000400e965e5");
    QTest::addRow("last, empty") << QByteArray("00000002") << QByteArray("00000000");
}

void TestPropertiesReading::aNameIsAnsweredOverItsIndex()
{
    QFETCH(QByteArray, input);
    QFETCH(QByteArray, answer);
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    stage.probe.frame(1).name = QStringLiteral(u"\u00e9\u65e5");
    stage.probe.frame(2).name = QLatin1String("");
    Request request(QByteArray::fromHex(input));
    request.from(3);

    QVERIFY(request.get(stage.image, 5005));

    QCOMPARE(request.bytes().toHex(), answer);
    QCOMPARE(request.position(), qint64(answer.size() / 2));
}

void TestPropertiesReading::aNameOutsideTheListIsEmpty_data()
{
    QTest::addColumn<QByteArray>("input");
    QTest::addRow("-2") << QByteArray("fffffffe");
    QTest::addRow("-1") << QByteArray("ffffffff");
    QTest::addRow("count") << QByteArray("00000003");
    QTest::addRow("greatest") << QByteArray("7fffffff");
    QTest::addRow("least") << QByteArray("80000000");
}

void TestPropertiesReading::aNameOutsideTheListIsEmpty()
{
    QFETCH(QByteArray, input);
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    Request request(QByteArray::fromHex(input) + QByteArray::fromHex("abcd"));

    QVERIFY(request.get(stage.image, 5005));

    // A null text is as empty as one of no length.
    const QByteArray answer = request.bytes().toHex();
    QVERIFY2(answer == "00000000abcd" || answer == "ffffffffabcd", answer.constData());
    QCOMPARE(request.position(), qint64(4));
}

void TestPropertiesReading::bytesBehindAnAnswerStay()
{
    Stage stage(solidFrames({{4, 4}}));
    Request request(QByteArray::fromHex("00000000aabbccddeeff99"));

    QVERIFY(request.get(stage.image, 5005));

    QCOMPARE(request.bytes().toHex(), QByteArray("000000060066005f003199"));
}

void TestPropertiesReading::thumbnailsAreCountedNamedAndFitted()
{
    Stage stage(solidFrames({{300, 100}, {10, 20}}));
    stage.addFrame(QStringLiteral("none"), QImage());
    Request request(QByteArray::fromHex("0123456789"));
    request.from(5);

    QVERIFY(request.get(stage.image, 5006));

    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray("00000003"));
    QCOMPARE(answer.hex(10), QByteArray("000000060066005f0031"));
    QCOMPARE(answer.picture(), Pictures::solid(150, 50, Qt::red));
    QCOMPARE(answer.hex(10), QByteArray("000000060066005f0032"));
    QCOMPARE(answer.picture(), Pictures::solid(75, 150, Qt::green));
    QCOMPARE(answer.hex(12), QByteArray("00000008006e006f006e0065"));
    QCOMPARE(answer.hex(4), QByteArray("00000000"));
    QVERIFY(answer.isSound());
    QVERIFY(answer.atEnd());
}

void TestPropertiesReading::thumbnailsOfNoFramesAreACountOfNothing()
{
    Stage stage;
    Request request;

    QVERIFY(request.get(stage.image, 5006));

    QCOMPARE(request.bytes().toHex(), QByteArray("00000000"));
}

void TestPropertiesReading::aFrameIsAnsweredInFull()
{
    Stage stage(solidFrames({{4, 4}, {301, 2}}));
    Request request(QByteArray::fromHex("00000001"));
    request.from(4);

    QVERIFY(request.get(stage.image, 5007));

    QCOMPARE(request.bytes().left(12).toHex(), QByteArray("0000000189504e470d0a1a0a"));
    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.picture(), Pictures::solid(301, 2, Qt::green));
    QVERIFY(answer.isSound());
    QVERIFY(answer.atEnd());
}

void TestPropertiesReading::theUnusedBitsOfARowAreNotSent()
{
    QList<QByteArray> answers;
    for (const uchar unused : {uchar(0x00), uchar(0x07)}) {
        QImage picture(5, 1, QImage::Format_Mono);
        *picture.scanLine(0) = uchar(0xa8 | unused);
        Stage stage({picture});
        Request request(Request::packed(qint32(0)));
        QVERIFY(request.get(stage.image, 5007));
        answers.append(request.bytes());
    }
    QVERIFY(answers.at(0).size() > 4);
    QCOMPARE(answers.at(1).toHex(), answers.at(0).toHex());
}

void TestPropertiesReading::aFrameWithoutAPictureIsAMarker()
{
    Stage stage({QImage()});
    Request request(QByteArray::fromHex("00000000"));

    QVERIFY(request.get(stage.image, 5007));

    QCOMPARE(request.bytes().toHex(), QByteArray("00000000"));
    QCOMPARE(request.position(), qint64(4));
}

void TestPropertiesReading::aFrameOutsideTheListIsNotAnswered_data()
{
    aNameOutsideTheListIsEmpty_data();
}

void TestPropertiesReading::aFrameOutsideTheListIsNotAnswered()
{
    QFETCH(QByteArray, input);
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    Request request(QByteArray::fromHex(input));

    QVERIFY(request.get(stage.image, 5007));

    QCOMPARE(request.bytes().toHex(), input);
    // Read, and not rewound for an answer.
    QCOMPARE(request.position(), qint64(4));
}

void TestPropertiesReading::stateIsWrittenWhereTheStreamStands_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<QByteArray>("answer");
    QTest::addRow("type") << 5008 << QByteArray("00000007");
    QTest::addRow("index") << 5012 << QByteArray("00000001");
    QTest::addRow("running") << 5013 << QByteArray("01");
    QTest::addRow("interval") << 5017 << QByteArray("00000102");
    QTest::addRow("loops") << 5018 << QByteArray("fffffffe");
    QTest::addRow("index and count") << 5019 << QByteArray("0000000100000003");
}

void TestPropertiesReading::stateIsWrittenWhereTheStreamStands()
{
    QFETCH(int, id);
    QFETCH(QByteArray, answer);
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    fillState(stage);
    Request request(QByteArray::fromHex("a1a2a3a4a5a6a7a8a9aaabac"));
    request.from(3);

    QVERIFY(request.get(stage.image, id));

    const QByteArray before("a1a2a3a4a5a6a7a8a9aaabac");
    QCOMPARE(request.bytes().toHex(), before.left(6) + answer + before.mid(6 + answer.size()));
    QCOMPARE(request.position(), qint64(3 + answer.size() / 2));
}

void TestPropertiesReading::theNameShownIsWrittenWhereTheStreamStands()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    stage.probe.runningIndex() = 2;
    Request request(QByteArray::fromHex("a1a2a3"));
    request.from(2);

    QVERIFY(request.get(stage.image, 5021));

    QCOMPARE(request.bytes().toHex(), QByteArray("a1a2000000060066005f0033"));
}

void TestPropertiesReading::theNameShownIsEmptyOutsideTheList_data()
{
    QTest::addColumn<int>("index");
    for (int index : {-2, -1, 3, 2147483647, -2147483647 - 1})
        QTest::addRow("%d", index) << index;
}

void TestPropertiesReading::theNameShownIsEmptyOutsideTheList()
{
    QFETCH(int, index);
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    stage.probe.runningIndex() = index;
    Request request;

    QVERIFY(request.get(stage.image, 5021));

    const QByteArray answer = request.bytes().toHex();
    QVERIFY2(answer == "00000000" || answer == "ffffffff", answer.constData());
}

void TestPropertiesReading::answersFollowTheByteOrderOfTheStream()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    fillState(stage);
    Request interval;
    interval.stream().setByteOrder(QDataStream::LittleEndian);
    Request name(QByteArray::fromHex("01000000"));
    name.stream().setByteOrder(QDataStream::LittleEndian);

    QVERIFY(interval.get(stage.image, 5017));
    QVERIFY(name.get(stage.image, 5005));

    QCOMPARE(interval.bytes().toHex(), QByteArray("02010000"));
    QCOMPARE(name.bytes().toHex(), QByteArray("0600000066005f003200"));
}

void TestPropertiesReading::readingTellsTheHostNothing()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
    for (int id : {5005, 5006, 5007, 5008, 5012, 5013, 5017, 5018, 5019, 5021}) {
        Request request(QByteArray::fromHex("00000000"));
        QVERIFY(request.get(stage.image, id));
    }
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestPropertiesReading)
#include "tst_properties_reading.moc"
