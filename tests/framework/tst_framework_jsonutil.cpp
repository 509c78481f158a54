#include "host/jsonutil.h"

#include <QtCore/QFile>
#include <QtCore/QLocale>
#include <QtCore/QPointF>
#include <QtCore/QRandomGenerator>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <cstring>
#include <limits>
#include <sys/stat.h>

namespace
{

QVariant thereAndBack(const QVariant &value)
{
    return GetJsonUtil()->textToVariant(GetJsonUtil()->variantToText(value));
}

quint64 bitsOf(double value)
{
    quint64 bits = 0;
    std::memcpy(&bits, &value, sizeof bits);
    return bits;
}

double fromBits(quint64 bits)
{
    double value = 0;
    std::memcpy(&value, &bits, sizeof value);
    return value;
}

QString digestOf(const QString &path)
{
    QString digest = QStringLiteral("left over");
    GetJsonUtil()->getFileMd5(path, digest);
    return digest;
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
}

} // namespace

class TestFrameworkJsonUtil : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void textsAreThese_data();
    void textsAreThese();
    void everyDoubleComesBack();
    void sizesAndRectanglesComeBackBitByBit();
    void textsDoNotDependOnTheLocale();
    void otherTypesHaveNoText();
    void otherTextsHaveNoValue_data();
    void otherTextsHaveNoValue();
    void digestsAreMd5();
    void aBigFileIsDigested();
    void whatIsNoFileHasNoDigest();

private:
    static void numberRows();
};

void TestFrameworkJsonUtil::textsAreThese_data()
{
    QTest::addColumn<QVariant>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("bool") << QVariant(true) << QStringLiteral("bool:true");
    QTest::newRow("no") << QVariant(false) << QStringLiteral("bool:false");
    QTest::newRow("int") << QVariant(-2147483647 - 1) << QStringLiteral("int:-2147483648");
    QTest::newRow("uint") << QVariant(4294967295U) << QStringLiteral("uint:4294967295");
    QTest::newRow("longlong") << QVariant(qlonglong(9223372036854775807))
                              << QStringLiteral("longlong:9223372036854775807");
    QTest::newRow("text") << QVariant(QStringLiteral("a:b,c")) << QStringLiteral("text:a:b,c");
    QTest::newRow("empty text") << QVariant(QString()) << QStringLiteral("text:");
    numberRows();
}

void TestFrameworkJsonUtil::numberRows()
{
    const double infinity = std::numeric_limits<double>::infinity();
    QTest::newRow("double") << QVariant(0.1) << QStringLiteral("double:0.1");
    QTest::newRow("minus zero") << QVariant(-0.0) << QStringLiteral("double:-0");
    QTest::newRow("infinity") << QVariant(infinity) << QStringLiteral("double:inf");
    QTest::newRow("minus infinity") << QVariant(-infinity) << QStringLiteral("double:-inf");
    QTest::newRow("point") << QVariant(QPointF(-1.5, 2)) << QStringLiteral("point:-1.5,2");
    QTest::newRow("size") << QVariant(QSizeF(100, 40.25)) << QStringLiteral("size:100,40.25");
    QTest::newRow("rect") << QVariant(QRectF(30, 10, 170, 90))
                          << QStringLiteral("rect:30,10,170,90");
}

void TestFrameworkJsonUtil::textsAreThese()
{
    QFETCH(QVariant, value);
    QFETCH(QString, text);
    QCOMPARE(GetJsonUtil()->variantToText(value), text);
    const QVariant back = GetJsonUtil()->textToVariant(text);
    QCOMPARE(back.userType(), value.userType());
    QCOMPARE(back, value);
}

void TestFrameworkJsonUtil::everyDoubleComesBack()
{
    QVERIFY(qIsNaN(thereAndBack(qQNaN()).toDouble()));
    QList<double> values{0.0,
                         -0.0,
                         qInf(),
                         -qInf(),
                         1.0 / 3.0,
                         std::numeric_limits<double>::max(),
                         std::numeric_limits<double>::min(),
                         std::numeric_limits<double>::denorm_min(),
                         9007199254740993.0};
    QRandomGenerator random(20240607);
    for (int i = 0; i < 100000; ++i)
        values.append(fromBits(random.generate64()));
    for (double value : std::as_const(values)) {
        if (qIsNaN(value))
            continue;
        const QVariant back = thereAndBack(value);
        QCOMPARE(back.userType(), int(QMetaType::Double));
        QCOMPARE(bitsOf(back.toDouble()), bitsOf(value));
    }
}

