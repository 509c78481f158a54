#include "framework/framework.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

class TestObjectAccessors : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theImageSizeIsThatOfTheFrameShown_data();
    void theImageSizeIsThatOfTheFrameShown();
    void theImageSizeIsInPixelsOfThePicture();
    void theDocumentIsThatOfThePage();
    void onAPageWithoutDocumentItIsTheDefault();
    void onNoPageTheOneKnownLastIsKept();
    void onNoPageItIsTheDefaultAtFirst();
    void lookingTheDocumentUpAgainFollowsThePage();
};

void TestObjectAccessors::theImageSizeIsThatOfTheFrameShown_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<QSize>("expected");
    QTest::newRow("first") << 0 << QSize(10, 20);
    QTest::newRow("last") << 1 << QSize(30, 5);
    QTest::newRow("after the last") << 2 << QSize(0, 0);
    QTest::newRow("far after the last") << 2147483647 << QSize(0, 0);
    QTest::newRow("before the first") << -1 << QSize(0, 0);
}

void TestObjectAccessors::theImageSizeIsThatOfTheFrameShown()
{
    QFETCH(int, index);
    Stage stage(solidFrames({{10, 20}, {30, 5}}));
    stage.probe.runningIndex() = index;
    QTEST(stage->getImageSize(), "expected");
}

void TestObjectAccessors::theImageSizeIsInPixelsOfThePicture()
{
    Stage stage(solidFrames({{10, 20}}));
    stage->setSize(QSizeF(100.0, 7.0), false, false);
    QCOMPARE(stage->getImageSize(), QSize(10, 20));
    stage.probe.frame(0).image = QImage();
    QCOMPARE(stage->getImageSize(), QSize(0, 0));
}

void TestObjectAccessors::theDocumentIsThatOfThePage()
{
    Stage stage;
    stage.probe.belongDoc() = nullptr;
    stage.probe.refreshBelongDoc();
    QVERIFY(stage.probe.belongDoc() == &stage.document);
}

void TestObjectAccessors::onAPageWithoutDocumentItIsTheDefault()
{
    Page page(QRectF(0.0, 0.0, 100.0, 100.0));
    auto *image = new CAnimatedImage(1, true, nullptr);
    page.addObject(image);
    AnimatedImageProbe probe(*image);
    Document other;
    probe.belongDoc() = &other; // from an earlier page; this page has none
    probe.refreshBelongDoc();
    QVERIFY(probe.belongDoc() == GetFramework()->defaultDocument());
}

void TestObjectAccessors::onNoPageTheOneKnownLastIsKept()
{
    Document document;
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    probe.belongDoc() = &document;
    probe.refreshBelongDoc();
    QVERIFY(probe.belongDoc() == &document);
}

void TestObjectAccessors::onNoPageItIsTheDefaultAtFirst()
{
    CAnimatedImage image(1, true, nullptr);
    AnimatedImageProbe probe(image);
    probe.refreshBelongDoc();
    QVERIFY(probe.belongDoc());
    QVERIFY(probe.belongDoc() == GetFramework()->defaultDocument());
}

void TestObjectAccessors::lookingTheDocumentUpAgainFollowsThePage()
{
    Stage stage;
    Document second;
    Page *page = second.addPage(QRectF(0.0, 0.0, 100.0, 100.0));
    page->addObject(stage.image);
    QVERIFY(stage.probe.belongDoc() == &stage.document); // as cached
    stage.probe.refreshBelongDoc();
    QVERIFY(stage.probe.belongDoc() == &second);
}

QTEST_MAIN(TestObjectAccessors)
#include "tst_object_accessors.moc"
