#include "host/specialpropertyids.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <cstdlib>
#include <new>

namespace
{

/// While set, requests for more than this many bytes find no memory.
size_t mostBytes = 0;

} // namespace

// What the plug-in allocates goes through this as well.
void *operator new(size_t size)
{
    void *memory = mostBytes != 0 && size > mostBytes ? nullptr : std::malloc(size);
    if (!memory)
        throw std::bad_alloc();
    return memory;
}

void operator delete(void *memory) noexcept
{
    std::free(memory);
}

void operator delete(void *memory, size_t) noexcept
{
    std::free(memory);
}

/// Regions and hit paths are computed when they are asked for, and not before.
class TestLazyFrames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingIsWorkedOutByImportAndPlayback();
    void theShapeIsWorkedOutForTheFrameShown();
    void resizingLeavesFramesAlone();
    void aSecondUpdateLeavesTheListAsItIs();
    void framesThatHoldTheirRegionsAreToldApart();
    void theShapeIsRememberedWithoutMemory();
    void withoutMemoryTheShapeIsEmptyAndComesBack();
    void takingOverAnotherStateWorksNothingOut();
    void aFrameWhoseObjectTookOverAStateIsHitAsBefore();
    void withoutMemoryAStateIsTakenOver();
    void aSizeOfItsOwnIsTakenOver();
    void framesWithoutOpaquePixelsAreToldApart();
};

namespace
{

bool hasNothing(const CAnimatedPortrait &frame)
{
    return frame.rects.isEmpty() && !frame.regionSize.isValid() && frame.path.isEmpty();
}

bool haveNothing(Stage &stage)
{
    const QList<CAnimatedPortrait> &frames = stage.probe.storedFrames();
    return std::all_of(frames.begin(), frames.end(), hasNothing);
}

/// Gives the state of @p other to @p stage, and its frames.
void copyState(Stage &other, Stage &stage)
{
    auto *source = static_cast<CGDRootObject *>(other.image);
    Request(Request::packed(reinterpret_cast<qint64>(source)))
        .set(stage.image, SpecialPropertyId::CopyFromObject);
}

/// Every second pixel is opaque: 32 rectangles in each of 128 rows.
QImage checkered()
{
    QImage picture = Pictures::transparent(64, 128);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = y % 2; x < picture.width(); x += 2)
            picture.setPixelColor(x, y, Qt::black);
    }
    return picture;
}

} // namespace

void TestLazyFrames::nothingIsWorkedOutByImportAndPlayback()
{
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("film.gif"));
    GifBuilder(8, 6).add(0, 10).add(1, 10).add(2, 10).write(path);
    Stage stage;
    stage->loadFromFile(path);
    QCOMPARE(stage.probe.storedFrames().size(), 3);
    QVERIFY(haveNothing(stage));
    stage->playImage(true);
    stage.probe.tick();
    stage.probe.tick();
    QVERIFY(haveNothing(stage));
    QCOMPARE(stage.probe.runningIndex(), 2);
}

void TestLazyFrames::theShapeIsWorkedOutForTheFrameShown()
{
    Stage stage;
    const QImage picture = Pictures::fromText({"##.", "..."});
    stage->loadFromImage(&picture);
    stage.document.setAlternateMode(1);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 2, 1));
    QVERIFY(haveNothing(stage));
    // Asked for by a test, the frame holds it.
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 2, 1)});
    QCOMPARE(stage.probe.frame(0).regionSize, QSize(3, 2));
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 2, 1));
}

void TestLazyFrames::resizingLeavesFramesAlone()
{
    Stage stage;
    const QImage picture = Pictures::fromText({"##.", "..."});
    stage->loadFromImage(&picture);
    stage.document.setAlternateMode(1);
    stage->setSize(QSizeF(30, 20), false, true);
    stage->setMirror(true, true);
    QVERIFY(haveNothing(stage));
    QCOMPARE(stage->shape().boundingRect(), QRectF(10, 0, 20, 10));
}

void TestLazyFrames::aSecondUpdateLeavesTheListAsItIs()
{
    Stage stage(solidFrames({{8, 6}, {6, 8}}));
    stage->setSize(QSizeF(30, 20), false, true);
    // A list that is gone through frame by frame would not be shared any more.
    const QList<CAnimatedPortrait> shared = stage.probe.storedFrames();
    stage->setSize(QSizeF(40, 50), false, true);
    QVERIFY(stage.probe.storedFrames().isSharedWith(shared));
}

void TestLazyFrames::framesThatHoldTheirRegionsAreToldApart()
{
    Stage stage({Pictures::fromText({"##..", "....", "...."}),
                 Pictures::fromText({"....", "....", ".##."})});
    stage.document.setAlternateMode(1);
    // Asked for by a test, the frames hold their regions; another size makes their paths noted.
    QCOMPARE(stage.probe.frames().size(), 2);
    stage->setSize(QSizeF(8, 6), false, true);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 4, 2));
    stage.probe.runningIndex() = 1;
    QCOMPARE(stage->shape().boundingRect(), QRectF(2, 4, 4, 2));
}