void TestFrameworkJsonUtil::sizesAndRectanglesComeBackBitByBit()
{
    QRandomGenerator random(5);
    for (int i = 0; i < 10000; ++i) {
        const QRectF rect(fromBits(random.generate64()), fromBits(random.generate64()),
                          fromBits(random.generate64()), -0.0);
        const QVariant backRect = thereAndBack(rect);
        const QVariant backSize = thereAndBack(rect.size());
        QCOMPARE(backRect.userType(), int(QMetaType::QRectF));
        QCOMPARE(backSize.userType(), int(QMetaType::QSizeF));
        QCOMPARE(bitsOf(backRect.toRectF().height()), bitsOf(-0.0));
        if (!qIsNaN(rect.x()))
            QCOMPARE(bitsOf(backRect.toRectF().x()), bitsOf(rect.x()));
        if (!qIsNaN(rect.width()))
            QCOMPARE(bitsOf(backSize.toSizeF().width()), bitsOf(rect.width()));
    }
    const QSizeF noSize = thereAndBack(QSizeF(qQNaN(), 5)).toSizeF();
    QVERIFY(qIsNaN(noSize.width()));
    QCOMPARE(noSize.height(), 5.0);
}

void TestFrameworkJsonUtil::textsDoNotDependOnTheLocale()
{
    const QLocale before;
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Germany));
    const QString text = GetJsonUtil()->variantToText(QSizeF(1234567.5, 0.5));
    const QVariant back = GetJsonUtil()->textToVariant(text);
    QLocale::setDefault(before);
    QCOMPARE(text, QStringLiteral("size:1234567.5,0.5"));
    QCOMPARE(back.toSizeF(), QSizeF(1234567.5, 0.5));
}

void TestFrameworkJsonUtil::otherTypesHaveNoText()
{
    QCOMPARE(GetJsonUtil()->variantToText(QVariant()), QString());
    QCOMPARE(GetJsonUtil()->variantToText(QVariant(QStringList{QStringLiteral("a")})), QString());
    QCOMPARE(GetJsonUtil()->variantToText(QVariant(QRect(1, 2, 3, 4))), QString());
}

void TestFrameworkJsonUtil::otherTextsHaveNoValue_data()
{
    QTest::addColumn<QString>("text");
    for (const char *text : {"",
                             ":",
                             "size",
                             "size:",
                             "size:1",
                             "size:1,2,3",
                             "size:1,2 ",
                             "size: 1,2",
                             "size:1,x",
                             "size:1.0,2",
                             "size:01,2",
                             "size:+1,2",
                             "SIZE:1,2",
                             "rect:1,2,3",
                             "rect:1,2,3,4,5",
                             "double:",
                             "double:1e999",
                             "double:NaN",
                             "double:-nan",
                             "double:1,5",
                             "int:",
                             "int:2147483648",
                             "int:1.5",
                             "int:0x10",
                             "uint:-1",
                             "bool:1",
                             "bool:",
                             "bool:TRUE",
                             "point:1",
                             "color:red"})
        QTest::newRow(*text ? text : "nothing") << QString::fromLatin1(text);
}

void TestFrameworkJsonUtil::otherTextsHaveNoValue()
{
    QFETCH(QString, text);
    QVERIFY(!GetJsonUtil()->textToVariant(text).isValid());
    QCOMPARE(GetJsonUtil()->textToVariant(text).toRectF(), QRectF());
}

void TestFrameworkJsonUtil::digestsAreMd5()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("file with spaces"));
    writeFile(path, QByteArray());
    QCOMPARE(digestOf(path), QStringLiteral("d41d8cd98f00b204e9800998ecf8427e"));
    writeFile(path, "abc");
    QCOMPARE(digestOf(path), QStringLiteral("900150983cd24fb0d6963f7d28e17f72"));
}

void TestFrameworkJsonUtil::aBigFileIsDigested()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("million"));
    writeFile(path, QByteArray(1000000, 'a'));
    // A known answer of the algorithm: a million times the letter a.
    QCOMPARE(digestOf(path), QStringLiteral("7707d6ae4e027c70eea2a935c2296f21"));
}

void TestFrameworkJsonUtil::whatIsNoFileHasNoDigest()
{
    QTemporaryDir folder;
    QCOMPARE(digestOf(folder.path()), QString());
    QCOMPARE(digestOf(folder.filePath(QStringLiteral("missing"))), QString());
    QCOMPARE(digestOf(QString()), QString());
    const QString pipe = folder.filePath(QStringLiteral("pipe"));
    QCOMPARE(mkfifo(QFile::encodeName(pipe).constData(), 0600), 0);
    QCOMPARE(digestOf(pipe), QString());
    QCOMPARE(digestOf(QStringLiteral("/dev/zero")), QString());
}

QTEST_MAIN(TestFrameworkJsonUtil)
#include "tst_framework_jsonutil.moc"
