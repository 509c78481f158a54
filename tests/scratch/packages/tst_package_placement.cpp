#include "flipbook/scratch/stageplacement.h"

#include <QtTest/QTest>

using Scratch::StagePlacement;

class TestPackagePlacement : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aPageOfTheStagesShapeFillsIt()
    {
        const StagePlacement placement(QRectF(0, 0, 960, 720));
        QCOMPARE(placement.scale(), 0.5);
        QCOMPARE(placement.toStage(QPointF(480, 360)), QPointF(0, 0));
        QCOMPARE(placement.toStage(QPointF(0, 0)), QPointF(-240, 180));
        QCOMPARE(placement.toStage(QPointF(960, 720)), QPointF(240, -180));
    }

    void aWidePageIsFittedByItsWidth()
    {
        const StagePlacement placement(QRectF(0, 0, 1920, 360));
        QCOMPARE(placement.scale(), 0.25);
        QCOMPARE(placement.toStage(QPointF(0, 0)), QPointF(-240, 45));
    }

    void aPageThatBeginsElsewhereIsCentredToo()
    {
        const StagePlacement placement(QRectF(100, -100, 480, 360));
        QCOMPARE(placement.scale(), 1.0);
        QCOMPARE(placement.toStage(QPointF(340, 80)), QPointF(0, 0));
    }

    void aPageWithoutAreaIsNotScaled() { QCOMPARE(StagePlacement(QRectF()).scale(), 1.0); }
};

QTEST_APPLESS_MAIN(TestPackagePlacement)
#include "tst_package_placement.moc"
