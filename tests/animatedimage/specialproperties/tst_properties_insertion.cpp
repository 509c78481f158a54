#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The requests that insert a blank frame and a copy of a frame.
class TestPropertiesInsertion : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aBlankFrameIsInsertedBehindItsIndex_data();
    void aBlankFrameIsInsertedBehindItsIndex();
    void aBlankFrameIsTransparentWhiteAndMeasured();
    void anEmptyObjectGetsABlankFrameOf500By500();
    void aBlankFrameIsAsLargeAsThePictureNotItsDisplay();
    void aBlankFrameBesideNoPictureHasNone();
    void aBlankFrameTakesTheLowestFreeNumber_data();
    void aBlankFrameTakesTheLowestFreeNumber();
    void aCopyIsInsertedBehindItsTarget_data();
    void aCopyIsInsertedBehindItsTarget();
    void aCopyHasPixelsOfItsOwn();
    void aMissingSourceGivesOpaqueWhite();
    void aMissingSourceNamesAfterTheTargetTakenOrNot();
    void aMissingSourceWithoutFramesGivesNothing();
    void theResultIsAnIndexAPictureAndAllThumbnails();
    void insertingTellsTheHostNothingAndShowsTheSameIndex();
};

namespace
{

constexpr int insertBlank = 5010;
constexpr int duplicate = 5011;
constexpr QRgb transparentWhite = 0x00ffffffU;

void nameObject(Stage &stage, const char *name)
{
    // Not by setOtherParams(), which renames the frames too.
    stage.probe.otherParams().insert(QStringLiteral("object_name"), QString::fromUtf8(name));
}

bool isAll(const QImage &image, QRgb color)
{
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixel(x, y) != color)
                return false;
        }
    }
    return true;
}

} // namespace

void TestPropertiesInsertion::aBlankFrameIsInsertedBehindItsIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    const QString ofFrame = QStringLiteral("f_4");
    const QString ofObject = QStringLiteral("cat_1");
    QTest::addRow("first") << 0 << 1 << ofFrame << QSize(4, 3);
    QTest::addRow("middle") << 1 << 2 << ofFrame << QSize(5, 6);
    QTest::addRow("last") << 2 << 3 << ofFrame << QSize(7, 2);
    QTest::addRow("-1") << -1 << 3 << ofObject << QSize(4, 3);
    QTest::addRow("-2") << -2 << 3 << ofObject << QSize(4, 3);
    QTest::addRow("count") << 3 << 3 << ofObject << QSize(4, 3);
    QTest::addRow("greatest") << 2147483647 << 3 << ofObject << QSize(4, 3);
}

void TestPropertiesInsertion::aBlankFrameIsInsertedBehindItsIndex()
{
    QFETCH(int, index);
    QFETCH(int, place);
    QFETCH(QString, name);
    QFETCH(QSize, size);
    Stage stage(solidFrames({{4, 3}, {5, 6}, {7, 2}}));
    nameObject(stage, "cat");
    Request request(Request::packed(qint32(index)));
    request.from(1);

    QVERIFY(request.get(stage.image, insertBlank));

    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray::number(place).rightJustified(8, '0'));
    const QImage picture = answer.picture();
    QCOMPARE(picture.size(), size);
    QVERIFY(isAll(picture, transparentWhite));
    QCOMPARE(answer.thumbnails().size(), 4);
    QVERIFY(answer.isSound() && answer.atEnd());
    QStringList expected{QStringLiteral("f_1"), QStringLiteral("f_2"), QStringLiteral("f_3")};
    expected.insert(place, name);
    QCOMPARE(stage.frameNames(), expected);
    QCOMPARE(stage.probe.frame(place).image.size(), size);
    QCOMPARE(stage.probe.frame(place).size, QSizeF(size));
}

