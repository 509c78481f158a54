#include "framework/framework.h"
#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/animatedimage/specialproperties/letters.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The requests that rename and delete frames and replace their pictures.
class TestPropertiesEditing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void renamingChangesOneNameAndTellsNobody();
    void aFrameTakesAnyName_data();
    void aFrameTakesAnyName();
    void aReplacedPictureIsMeasuredToldAndAnswered();
    void aReplacedPictureIsToldOfAfterItIsMeasured();
    void aReplacedPictureKeepsNameAndSize();
    void aPictureMayBeReplacedByNone();
    void aPictureMayBeReplacedByNoneInOldStreamVersions_data();
    void aPictureMayBeReplacedByNoneInOldStreamVersions();
    void replacingOutsideTheListReadsNoFurther_data();
    void replacingOutsideTheListReadsNoFurther();
    void deletingShowsWhatThePartSays_data();
    void deletingShowsWhatThePartSays();
    void theLastFrameIsNeverDeleted_data();
    void theLastFrameIsNeverDeleted();
    void deletingFromNoFramesGoesToTheBase();
    void deletingOutsideTheListRemovesNothing_data();
    void deletingOutsideTheListRemovesNothing();
    void deletingKeepsTheScaleOfTheFrameInTheOldPlace();
};

namespace
{

constexpr int renameFrame = 5005;
constexpr int replaceImage = 5007;
constexpr int deleteFrame = 5009;

const QString geometry = QStringLiteral("changed 104");
const QString shown = QStringLiteral("changed 1002");

using namespace Letters;

} // namespace

void TestPropertiesEditing::renamingChangesOneNameAndTellsNobody()
{
    Stage stage;
    addFrames(stage, "abc");
    Request request(QByteArray::fromHex("ffff"
                                        "00000001"
                                        "00000004"
                                        "005a00e9"));
    request.from(2);

    QVERIFY(request.set(stage.image, renameFrame));

    QCOMPARE(order(stage), QStringLiteral(u"aZ\u00e9c"));
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(request.position(), qint64(14));
}

void TestPropertiesEditing::aFrameTakesAnyName_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("taken");
    QTest::addRow("empty") << 0 << QString() << true;
    QTest::addRow("that of another") << 0 << QStringLiteral("b") << true;
    QTest::addRow("a million letters") << 2 << QString(1000000, QLatin1Char('x')) << true;
    QTest::addRow("index -1") << -1 << QStringLiteral("z") << false;
    QTest::addRow("index -2") << -2 << QStringLiteral("z") << false;
    QTest::addRow("index count") << 3 << QStringLiteral("z") << false;
    QTest::addRow("index greatest") << 2147483647 << QStringLiteral("z") << false;
}

void TestPropertiesEditing::aFrameTakesAnyName()
{
    QFETCH(int, index);
    QFETCH(QString, name);
    QFETCH(bool, taken);
    Stage stage;
    addFrames(stage, "abc");
    Request request(Request::packed(qint32(index), name));

    QVERIFY(request.set(stage.image, renameFrame));

    QStringList expected{QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};
    if (taken)
        expected[index] = name;
    for (int i = 0; i < 3; ++i)
        QVERIFY(stage.probe.frame(i).name == expected.at(i));
}

void TestPropertiesEditing::aReplacedPictureIsMeasuredToldAndAnswered()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    const QImage picture = Pictures::fromText({"##..", "##.."});
    Request request(Request::packed(true, qint32(1), picture));
    request.from(5);

    QVERIFY(request.set(stage.image, replaceImage));

    QCOMPARE(stage.probe.frame(1).image, picture);
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>{QRect(0, 0, 2, 2)});
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(4, 2));
    QCOMPARE(stage.log.entries(), QStringList{shown});
    AnswerBytes answer(request.bytes());
    const QImage thumbnail = answer.picture();
    QVERIFY(answer.isSound());
    // 4 x 2 in a box of 150 x 150.
    QCOMPARE(thumbnail.size(), QSize(150, 75));
    QCOMPARE(thumbnail.pixel(10, 10), 0xff000000U);
    QCOMPARE(thumbnail.pixel(140, 10), 0x00000000U);
    QCOMPARE(request.position(), qint64(answer.place()));
}

