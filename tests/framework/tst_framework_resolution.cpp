#include "framework/imagestore.h"

#include <QtTest/QTest>

/// The resolution that is written with pictures. QtTest has Qt assume 96 dots per inch; without
/// that, and without a screen, it assumes 100.
class TestFrameworkResolution : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void picturesHave96DotsPerInchOnEveryMachine();
};

void TestFrameworkResolution::picturesHave96DotsPerInchOnEveryMachine()
{
    QCoreApplication::setAttribute(Qt::AA_Use96Dpi, false);
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    QCOMPARE(picture.dotsPerMeterX(), 3937);
    QCOMPARE(picture.dotsPerMeterY(), 3937);
    ImageStore store;
    const QByteArray png = store.png(store.add(picture));
    // 3780 dots per metre (1) in both directions.
    QVERIFY(png.contains("pHYs" + QByteArray::fromHex("00000ec400000ec401")));
}

QTEST_GUILESS_MAIN(TestFrameworkResolution)
#include "tst_framework_resolution.moc"