void TestPropertiesInsertion::aBlankFrameIsTransparentWhiteAndMeasured()
{
    Stage stage(solidFrames({{4, 3}}));
    Request request(QByteArray::fromHex("00000000"));

    QVERIFY(request.get(stage.image, insertBlank));

    const CAnimatedPortrait &frame = stage.probe.frame(1);
    QCOMPARE(frame.image.format(), QImage::Format_ARGB32);
    QVERIFY(isAll(frame.image, transparentWhite));
    QCOMPARE(frame.regionSize, QSize(4, 3));
    QCOMPARE(frame.rects, QList<QRect>());
    QVERIFY(frame.path.isEmpty());
}

void TestPropertiesInsertion::anEmptyObjectGetsABlankFrameOf500By500()
{
    Stage stage;
    Request request(QByteArray::fromHex("ffffffff"));

    QVERIFY(request.get(stage.image, insertBlank));

    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("_1")});
    QCOMPARE(stage.probe.frame(0).image.size(), QSize(500, 500));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(500.0, 500.0));
    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray("00000000"));
    const QImage picture = answer.picture();
    QCOMPARE(picture.size(), QSize(500, 500));
    QVERIFY(isAll(picture, transparentWhite));
    QCOMPARE(answer.hex(4), QByteArray("00000001"));
    QCOMPARE(answer.hex(8), QByteArray("00000004005f0031"));
    QCOMPARE(answer.picture().size(), QSize(150, 150));
    QVERIFY(answer.isSound() && answer.atEnd());
}

void TestPropertiesInsertion::aBlankFrameIsAsLargeAsThePictureNotItsDisplay()
{
    Stage stage(solidFrames({{4, 3}}));
    stage.probe.frame(0).size = QSizeF(80.0, 60.0);
    Request after(QByteArray::fromHex("00000000"));
    Request atEnd(QByteArray::fromHex("ffffffff"));

    QVERIFY(after.get(stage.image, insertBlank));
    QVERIFY(atEnd.get(stage.image, insertBlank));

    QCOMPARE(stage.probe.frame(1).image.size(), QSize(4, 3));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(4.0, 3.0));
    QCOMPARE(stage.probe.frame(2).image.size(), QSize(4, 3));
}

void TestPropertiesInsertion::aBlankFrameBesideNoPictureHasNone()
{
    Stage stage({QImage()});
    Request request(QByteArray::fromHex("00000000"));

    QVERIFY(request.get(stage.image, insertBlank));

    QCOMPARE(stage.probe.frames().size(), 2);
    QVERIFY(stage.probe.frame(1).image.isNull());
    QCOMPARE(stage.probe.frame(1).size, QSizeF(0.0, 0.0));
    // Index 1, no picture, two thumbnails: "f_1" and "f_2", without pictures either.
    QCOMPARE(request.bytes().toHex(), QByteArray("00000001"
                                                 "00000000"
                                                 "00000002"
                                                 "000000060066005f003100000000"
                                                 "000000060066005f003200000000"));
}

void TestPropertiesInsertion::aBlankFrameTakesTheLowestFreeNumber_data()
{
    QTest::addColumn<QByteArray>("objectName");
    QTest::addColumn<QStringList>("present");
    QTest::addColumn<QString>("expected");
    const auto list = [](const char *text) {
        return QString::fromUtf8(text).split(QLatin1Char(' '));
    };
    QTest::addRow("the number appended is cut off")
        << QByteArray("cat") << list("x y z") << QStringLiteral("cat_1");
    QTest::addRow("a gap") << QByteArray("cat") << list("cat_1 cat_3") << QStringLiteral("cat_2");
    QTest::addRow("an underscore in the name")
        << QByteArray("my_cat") << list("my_cat_1 cat_1") << QStringLiteral("my_cat_2");
    QTest::addRow("the bare stem is not used")
        << QByteArray("cat") << list("dog") << QStringLiteral("cat_1");
    QTest::addRow("a percent sign") << QByteArray("5%1_") << list("x") << QStringLiteral("5%1__1");
    QTest::addRow("no name") << QByteArray() << list("_1 x") << QStringLiteral("_2");
}

