#include "flipbook/export/sheetlayout.h"

#include <QtTest/QTest>

class TestSheetLayout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void oneSmallPictureKeepsItsSize();
    void largePicturesShareOneScale();
    void aGridFillsItsRows_data();
    void aGridFillsItsRows();
    void cellsDoNotOverlap();
    void manyPicturesGetSmaller();
    void tooManyPicturesGiveNoSheet();
};

void TestSheetLayout::oneSmallPictureKeepsItsSize()
{
    const auto layout = layOutSheet(1, QSizeF(100, 40), 30);
    QVERIFY(layout.has_value());
    QCOMPARE(layout->scale, 1.0);
    QCOMPARE(layout->box, QSize(100, 40));
    QCOMPARE(layout->sheet, QSize(132, 108)); // 16 + 100 + 16; 16 + 40 + 6 + 30 + 16
    QCOMPARE(layout->boxAt(0), QRect(16, 16, 100, 40));
    QCOMPARE(layout->labelAt(0), QRect(16, 62, 100, 30));
}

void TestSheetLayout::largePicturesShareOneScale()
{
    const auto layout = layOutSheet(2, QSizeF(320, 640), 30);
    QVERIFY(layout.has_value());
    QCOMPARE(layout->scale, 0.25);
    QCOMPARE(layout->box, QSize(80, 160));

    // Labels need some width, even if the pictures are narrow.
    QCOMPARE(layOutSheet(1, QSizeF(2, 2), 30)->box, QSize(72, 2));
}

void TestSheetLayout::aGridFillsItsRows_data()
{
    QTest::addColumn<int>("count");
    QTest::addColumn<int>("columns");
    QTest::newRow("3") << 3 << 3;
    QTest::newRow("4") << 4 << 2;
    QTest::newRow("6") << 6 << 3;
    QTest::newRow("12") << 12 << 4;
}

void TestSheetLayout::aGridFillsItsRows()
{
    QFETCH(int, count);
    QFETCH(int, columns);
    const auto layout = layOutSheet(count, QSizeF(160, 160), 30);
    QVERIFY(layout.has_value());
    QCOMPARE(layout->columns, columns);
    QCOMPARE(layout->rows * layout->columns, count);
}

void TestSheetLayout::cellsDoNotOverlap()
{
    const auto layout = layOutSheet(7, QSizeF(60, 90), 30);
    QVERIFY(layout.has_value());
    const QRect sheet(QPoint(0, 0), layout->sheet);
    for (int i = 0; i < 7; ++i) {
        const QRect cell = layout->boxAt(i) | layout->labelAt(i);
        QCOMPARE(cell.size(), layout->cell);
        QVERIFY(sheet.contains(cell));
        for (int j = 0; j < i; ++j)
            QVERIFY(!cell.intersects(layout->boxAt(j) | layout->labelAt(j)));
    }
}

void TestSheetLayout::manyPicturesGetSmaller()
{
    const auto few = layOutSheet(400, QSizeF(1000, 1000), 30);
    const auto many = layOutSheet(4000, QSizeF(1000, 1000), 30);
    QVERIFY(few.has_value());
    QVERIFY(many.has_value());
    QCOMPARE(few->box, QSize(160, 160));
    QVERIFY(many->box.width() < 160);
    QVERIFY(many->columns * many->rows >= 4000);
}

void TestSheetLayout::tooManyPicturesGiveNoSheet()
{
    QVERIFY(!layOutSheet(50000, QSizeF(100, 100), 30).has_value());
    QVERIFY(!layOutSheet(2000000000, QSizeF(1, 1), 30).has_value());
}

QTEST_GUILESS_MAIN(TestSheetLayout)
#include "tst_sheetlayout.moc"
