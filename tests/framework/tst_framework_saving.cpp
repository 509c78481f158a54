#include "tests/framework/changelog.h"
#include "tests/framework/savedobject.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointF>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

namespace
{

QByteArray streamOf(Saved &object)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    object.save(stream);
    return bytes;
}

bool loadFrom(Saved &object, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    return object.load(stream);
}

/// The stream form of object 7 at (10, 20) of 100 x 50, without parameters.
QByteArray plainForm()
{
    return QByteArray::fromHex("0000004d"         // bytes that follow
                               "01"               // form
                               "00000007"         // id
                               "01"               // editable
                               "4024000000000000" // x 10
                               "4034000000000000" // y 20
                               "4059000000000000" // width 100
                               "4049000000000000" // height 50
                               "00000002"         // turns freely
                               "0000000000000000" // degrees
                               "0000"             // mirror, flip
                               "0000000000"       // no shadow
                               "00000000000000000000000000000000"
                               "00000000"); // parameters
}

/// The plain form with the bytes from @p at on replaced by @p hex.
QByteArray changed(int at, const char *hex)
{
    const QByteArray bytes = QByteArray::fromHex(hex);
    return plainForm().replace(at, bytes.size(), bytes);
}

bool isSound(Saved &object)
{
    const QSizeF size = object.getSize();
    const QPointF pos = object.getPos();
    return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() >= 0 &&
           size.height() >= 0 && std::isfinite(pos.x()) && std::isfinite(pos.y()) &&
           std::isfinite(object.getKTRotateDegree()) && object.getKTRotateType() >= 0 &&
           object.getKTRotateType() <= 2;
}

} // namespace

class TestFrameworkSaving : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theStreamFormIsThis();
    void everythingComesBackFromAStream();
    void everyTurningAndMirroringComesBack_data();
    void everyTurningAndMirroringComesBack();
    void aLoadedObjectIsPlacedAndTellsNobody();
    void savingTwiceGivesTheSame();
    void theStreamsOwnSettingsStay();
    void whatFollowsTheBlockIsFound();
    void aCutStreamLeavesANewObject();
    void aChangedByteLeavesASoundObject();
    void impossibleNumbersAreRefused_data();
    void impossibleNumbersAreRefused();
    void aHugeLengthTakesNoMemory();
    void aHugeCountTakesNoMemory();
    void anUnknownFormIsRefused();
    void anUnknownTypeEndsTheParameters();
    void valuesOfOtherTypesAreNotSaved();
    void readingReplacesTheParameters();
    void aChangedParameterIsNoticed();
};

void TestFrameworkSaving::theStreamFormIsThis()
{
    Saved object(7, true);
    object.setSize(QSizeF(100, 50), false, false);
    object.setPos(QPointF(10, 20), false);
    QCOMPARE(streamOf(object).toHex(), plainForm().toHex());
    Saved loaded;
    QVERIFY(loadFrom(loaded, plainForm()));
    QCOMPARE(loaded.objectId(), 7);
    QCOMPARE(loaded.getPos(), QPointF(10, 20));
    QCOMPARE(loaded.getSize(), QSizeF(100, 50));
}

void TestFrameworkSaving::everythingComesBackFromAStream()
{
    Saved object(7, false);
    setUp(object);
    Saved loaded;
    QVERIFY(loadFrom(loaded, streamOf(object)));
    compareWithSetUp(loaded);
    QVERIFY(loaded.boundingRect().contains(QRectF(4, 5, 100, 50)));
}

void TestFrameworkSaving::everyTurningAndMirroringComesBack_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("mirrored");
    QTest::addColumn<bool>("flipped");
    QTest::newRow("upright") << 0 << false << false;
    QTest::newRow("left or right, mirrored") << 1 << true << false;
    QTest::newRow("turning, flipped") << 2 << false << true;
}

void TestFrameworkSaving::everyTurningAndMirroringComesBack()
{
    QFETCH(int, type);
    QFETCH(bool, mirrored);
    QFETCH(bool, flipped);
    Saved object;
    object.setKTRotateType(type);
    object.setMirror(mirrored, false);
    object.setFlip(flipped, false);
    QJsonObject json;
    object.saveJson(json);
    // Into objects that are different in all of it.
    Saved fromStream;
    Saved fromJson;
    for (Saved *loaded : {&fromStream, &fromJson}) {
        loaded->setKTRotateType((type + 1) % 3);
        loaded->setMirror(!mirrored, false);
        loaded->setFlip(!flipped, false);
    }
    QVERIFY(loadFrom(fromStream, streamOf(object)));
    QVERIFY(fromJson.loadJson(json));
    for (const Saved *loaded : {&fromStream, &fromJson}) {
        QCOMPARE(loaded->getKTRotateType(), type);
        QCOMPARE(loaded->isMirrored(), mirrored);
        QCOMPARE(loaded->isFlipped(), flipped);
    }
}