void TestPropertiesInsertion::aBlankFrameTakesTheLowestFreeNumber()
{
    QFETCH(QByteArray, objectName);
    QFETCH(QStringList, present);
    QFETCH(QString, expected);
    Stage stage;
    for (const QString &name : present)
        stage.addFrame(name, Pictures::transparent(2, 2));
    nameObject(stage, objectName);
    Request request(QByteArray::fromHex("ffffffff"));

    QVERIFY(request.get(stage.image, insertBlank));

    QCOMPARE(stage.probe.frames().last().name, expected);
}

void TestPropertiesInsertion::aCopyIsInsertedBehindItsTarget_data()
{
    QTest::addColumn<int>("source");
    QTest::addColumn<int>("target");
    QTest::addColumn<int>("place");
    QTest::addColumn<QString>("name");
    // The names of the frames are a_1, b_1 and c_1, so a name tells whose it was made of.
    QTest::addRow("both valid") << 0 << 2 << 3 << QStringLiteral("c_2");
    QTest::addRow("before itself") << 2 << 0 << 1 << QStringLiteral("a_2");
    QTest::addRow("after itself") << 1 << 1 << 2 << QStringLiteral("b_2");
    QTest::addRow("target -1") << 0 << -1 << 3 << QStringLiteral("a_2");
    QTest::addRow("target -2") << 1 << -2 << 3 << QStringLiteral("b_2");
    QTest::addRow("target count") << 2 << 3 << 3 << QStringLiteral("c_2");
    QTest::addRow("target greatest") << 0 << 2147483647 << 3 << QStringLiteral("a_2");
    QTest::addRow("source -1") << -1 << 0 << 1 << QStringLiteral("a_1_1");
    QTest::addRow("source -2") << -2 << 2 << 3 << QStringLiteral("c_1_1");
    QTest::addRow("source count") << 3 << 1 << 2 << QStringLiteral("b_1_1");
    QTest::addRow("source greatest") << 2147483647 << 1 << 2 << QStringLiteral("b_1_1");
    QTest::addRow("neither valid") << -1 << -1 << 3 << QStringLiteral("cat_1");
    QTest::addRow("neither valid, beyond") << 3 << 3 << 3 << QStringLiteral("cat_1");
}

void TestPropertiesInsertion::aCopyIsInsertedBehindItsTarget()
{
    QFETCH(int, source);
    QFETCH(int, target);
    QFETCH(int, place);
    QFETCH(QString, name);
    Stage stage;
    const QList<QImage> pictures = solidFrames({{4, 3}, {5, 6}, {7, 2}});
    QStringList expected{QStringLiteral("a_1"), QStringLiteral("b_1"), QStringLiteral("c_1")};
    for (int i = 0; i < 3; ++i)
        stage.addFrame(expected.at(i), pictures.at(i));
    nameObject(stage, "cat");
    const bool copies = source >= 0 && source < 3;
    const QImage picture =
        copies ? pictures.at(source) : Pictures::solid(4, 3, Qt::white, QImage::Format_RGB32);
    Request request(Request::packed(qint32(source), qint32(target)));
    request.from(8);

    QVERIFY(request.get(stage.image, duplicate));

    expected.insert(place, name);
    QCOMPARE(stage.frameNames(), expected);
    QCOMPARE(stage.probe.frame(place).image, picture);
    QCOMPARE(stage.probe.frame(place).size, QSizeF(picture.size()));
    QCOMPARE(stage.probe.frame(place).regionSize, picture.size());
    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray::number(place).rightJustified(8, '0'));
    QCOMPARE(answer.picture(), picture);
    QCOMPARE(answer.thumbnails().value(place).first, name);
    QVERIFY(answer.isSound() && answer.atEnd());
}

void TestPropertiesInsertion::aCopyHasPixelsOfItsOwn()
{
    Stage stage(solidFrames({{4, 3}}));
    Request request(Request::packed(qint32(0), qint32(0)));

    QVERIFY(request.get(stage.image, duplicate));

    const QImage &original = stage.probe.frames().at(0).image;
    const QImage &copy = stage.probe.frames().at(1).image;
    QVERIFY(original.constBits() != copy.constBits());
    QCOMPARE(copy, Pictures::solid(4, 3, Qt::red));
}