void TestPropertiesEditing::aReplacedPictureIsToldOfAfterItIsMeasured()
{
    Stage stage(solidFrames({{4, 4}}));
    QList<QList<QRect>> heardWith;
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, &stage.log,
            [&] { heardWith.append(stage.probe.frame(0).rects); });
    Request request(Request::packed(true, qint32(0), Pictures::fromText({"##..", "##.."})));

    QVERIFY(request.set(stage.image, replaceImage));

    QCOMPARE(heardWith, (QList<QList<QRect>>{{QRect(0, 0, 2, 2)}}));
}

void TestPropertiesEditing::aReplacedPictureKeepsNameAndSize()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.probe.frame(0).size = QSizeF(40.5, 20.0);
    Request request(Request::packed(false, qint32(0), Pictures::solid(9, 7, Qt::blue)));

    QVERIFY(request.set(stage.image, replaceImage));

    QCOMPARE(stage.probe.frame(0).name, QStringLiteral("f_1"));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(40.5, 20.0));
    QCOMPARE(stage.probe.frame(0).image.size(), QSize(9, 7));
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 4.0));
}

void TestPropertiesEditing::aPictureMayBeReplacedByNone()
{
    Stage stage(solidFrames({{4, 4}}));
    Request request(QByteArray::fromHex("00"
                                        "00000000"
                                        "00000000"));

    QVERIFY(request.set(stage.image, replaceImage));

    QVERIFY(stage.probe.frame(0).image.isNull());
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>());
    QCOMPARE(stage.log.entries(), QStringList{shown});
    // A thumbnail without a picture, over the first four bytes.
    QCOMPARE(request.bytes().toHex(), QByteArray("000000000000000000"));
    QCOMPARE(request.position(), qint64(4));
}

void TestPropertiesEditing::aPictureMayBeReplacedByNoneInOldStreamVersions_data()
{
    QTest::addColumn<int>("version");
    for (const int version : {1, 3, 4})
        QTest::addRow("version %d", version) << version;
}

void TestPropertiesEditing::aPictureMayBeReplacedByNoneInOldStreamVersions()
{
    QFETCH(int, version);
    Stage stage;
    addFrames(stage, "ab");
    Request request(QByteArray::fromHex("00"
                                        "00000001"));
    request.stream().setVersion(version);

    QVERIFY(request.set(stage.image, replaceImage));

    QVERIFY(stage.probe.frame(1).image.isNull());
    QCOMPARE(stage.log.entries(), QStringList({shown}));
}

void TestPropertiesEditing::replacingOutsideTheListReadsNoFurther_data()
{
    QTest::addColumn<int>("index");
    for (int index : {-2, -1, 2, 2147483647})
        QTest::addRow("%d", index) << index;
}

