#include "framework/document.h"
#include "host/baseobject.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointF>
#include <QtTest/QTest>

#include <cmath>
#include <limits>

namespace
{

struct Saved : CBaseObject {
    explicit Saved(int id = 0, bool editable = true)
        : CBaseObject(id, editable, nullptr, nullptr)
    {
    }

    QMap<QString, QVariant> params() const { return m_otherParams; }
};

/// A value of every type that is kept.
QMap<QString, QVariant> everyType()
{
    return {
        {QStringLiteral("a bool"), true},
        {QStringLiteral("b int"), -3},
        {QStringLiteral("c uint"), 4000000000U},
        {QStringLiteral("d longlong"), qlonglong(-9007199254740993)},
        {QStringLiteral("e double"), 0.1},
        {QStringLiteral("f text"), QStringLiteral("caf\u00e9 \"x\"")},
        {QStringLiteral("g texts"), QStringList{QStringLiteral("one"), QString()}},
        {QStringLiteral("h point"), QPointF(-1.5, 2.25)},
        {QStringLiteral("i size"), QSizeF(3, 4)},
        {QStringLiteral("j rect"), QRectF(1, 2, 3, 4)},
        {QStringLiteral("k bytes"), QByteArray("\0\xff\n", 3)},
        {QStringLiteral("l minus zero"), -0.0},
        {QStringLiteral("m infinity"), std::numeric_limits<double>::infinity()},
        {QStringLiteral("n empty texts"), QStringList()},
    };
}

void setUp(Saved &object)
{
    object.setSize(QSizeF(100, 50), false, false);
    object.setPos(QPointF(10, -20), false);
    object.setRotate(30, false);
    object.setKTRotateType(1);
    object.setMirror(true, false);
    object.setLayerShadow(QColor(1, 2, 3, 128), QPointF(4, 5));
    const auto params = everyType();
    for (auto param = params.begin(); param != params.end(); ++param)
        object.setOtherParams(param.key(), param.value());
}

void compareWithSetUp(Saved &object)
{
    QCOMPARE(object.objectId(), 7);
    QVERIFY(!object.isEditable());
    QCOMPARE(object.getSize(), QSizeF(100, 50));
    QCOMPARE(object.getPos(), QPointF(10, -20));
    QCOMPARE(object.pos(), QPointF(10, -20));
    QCOMPARE(object.getKTRotateDegree(), 30.0);
    QCOMPARE(object.getKTRotateType(), 1);
    QVERIFY(object.isMirrored());
    QVERIFY(!object.isFlipped());
    const auto expected = everyType();
    QCOMPARE(object.params().keys(), expected.keys());
    for (auto param = expected.begin(); param != expected.end(); ++param) {
        const QVariant value = object.getOtherParams(param.key());
        QCOMPARE(value.userType(), param.value().userType());
        QCOMPARE(value, param.value());
    }
    QVERIFY(std::signbit(object.getOtherParams(QStringLiteral("l minus zero")).toDouble()));
}

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

void compareWithNew(Saved &object)
{
    QCOMPARE(object.objectId(), 0);
    QVERIFY(object.isEditable());
    QCOMPARE(object.getSize(), QSizeF(0, 0));
    QCOMPARE(object.getPos(), QPointF(0, 0));
    QCOMPARE(object.getKTRotateType(), 2);
    QCOMPARE(object.params().size(), 0);
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
    void everythingComesBackFromJson();
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
    void theJsonFormIsThis();
    void foreignJsonValuesAreTaken();
    void damagedJsonLeavesTheRest_data();
    void damagedJsonLeavesTheRest();
    void typedJsonValuesMustFitTheirType();
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

void TestFrameworkSaving::everythingComesBackFromJson()
{
    Saved object(7, false);
    setUp(object);
    QJsonObject json;
    QVERIFY(object.saveJson(json));
    QJsonObject text = QJsonDocument::fromJson(QJsonDocument(json).toJson()).object();
    Saved loaded;
    QVERIFY(loaded.loadJson(text));
    compareWithSetUp(loaded);
    QJsonObject again;
    loaded.saveJson(again);
    QCOMPARE(again, json);
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
    object.save(out);
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

void TestFrameworkSaving::theJsonFormIsThis()
{
    Saved object(7, true);
    object.setSize(QSizeF(100, 50), false, false);
    object.setPos(QPointF(10, 20), false);
    object.setLayerShadow(QColor(1, 2, 3, 128), QPointF(4, 5));
    object.setOtherParams(QStringLiteral("n"), 3);
    object.setOtherParams(QStringLiteral("p"), QPointF(1, qQNaN()));
    QJsonObject json;
    object.saveJson(json);
    const QByteArray expected =
        "{\"Editable\":true,\"Flip\":false,\"Mirror\":false,\"ObjectId\":7,"
        "\"OtherParams\":{\"n\":{\"int\":3},\"p\":{\"QPointF\":[1,\"nan\"]}},"
        "\"Position\":[10,20],\"RotateDegree\":0,\"RotateType\":2,"
        "\"Shadow\":{\"Color\":\"#80010203\",\"Offset\":[4,5]},"
        "\"Size\":[100,50]}";
    QCOMPARE(QJsonDocument(json).toJson(QJsonDocument::Compact), expected);
}

void TestFrameworkSaving::foreignJsonValuesAreTaken()
{
    QJsonObject json = QJsonDocument::fromJson("{\"OtherParams\": {"
                                               "\"flag\": true, \"count\": 3, \"ratio\": 2.5,"
                                               "\"big\": 3e9, \"name\": \"cat\","
                                               "\"names\": [\"a\", \"b\"], \"none\": null,"
                                               "\"mixed\": [1, \"b\"], \"thing\": {\"x\": 1},"
                                               "\"two\": {\"int\": 1, \"uint\": 1}}}")
                           .object();
    Saved loaded;
    loaded.loadJson(json);
    const QMap<QString, QVariant> expected{
        {QStringLiteral("flag"), true},
        {QStringLiteral("count"), 3},
        {QStringLiteral("ratio"), 2.5},
        {QStringLiteral("big"), 3e9},
        {QStringLiteral("name"), QStringLiteral("cat")},
        {QStringLiteral("names"), QStringList{QStringLiteral("a"), QStringLiteral("b")}},
    };
    QCOMPARE(loaded.params(), expected);
    QCOMPARE(loaded.getOtherParams(QStringLiteral("count")).userType(), int(QMetaType::Int));
}

void TestFrameworkSaving::damagedJsonLeavesTheRest_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::newRow("empty") << QByteArray("{}");
    QTest::newRow("null members") << QByteArray("{\"Position\": null, \"Size\": null, "
                                                "\"OtherParams\": null, \"Shadow\": null}");
    QTest::newRow("short arrays") << QByteArray("{\"Position\": [1], \"Size\": []}");
    QTest::newRow("long arrays") << QByteArray("{\"Position\": [1, 2, 3], \"Size\": [1, 2, 3]}");
    QTest::newRow("texts") << QByteArray("{\"Position\": [\"1\", \"2\"], \"ObjectId\": \"5\", "
                                         "\"RotateDegree\": \"5\", \"Editable\": 0}");
    QTest::newRow("negative size") << QByteArray("{\"Size\": [-1, 5]}");
    QTest::newRow("unknown rotation") << QByteArray("{\"RotateType\": 17}");
    QTest::newRow("shadow without colour") << QByteArray("{\"Shadow\": {\"Offset\": [1, 2]}}");
    QTest::newRow("parameters as a list") << QByteArray("{\"OtherParams\": [1, 2]}");
}

void TestFrameworkSaving::damagedJsonLeavesTheRest()
{
    QFETCH(QByteArray, json);
    QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonObject before = object;
    Saved loaded;
    loaded.loadJson(object);
    compareWithNew(loaded);
    QCOMPARE(object, before);
}

void TestFrameworkSaving::typedJsonValuesMustFitTheirType()
{
    QJsonObject json = QJsonDocument::fromJson(
                           "{\"OtherParams\": {"
                           "\"a\": {\"int\": 3e9}, \"b\": {\"int\": 1.5}, \"c\": {\"uint\": -1},"
                           "\"d\": {\"qlonglong\": 5}, \"e\": {\"qlonglong\": \"5x\"},"
                           "\"f\": {\"double\": \"1,5\"}, \"g\": {\"QPointF\": [1]},"
                           "\"h\": {\"QRectF\": [1, 2, 3]}, \"i\": {\"QStringList\": \"x\"},"
                           "\"j\": {\"QByteArray\": 1}, \"k\": {\"QString\": 1},"
                           "\"l\": {\"bool\": 1}, \"m\": {\"QColor\": \"red\"},"
                           "\"n\": {\"int\": \"3\"}, \"o\": {\"QSizeF\": [1, \"x\"]}}}")
                           .object();
    QCOMPARE(json.value(QStringLiteral("OtherParams")).toObject().size(), 15);
    Saved loaded;
    loaded.loadJson(json);
    QCOMPARE(loaded.params().keys(), QStringList());
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
