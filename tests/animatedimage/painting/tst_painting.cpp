#include "canvas.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// The frame shown, drawn into the object's rectangle.
class TestPainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theFrameIsDrawnPixelForPixelAtItsOwnSize();
    void theFrameShownIsDrawn();
    void theFrameIsStretchedWithoutItsRatio_data();
    void theFrameIsStretchedWithoutItsRatio();
    void aBroaderFrameIsStretchedWhole();
    void theRectangleOfTheBaseSaysWhere();
    void halfAPixelIsHalfCovered();
    void whatWasThereShinesThrough();
    void mirrorFlipAndRatioAreNotOfThisHook();
    void theHostMirrorsAroundTheHook();
    void theThreeHintsAreTurnedOn_data();
    void theThreeHintsAreTurnedOn();
    void aNullPainterDrawsNothing();
    void withoutAFrameNothingIsDrawn_data();
    void withoutAFrameNothingIsDrawn();
    void aFrameWithoutPictureDrawsNothing();
};

void TestPainting::theFrameIsDrawnPixelForPixelAtItsOwnSize()
{
    Stage stage({Canvas::picture({"rgb", "y.w"})});
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {5, 4}, {1, 1})),
             Canvas::rows({".....", //
                           ".rgb.", //
                           ".y.w.", //
                           "....."}));
}

void TestPainting::theFrameShownIsDrawn()
{
    Stage stage({Canvas::picture({"rr"}), Canvas::picture({"gb"})});
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {2, 1})), Canvas::rows({"rr"}));
    stage->setCurrentIndex(1);
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {2, 1})), Canvas::rows({"gb"}));
}

void TestPainting::theFrameIsStretchedWithoutItsRatio_data()
{
    QTest::addColumn<bool>("keepRatio");
    QTest::newRow("setting on") << true;
    QTest::newRow("setting off") << false;
}

void TestPainting::theFrameIsStretchedWithoutItsRatio()
{
    QFETCH(bool, keepRatio);
    Stage stage({Canvas::picture({"rr", "rr"})});
    stage->setKeepRatio(keepRatio);
    stage->setSize(QSizeF(6.0, 3.0), false, false);
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {8, 5}, {1, 1})),
             Canvas::rows({"........", //
                           ".rrrrrr.", //
                           ".rrrrrr.", //
                           ".rrrrrr.", //
                           "........"}));
}

void TestPainting::aBroaderFrameIsStretchedWhole()
{
    // Between the middles of the two pixels the colours run into each other; outside them not.
    Stage stage({Canvas::picture({"rg"})});
    stage->setSize(QSizeF(8.0, 4.0), false, false);
    const QStringList all = Canvas::letters(Canvas::painted(stage.image, {9, 5}));
    for (int y = 0; y < 4; ++y) {
        QCOMPARE(all.at(y).left(2), QStringLiteral("rr"));
        QCOMPARE(all.at(y).mid(6), QStringLiteral("gg."));
    }
    QCOMPARE(all.at(4), QStringLiteral("........."));
}

void TestPainting::theRectangleOfTheBaseSaysWhere()
{
    Stage stage({Canvas::picture({"rr", "rr"})});
    stage.probe.rect() = QRectF(2.0, 1.0, 3.0, 2.0);
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {6, 4})),
             Canvas::rows({"......", //
                           "..rrr.", //
                           "..rrr.", //
                           "......"}));
}

void TestPainting::halfAPixelIsHalfCovered()
{
    Stage stage({Canvas::picture({"rr", "rr"})});
    stage->setSize(QSizeF(3.5, 2.0), false, false);
    const QImage result = Canvas::painted(stage.image, {5, 2});
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 3; ++x)
            QCOMPARE(result.pixelColor(x, y), QColor(Qt::red));
        const int covered = result.pixelColor(3, y).alpha();
        QVERIFY2(covered >= 120 && covered <= 136, qPrintable(QString::number(covered)));
        QCOMPARE(result.pixelColor(4, y).alpha(), 0);
    }
}