void TestPropertiesEditing::replacingOutsideTheListReadsNoFurther()
{
    QFETCH(int, index);
    const QList<QImage> pictures = solidFrames({{4, 4}, {4, 4}});
    Stage stage(pictures);
    const QByteArray input = Request::packed(false, qint32(index), Pictures::solid(9, 7, Qt::blue));
    Request request(input);

    QVERIFY(request.set(stage.image, replaceImage));

    QCOMPARE(request.position(), qint64(5));
    QCOMPARE(request.bytes(), input);
    QCOMPARE(stage.probe.frame(0).image, pictures.at(0));
    QCOMPARE(stage.probe.frame(1).image, pictures.at(1));
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesEditing::deletingShowsWhatThePartSays_data()
{
    QTest::addColumn<QByteArray>("frames");
    QTest::addColumn<int>("shownBefore");
    QTest::addColumn<int>("removed");
    QTest::addColumn<QString>("left");
    QTest::addColumn<int>("shownAfter");
    QTest::addColumn<QStringList>("told");
    QTest::addColumn<QStringList>("toldOfBackground");
    const QStringList none;
    const QStringList once{shown};
    const QStringList another{geometry, geometry, shown, shown};
    QTest::addRow("the one shown: the frame in its place is skipped")
        << QByteArray("abcd") << 1 << 1 << QStringLiteral("acd") << 2 << another << once;
    QTest::addRow("the first, shown")
        << QByteArray("abcd") << 0 << 0 << QStringLiteral("bcd") << 1 << another << once;
    QTest::addRow("the last but one, shown: back to 0")
        << QByteArray("abcd") << 2 << 2 << QStringLiteral("abd") << 0 << another << once;
    QTest::addRow("the last, shown: back to 0")
        << QByteArray("abcd") << 3 << 3 << QStringLiteral("abc") << 0 << another << once;
    QTest::addRow("of two the first, shown: 0 stays, told once")
        << QByteArray("ab") << 0 << 0 << QStringLiteral("b") << 0 << once << once;
    QTest::addRow("one before the last, shown: the index has gone")
        << QByteArray("abcd") << 3 << 1 << QStringLiteral("acd") << 0 << another << once;
    QTest::addRow("one before the one shown: the index stays")
        << QByteArray("abcd") << 2 << 0 << QStringLiteral("bcd") << 2 << none << none;
    QTest::addRow("one after the one shown")
        << QByteArray("abcd") << 1 << 2 << QStringLiteral("abd") << 1 << none << none;
}

void TestPropertiesEditing::deletingShowsWhatThePartSays()
{
    QFETCH(QByteArray, frames);
    QFETCH(int, shownBefore);
    QFETCH(int, removed);
    QFETCH(QString, left);
    QFETCH(int, shownAfter);
    QFETCH(QStringList, told);
    QFETCH(QStringList, toldOfBackground);
    for (int type : {-1, 1}) {
        Stage stage;
        addFrames(stage, frames.constData());
        stage.probe.animatedType() = type;
        stage.probe.runningIndex() = shownBefore;
        Request request(QByteArray::fromHex("ff") + Request::packed(qint32(removed)));
        request.from(1);

        // The base answers.
        QVERIFY(!request.set(stage.image, deleteFrame));

        QCOMPARE(order(stage), left);
        QCOMPARE(stage.probe.runningIndex(), shownAfter);
        QCOMPARE(stage.log.entries(), type == 1 ? toldOfBackground : told);
        QCOMPARE(request.position(), qint64(5));
    }
}

void TestPropertiesEditing::theLastFrameIsNeverDeleted_data()
{
    QTest::addColumn<int>("index");
    for (int index : {-1, 0, 1})
        QTest::addRow("%d", index) << index;
}

void TestPropertiesEditing::theLastFrameIsNeverDeleted()
{
    QFETCH(int, index);
    Stage stage;
    addFrames(stage, "a");
    Request request(Request::packed(qint32(index)));

    QVERIFY(!request.set(stage.image, deleteFrame));

    QCOMPARE(order(stage), QStringLiteral("a"));
    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(request.position(), qint64(0));
}

void TestPropertiesEditing::deletingFromNoFramesGoesToTheBase()
{
    Stage stage;
    Request request(QByteArray::fromHex("00000000"));

    QVERIFY(!request.set(stage.image, deleteFrame));

    QCOMPARE(stage.probe.frames().size(), 0);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesEditing::deletingOutsideTheListRemovesNothing_data()
{
    QTest::addColumn<int>("index");
    for (int index : {-2, -1, 3, 2147483647})
        QTest::addRow("%d", index) << index;
}

void TestPropertiesEditing::deletingOutsideTheListRemovesNothing()
{
    QFETCH(int, index);
    Stage stage;
    addFrames(stage, "abc");
    // Even an index shown that is as wrong as the one to delete.
    stage.probe.runningIndex() = index;
    Request request(Request::packed(qint32(index)));

    QVERIFY(!request.set(stage.image, deleteFrame));

    QCOMPARE(order(stage), QStringLiteral("abc"));
    QCOMPARE(stage.probe.runningIndex(), index);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPropertiesEditing::deletingKeepsTheScaleOfTheFrameInTheOldPlace()
{
    // Three frames at twice their size. Without frame 0, the old index finds the second picture:
    // the scale is 20 to 40 across and 40 to 20 down, half and double.
    Stage stage(solidFrames({{10, 20}, {40, 20}, {8, 6}}));
    stage.image->setSize(QSizeF(20.0, 40.0), false, false);
    Request request(QByteArray::fromHex("00000000"));

    QVERIFY(!request.set(stage.image, deleteFrame));

    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.frame(0).size, QSizeF(20.0, 40.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(4.0, 12.0));
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 12.0));
}

QTEST_MAIN(TestPropertiesEditing)
#include "tst_properties_editing.moc"