void TestPropertiesInsertion::aMissingSourceGivesOpaqueWhite()
{
    Stage stage(solidFrames({{4, 3}, {8, 8}}));
    Request request(Request::packed(qint32(-1), qint32(1)));

    QVERIFY(request.get(stage.image, duplicate));

    const CAnimatedPortrait &frame = stage.probe.frame(2);
    QCOMPARE(frame.image.format(), QImage::Format_RGB32);
    QCOMPARE(frame.image.size(), QSize(4, 3));
    QVERIFY(isAll(frame.image, 0xffffffffU));
    // Opaque but for the last column, which never belongs to a rectangle.
    QCOMPARE(frame.rects, QList<QRect>{QRect(0, 0, 3, 3)});
}

void TestPropertiesInsertion::aMissingSourceNamesAfterTheTargetTakenOrNot()
{
    Stage stage;
    stage.addFrame(QStringLiteral("cat"), Pictures::transparent(2, 2));
    stage.addFrame(QStringLiteral("cat_1"), Pictures::transparent(2, 2));
    Request first(Request::packed(qint32(9), qint32(0)));
    Request second(Request::packed(qint32(9), qint32(0)));

    QVERIFY(first.get(stage.image, duplicate));
    QVERIFY(second.get(stage.image, duplicate));

    QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("cat"), QStringLiteral("cat_1"),
                                              QStringLiteral("cat_1"), QStringLiteral("cat_1")}));
}

void TestPropertiesInsertion::aMissingSourceWithoutFramesGivesNothing()
{
    Stage stage;
    const QByteArray input = Request::packed(qint32(0), qint32(0));
    Request request(input);

    QVERIFY(request.get(stage.image, duplicate));

    QCOMPARE(stage.probe.frames().size(), 0);
    QCOMPARE(request.bytes(), input);
}

void TestPropertiesInsertion::theResultIsAnIndexAPictureAndAllThumbnails()
{
    Stage stage(solidFrames({{300, 100}, {10, 20}}));
    Request request(Request::packed(qint32(1), qint32(0)));

    QVERIFY(request.get(stage.image, duplicate));

    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray("00000001"));
    QCOMPARE(answer.hex(12), QByteArray("0000000189504e470d0a1a0a"));
    AnswerBytes again(request.bytes());
    again.hex(4);
    QCOMPARE(again.picture(), Pictures::solid(10, 20, Qt::green));
    QCOMPARE(again.hex(4), QByteArray("00000003"));
    QCOMPARE(again.hex(10), QByteArray("000000060066005f0031"));
    QCOMPARE(again.picture(), Pictures::solid(150, 50, Qt::red));
    QCOMPARE(again.hex(10), QByteArray("000000060066005f0033"));
    QCOMPARE(again.picture(), Pictures::solid(75, 150, Qt::green));
    QCOMPARE(again.hex(10), QByteArray("000000060066005f0032"));
    QCOMPARE(again.picture(), Pictures::solid(75, 150, Qt::green));
    QVERIFY(again.isSound() && again.atEnd());
    QCOMPARE(request.position(), qint64(again.place()));
}

void TestPropertiesInsertion::insertingTellsTheHostNothingAndShowsTheSameIndex()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}, {7, 2}}));
    stage.probe.runningIndex() = 1;
    stage.probe.isRunning() = true;
    Request blank(QByteArray::fromHex("00000000"));
    Request copy(Request::packed(qint32(2), qint32(0)));

    QVERIFY(blank.get(stage.image, insertBlank));
    QVERIFY(copy.get(stage.image, duplicate));

    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage.probe.runningIndex(), 1);
    QVERIFY(stage.probe.isRunning());
}

QTEST_MAIN(TestPropertiesInsertion)
#include "tst_properties_insertion.moc"