void TestFrameworkSaving::aLoadedObjectIsPlacedAndTellsNobody()
{
    Saved object(7, false);
    setUp(object);
    object.setKTRotateType(2);
    QJsonObject json;
    object.saveJson(json);
    const ChangeLog log;
    Saved fromStream;
    Saved fromJson;
    QVERIFY(loadFrom(fromStream, streamOf(object)));
    QVERIFY(fromJson.loadJson(json));
    for (const Saved *loaded : {&fromStream, &fromJson}) {
        QCOMPARE(loaded->getClientRect(), QRectF(0, 0, 100, 50));
        QCOMPARE(loaded->pos(), QPointF(10, -20));
        QCOMPARE(loaded->transformOriginPoint(), QPointF(50, 25));
        QCOMPARE(loaded->rotation(), 30.0);
        QVERIFY(!loaded->flags().testFlag(QGraphicsItem::ItemIsSelectable));
    }
    QCOMPARE(log.entries, QStringList());
}

void TestFrameworkSaving::savingTwiceGivesTheSame()
{
    Saved object(7, false);
    setUp(object);
    const QByteArray bytes = streamOf(object);
    Saved loaded;
    loadFrom(loaded, bytes);
    QCOMPARE(streamOf(loaded), bytes);
}

void TestFrameworkSaving::theStreamsOwnSettingsStay()
{
    Saved object(7, true);
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_4_0);
    out.setByteOrder(QDataStream::LittleEndian);
    out.setFloatingPointPrecision(QDataStream::SinglePrecision);
    object.setPos(QPointF(0.1, 1e200), false);
    QVERIFY(object.save(out));
    QCOMPARE(out.version(), int(QDataStream::Qt_4_0));
    QCOMPARE(out.byteOrder(), QDataStream::LittleEndian);
    QCOMPARE(bytes.left(4).toHex(), QByteArray("4d000000"));
    QDataStream in(bytes);
    in.setVersion(QDataStream::Qt_4_0);
    in.setByteOrder(QDataStream::LittleEndian);
    Saved loaded;
    QVERIFY(loaded.load(in));
    QVERIFY(loaded.getPos().x() == 0.1);
    QVERIFY(loaded.getPos().y() == 1e200);
}

void TestFrameworkSaving::whatFollowsTheBlockIsFound()
{
    QByteArray bytes = changed(5, "ffffffff") + QByteArray::fromHex("0000002a");
    bytes[4] = 99; // a form of the future
    QDataStream stream(bytes);
    Saved loaded;
    QVERIFY(!loaded.load(stream));
    qint32 following = 0;
    stream >> following;
    QCOMPARE(following, 42);
}

void TestFrameworkSaving::aCutStreamLeavesANewObject()
{
    Saved object(7, false);
    setUp(object);
    const QByteArray bytes = streamOf(object);
    for (int length = 0; length < bytes.size(); ++length) {
        Saved loaded;
        QVERIFY(!loadFrom(loaded, bytes.left(length)));
        compareWithNew(loaded);
    }
}

void TestFrameworkSaving::aChangedByteLeavesASoundObject()
{
    Saved object(7, false);
    setUp(object);
    const QByteArray bytes = streamOf(object);
    for (int at = 0; at < bytes.size(); ++at) {
        for (int change = 1; change < 256; ++change) {
            QByteArray damaged = bytes;
            damaged[at] = char(uchar(damaged[at]) ^ change);
            Saved loaded;
            loadFrom(loaded, damaged);
            QVERIFY2(isSound(loaded), qPrintable(QString::number(at)));
        }
    }
}

void TestFrameworkSaving::impossibleNumbersAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("x not a number") << changed(10, "7ff8000000000000");
    QTest::newRow("y infinite") << changed(18, "fff0000000000000");
    QTest::newRow("width negative") << changed(26, "c059000000000000");
    QTest::newRow("height infinite") << changed(34, "7ff0000000000000");
    QTest::newRow("rotation type unknown") << changed(42, "00000009");
    QTest::newRow("rotation type 3") << changed(42, "00000003");
    QTest::newRow("rotation type -1") << changed(42, "ffffffff");
    QTest::newRow("degrees not a number") << changed(46, "7ff8000000000000");
    QTest::newRow("shadow offset infinite") << changed(61, "7ff0000000000000");
}

