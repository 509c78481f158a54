#include "framework/samepixels.h"

#include <QtTest/QTest>

namespace
{

constexpr int count = 9;

/// Nine pictures of 3 x 4 pixels that differ in the first pixel of the line @p line.
QList<QImage> pictures(int line, QImage::Format format = QImage::Format_ARGB32)
{
    QList<QImage> list;
    for (int i = 0; i < count; ++i) {
        QImage picture(3, 4, format);
        picture.fill(Qt::white);
        picture.setPixelColor(0, line, QColor(i, 0, 0));
        list.append(picture);
    }
    return list;
}

} // namespace

/// Pictures that are found by their pixels.
class TestSamePixels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aCopyIsFound_data();
    void aCopyIsFound();
    void ofPicturesThatLookAlikeEightAreCompared();
    void anotherFormatIsAnotherPicture();
    void onlyPicturesOf32BitsAreLookedAt();
};

void TestSamePixels::aCopyIsFound_data()
{
    QTest::addColumn<int>("line");
    QTest::newRow("a quarter") << 1;
    QTest::newRow("half") << 2;
    QTest::newRow("three quarters") << 3;
}

void TestSamePixels::aCopyIsFound()
{
    QFETCH(int, line);
    const QList<QImage> list = pictures(line);
    const SamePixels same(list);
    for (const QImage &picture : list) {
        const QImage *found = same.find(picture.copy());
        QVERIFY(found);
        QCOMPARE(found->cacheKey(), picture.cacheKey());
    }
}

void TestSamePixels::ofPicturesThatLookAlikeEightAreCompared()
{
    // The first line is none of those that are looked at first.
    const QList<QImage> list = pictures(0);
    const SamePixels same(list);
    int found = 0;
    for (const QImage &picture : list)
        found += same.find(picture.copy()) ? 1 : 0;
    QCOMPARE(found, 8);
}

void TestSamePixels::anotherFormatIsAnotherPicture()
{
    const SamePixels same(pictures(1));
    QVERIFY(!same.find(pictures(1, QImage::Format_RGB32).constFirst()));
}

void TestSamePixels::onlyPicturesOf32BitsAreLookedAt()
{
    const QList<QImage> list = pictures(1, QImage::Format_RGB888);
    QVERIFY(!SamePixels(list).find(list.first()));
}

QTEST_MAIN(TestSamePixels)
#include "tst_framework_samepixels.moc"