void TestPainting::whatWasThereShinesThrough()
{
    // Half of blue over white: 255 x (1 - 128/255) of red and green.
    Stage stage({Pictures::solid(2, 1, QColor(0, 0, 255, 128))});
    QImage result(3, 1, QImage::Format_RGB32);
    result.fill(Qt::white);
    QPainter painter(&result);
    stage->OnQPainterDraw(&painter);
    painter.end();
    QCOMPARE(result.pixelColor(0, 0), QColor(127, 127, 255));
    QCOMPARE(result.pixelColor(1, 0), QColor(127, 127, 255));
    QCOMPARE(result.pixelColor(2, 0), QColor(Qt::white));
}

void TestPainting::mirrorFlipAndRatioAreNotOfThisHook()
{
    Stage stage({Canvas::picture({"rgb", "y.w"})});
    stage.probe.isMirrored() = true;
    stage.probe.isFlipped() = true;
    stage.probe.mirror() = true;
    stage.probe.flip() = true;
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {3, 2})), Canvas::rows({"rgb", "y.w"}));
}

void TestPainting::theHostMirrorsAroundTheHook()
{
    Stage stage({Canvas::picture(
        {"rrrrgggg", "rrrrgggg", "rrrrgggg", "bbbbyyyy", "bbbbyyyy", "bbbbyyyy"})});
    stage->setMirror(true, false);
    QImage result(8, 6, QImage::Format_ARGB32_Premultiplied);
    result.fill(Qt::transparent);
    QPainter painter(&result);
    stage->paint(&painter, nullptr, nullptr);
    painter.end();
    // Where colours meet, Qt's smoothing of a mirrored picture is off by a few values.
    QCOMPARE(result.pixelColor(1, 1), QColor(Qt::green));
    QCOMPARE(result.pixelColor(6, 1), QColor(Qt::red));
    QCOMPARE(result.pixelColor(1, 4), QColor(Qt::yellow));
    QCOMPARE(result.pixelColor(6, 4), QColor(Qt::blue));
}

void TestPainting::theThreeHintsAreTurnedOn_data()
{
    QTest::addColumn<bool>("hasFrame");
    QTest::newRow("with a frame") << true;
    QTest::newRow("without frames") << false;
}

void TestPainting::theThreeHintsAreTurnedOn()
{
    QFETCH(bool, hasFrame);
    Stage stage(hasFrame ? solidFrames({{2, 2}}) : QList<QImage>());
    QImage canvas(2, 2, QImage::Format_ARGB32);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    painter.setRenderHints(QPainter::RenderHints(), true);
    painter.setRenderHints(painter.renderHints(), false);
    painter.setRenderHint(QPainter::LosslessImageRendering); // of the host; it stays
    stage->OnQPainterDraw(&painter);
    QCOMPARE(int(painter.renderHints()), 7 | int(QPainter::LosslessImageRendering));
}

void TestPainting::aNullPainterDrawsNothing()
{
    Stage stage(solidFrames({{2, 2}}));
    stage->OnQPainterDraw(nullptr);
    stage.document.setAlternateMode(1);
    stage.probe.animatedType() = 1;
    stage->OnQPainterDraw(nullptr);
    QCOMPARE(stage.log.entries(), QStringList());
}

void TestPainting::withoutAFrameNothingIsDrawn_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("index");
    QTest::newRow("no frames") << 0 << 0;
    QTest::newRow("index before the list") << 2 << -1;
    QTest::newRow("index after the last") << 2 << 2;
}

void TestPainting::withoutAFrameNothingIsDrawn()
{
    QFETCH(int, frames);
    QFETCH(int, index);
    Stage stage;
    stage->setSize(QSizeF(3.0, 2.0), false, false);
    for (int i = 0; i < frames; ++i)
        stage.addFrame(QStringLiteral("f"), Canvas::picture({"rrr", "rrr"}));
    stage.probe.runningIndex() = index;
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {3, 2})), Canvas::rows({"...", "..."}));
}

void TestPainting::aFrameWithoutPictureDrawsNothing()
{
    Stage stage;
    stage->setSize(QSizeF(3.0, 2.0), false, false);
    stage.addFrame(QStringLiteral("f"), QImage());
    QCOMPARE(Canvas::letters(Canvas::painted(stage.image, {3, 2})), Canvas::rows({"...", "..."}));
}

QTEST_MAIN(TestPainting)
#include "tst_painting.moc"