void TestLazyFrames::theShapeIsRememberedWithoutMemory()
{
    Stage stage;
    const QImage picture = checkered();
    stage->loadFromImage(&picture);
    stage.document.setAlternateMode(1);
    const int all = 5 * 32 * 128;
    QCOMPARE(stage->shape().elementCount(), all);
    mostBytes = 20000; // 4096 rectangles take 65536
    const QPainterPath remembered = stage->shape();
    mostBytes = 0;
    QCOMPARE(remembered.elementCount(), all);
}

void TestLazyFrames::withoutMemoryTheShapeIsEmptyAndComesBack()
{
    Stage stage;
    const QImage picture = checkered();
    stage->loadFromImage(&picture);
    stage.document.setAlternateMode(1);
    mostBytes = 20000; // 4096 rectangles take 65536
    const QPainterPath without = stage->shape();
    mostBytes = 0;
    QVERIFY(without.isEmpty());
    // Five points a rectangle; that of the last column has no width, but it has points.
    QCOMPARE(stage->shape().elementCount(), 5 * 32 * 128);
}

void TestLazyFrames::takingOverAnotherStateWorksNothingOut()
{
    Stage stage;
    Stage other;
    const QImage picture = checkered();
    stage->loadFromImage(&picture);
    other->loadFromImage(&picture);
    other->setSize(QSizeF(100, 50), false, true);
    other->setMirror(true, true);
    copyState(other, stage);
    const QList<CAnimatedPortrait> &frames = stage.probe.storedFrames();
    QCOMPARE(frames.size(), 2);
    for (const CAnimatedPortrait &frame : frames) {
        QCOMPARE(frame.rects.size(), 0);
        QVERIFY(!frame.regionSize.isValid());
        // Five points a rectangle, if it had been worked out.
        QVERIFY(frame.path.elementCount() < 5);
    }
}

void TestLazyFrames::aFrameWhoseObjectTookOverAStateIsHitAsBefore()
{
    Stage stage;
    Stage other;
    const QImage picture = Pictures::fromText({"##.", "..."});
    stage->loadFromImage(&picture);
    other->setSize(QSizeF(30, 20), false, true);
    other->setMirror(true, true);
    other->setFlip(true, true);
    copyState(other, stage);
    stage.document.setAlternateMode(1);
    // The size of the object before, and not turned.
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 2, 1));
    QCOMPARE(stage->getSize(), QSizeF(30, 20));
    // As it was measured, at the size of the object now.
    stage->setSize(QSizeF(30, 20), false, true);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0, 0, 20, 10));
    stage->updateRegion(true);
    QCOMPARE(stage->shape().boundingRect(), QRectF(10, 10, 20, 10));
}

void TestLazyFrames::withoutMemoryAStateIsTakenOver()
{
    Stage stage;
    Stage other;
    const QImage picture = checkered();
    stage->loadFromImage(&picture);
    other->loadFromImage(&picture);
    other->setMirror(true, true);
    mostBytes = 20000;
    copyState(other, stage);
    mostBytes = 0;
    QCOMPARE(stage.probe.frames().size(), 2);
    QCOMPARE(stage.probe.frame(0).rects.size(), 32 * 128);
    QCOMPARE(stage.probe.frame(1).rects.size(), 32 * 128);
    // The last column is left out, and is the first of the mirrored one.
    QCOMPARE(stage.probe.frame(0).rects.first(), QRect(0, 0, 1, 1));
    QCOMPARE(stage.probe.frame(1).rects.first(), QRect(63, 0, 1, 1));
}

void TestLazyFrames::aSizeOfItsOwnIsTakenOver()
{
    const QImage picture = Pictures::solid(4, 3, Qt::red);
    Stage other({picture, picture});
    other->setCenterPos(QPointF(50, 50), QSizeF(8, 6), 0.0, false);
    other->updateRegion(0, false);
    Stage stage;
    copyState(other, stage);
    Stage resized;
    copyState(other, resized);
    QCOMPARE(stage.probe.frame(0).path.boundingRect(), QRectF(0, 0, 6, 6));
    QCOMPARE(stage.probe.frame(1).path.boundingRect(), QRectF(0, 0, 3, 3));
    // Resizing gives all frames one size again.
    resized->setSize(QSizeF(16, 12), false, true);
    QCOMPARE(resized.probe.frame(0).path.boundingRect(), QRectF(0, 0, 12, 12));
    QCOMPARE(resized.probe.frame(1).path.boundingRect(), QRectF(0, 0, 12, 12));
}

void TestLazyFrames::framesWithoutOpaquePixelsAreToldApart()
{
    Stage stage({Pictures::transparent(4, 3), Pictures::transparent(6, 5)});
    stage.document.setAlternateMode(1);
    // Asked for by a test, the frames hold their regions; another size makes their paths noted.
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(6, 5));
    stage->setSize(QSizeF(8, 6), false, true);
    QVERIFY(stage->shape().isEmpty());
    stage.probe.runningIndex() = 1;
    QVERIFY(stage->shape().isEmpty());
    QCOMPARE(stage->shape().fillRule(), Qt::WindingFill);
}

QTEST_MAIN(TestLazyFrames)
#include "tst_lazy_frames.moc"