void TestFrameworkSaving::impossibleNumbersAreRefused()
{
    QFETCH(QByteArray, bytes);
    Saved loaded;
    QVERIFY(!loadFrom(loaded, bytes));
    QVERIFY(isSound(loaded));
    QCOMPARE(loaded.objectId(), 7);
}

void TestFrameworkSaving::aHugeLengthTakesNoMemory()
{
    for (const char *length : {"ffffffff", "7fffffff", "80000000", "0000004e"}) {
        Saved loaded;
        QVERIFY(!loadFrom(loaded, changed(0, length)));
        compareWithNew(loaded);
    }
}

void TestFrameworkSaving::aHugeCountTakesNoMemory()
{
    Saved loaded;
    QVERIFY(!loadFrom(loaded, changed(77, "ffffffff")));
    QCOMPARE(loaded.getPos(), QPointF(10, 20));
    // One parameter "a", a list of 0xffffffff texts of which there is one.
    QByteArray list = plainForm().left(77) + QByteArray::fromHex("00000001"
                                                                 "0000000161"
                                                                 "07ffffffff"
                                                                 "0000000162");
    list[3] = char(list.size() - 4);
    Saved withList;
    QVERIFY(!loadFrom(withList, list));
    QCOMPARE(withList.params().size(), 0);
}

void TestFrameworkSaving::anUnknownFormIsRefused()
{
    for (const char *form : {"00", "02", "ff"}) {
        Saved loaded;
        QVERIFY(!loadFrom(loaded, changed(4, form)));
        compareWithNew(loaded);
    }
}

void TestFrameworkSaving::anUnknownTypeEndsTheParameters()
{
    // Three parameters: a = 5, b of type 200, c = 6.
    QByteArray bytes = plainForm().left(77) + QByteArray::fromHex("00000003"
                                                                  "00000001610200000005"
                                                                  "0000000162c8"
                                                                  "00000001630200000006");
    bytes[3] = char(bytes.size() - 4);
    Saved loaded;
    QVERIFY(!loadFrom(loaded, bytes));
    QCOMPARE(loaded.params(), (QMap<QString, QVariant>{{QStringLiteral("a"), 5}}));
}

void TestFrameworkSaving::valuesOfOtherTypesAreNotSaved()
{
    Saved object;
    object.setOtherParams(QStringLiteral("color"), QColor(Qt::red));
    object.setOtherParams(QStringLiteral("kept"), 1);
    Saved fromStream;
    QVERIFY(loadFrom(fromStream, streamOf(object)));
    QCOMPARE(fromStream.params().keys(), QStringList{QStringLiteral("kept")});
    QJsonObject json;
    object.saveJson(json);
    QCOMPARE(json.value(QStringLiteral("OtherParams")).toObject().keys(),
             QStringList{QStringLiteral("kept")});
}

void TestFrameworkSaving::readingReplacesTheParameters()
{
    Saved object;
    object.setOtherParams(QStringLiteral("new"), 1);
    const QMap<QString, QVariant> expected = object.params();
    QJsonObject json;
    object.saveJson(json);
    Saved loaded;
    loaded.setOtherParams(QStringLiteral("old"), 2);
    QVERIFY(loadFrom(loaded, streamOf(object)));
    QCOMPARE(loaded.params(), expected);
    loaded.setOtherParams(QStringLiteral("old"), 2);
    QVERIFY(loaded.loadJson(json));
    QCOMPARE(loaded.params(), expected);
}

void TestFrameworkSaving::aChangedParameterIsNoticed()
{
    Saved object;
    const QString key = QStringLiteral("object_name");
    QVERIFY(object.setOtherParams(key, QStringLiteral("1")));
    QVERIFY(!object.setOtherParams(key, QStringLiteral("1")));
    QVERIFY(object.setOtherParams(key, 1));
    QCOMPARE(object.getOtherParams(key), QVariant(1));
    QVERIFY(object.setOtherParams(key, QVariant()));
    QVERIFY(!object.getOtherParams(key).isValid());
    QVERIFY(!object.setOtherParams(key, QVariant()));
}

QTEST_MAIN(TestFrameworkSaving)
#include "tst_framework_saving.moc"
