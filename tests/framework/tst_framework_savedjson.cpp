#include "tests/framework/savedobject.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

/// The JSON form of a base object.
class TestFrameworkSavedJson : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingComesBackFromJson();
    void theJsonFormIsThis();
    void foreignJsonValuesAreTaken();
    void damagedJsonLeavesTheRest_data();
    void damagedJsonLeavesTheRest();
    void numbersThatAreNoneAreNotTaken();
    void jsonIsWholeWithPlaceAndSize();
    void typedJsonValuesMustFitTheirType();
    void typedIntegersReachTheirLimits();
};

void TestFrameworkSavedJson::everythingComesBackFromJson()
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

void TestFrameworkSavedJson::theJsonFormIsThis()
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

void TestFrameworkSavedJson::foreignJsonValuesAreTaken()
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

void TestFrameworkSavedJson::damagedJsonLeavesTheRest_data()
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
    QTest::newRow("rotation 3") << QByteArray("{\"RotateType\": 3}");
    QTest::newRow("rotation -1") << QByteArray("{\"RotateType\": -1}");
    QTest::newRow("shadow without colour") << QByteArray("{\"Shadow\": {\"Offset\": [1, 2]}}");
    QTest::newRow("parameters as a list") << QByteArray("{\"OtherParams\": [1, 2]}");
}

void TestFrameworkSavedJson::damagedJsonLeavesTheRest()
{
    QFETCH(QByteArray, json);
    QJsonObject object = QJsonDocument::fromJson(json).object();
    const QJsonObject before = object;
    Saved loaded;
    loaded.loadJson(object);
    compareWithNew(loaded);
    QCOMPARE(object, before);
}

void TestFrameworkSavedJson::numbersThatAreNoneAreNotTaken()
{
    QJsonObject json{
        {QStringLiteral("RotateDegree"), qInf()},
        {QStringLiteral("Position"), QJsonArray{1, qInf()}},
        {QStringLiteral("Size"), QJsonArray{qInf(), 1}},
        {QStringLiteral("Shadow"),
         QJsonObject{{QStringLiteral("Color"), QStringLiteral("#ff000000")},
                     {QStringLiteral("Offset"), QJsonArray{qInf(), 1}}}},
    };
    Saved loaded;
    const QRectF bounds = loaded.boundingRect();
    loaded.loadJson(json);
    compareWithNew(loaded);
    QCOMPARE(loaded.getKTRotateDegree(), 0.0);
    QCOMPARE(loaded.boundingRect(), bounds);
}

void TestFrameworkSavedJson::jsonIsWholeWithPlaceAndSize()
{
    const QJsonArray pair{1, 2};
    QJsonObject place{{QStringLiteral("Position"), pair}};
    QJsonObject size{{QStringLiteral("Size"), pair}};
    QJsonObject both{{QStringLiteral("Position"), pair}, {QStringLiteral("Size"), pair}};
    QJsonObject none;
    QVERIFY(!Saved().loadJson(place));
    QVERIFY(!Saved().loadJson(size));
    QVERIFY(!Saved().loadJson(none));
    QVERIFY(Saved().loadJson(both));
}

void TestFrameworkSavedJson::typedJsonValuesMustFitTheirType()
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

void TestFrameworkSavedJson::typedIntegersReachTheirLimits()
{
    QJsonObject json =
        QJsonDocument::fromJson("{\"OtherParams\": {"
                                "\"a\": {\"int\": 2147483647}, \"b\": {\"int\": -2147483648},"
                                "\"c\": {\"uint\": 4294967295}, \"d\": {\"uint\": 0},"
                                "\"e\": {\"int\": 2147483648}, \"f\": {\"int\": -2147483649},"
                                "\"g\": {\"uint\": 4294967296}}}")
            .object();
    Saved loaded;
    loaded.loadJson(json);
    const QMap<QString, QVariant> expected{
        {QStringLiteral("a"), std::numeric_limits<int>::max()},
        {QStringLiteral("b"), std::numeric_limits<int>::min()},
        {QStringLiteral("c"), std::numeric_limits<uint>::max()},
        {QStringLiteral("d"), 0U},
    };
    QCOMPARE(loaded.params(), expected);
    for (auto it = expected.cbegin(); it != expected.cend(); ++it)
        QCOMPARE(loaded.getOtherParams(it.key()).userType(), it.value().userType());
}

QTEST_MAIN(TestFrameworkSavedJson)
#include "tst_framework_savedjson.moc"
