#include "animatedimage/protocol/entrypoints.h"
#include "tests/animatedimage/memory/endofprocess.h"
#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/animatedimage/memory/failureoutcome.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>

using FailureOutcome::Operation;
using FailureOutcome::plain;

/// One allocation fails while the host calls an operation that neither encodes nor decodes
/// pictures. No exception reaches the host, and the object can still be used.
class TestAllocationFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingIsThrown_data();
    void nothingIsThrown();
};

namespace
{

Operation paint()
{
    return [](Stage &stage) {
        auto canvas = std::make_shared<QImage>(20, 20, QImage::Format_ARGB32_Premultiplied);
        auto painter = std::make_shared<QPainter>(canvas.get());
        return [&stage, canvas, painter] { stage->OnQPainterDraw(painter.get()); };
    };
}

/// Paints a picture for the second time, of which a copy is made for that.
Operation paintAgain()
{
    return [](Stage &stage) {
        const std::function<void()> call = paint()(stage);
        call();
        return call;
    };
}

/// Paints a background that is painted in pieces.
Operation paintWideBackground()
{
    return [](Stage &stage) {
        stage->setSize({40000, 1}, false, false);
        stage.probe.animatedType() = CAnimatedImage::BackgroundType;
        stage.document.setAlternateMode(1);
        stage->regenBGImage();
        return paint()(stage);
    };
}

Operation mergeRects()
{
    return [](Stage &) {
        using Rects = std::shared_ptr<QList<QRect>>;
        const Rects done(new QList<QRect>{QRect(0, 0, 9, 1)});
        const Rects open(new QList<QRect>{QRect(0, 1, 9, 1)});
        const Rects row(new QList<QRect>{QRect(3, 2, 1, 1)});
        return [done, open, row] { CAnimatedImage::mergeRects(*done, *open, *row); };
    };
}

/// Frames that another list has too are copied before they are changed.
Operation updateSharedFrames()
{
    return [](Stage &stage) {
        return [&stage, frames = stage.probe.storedFrames()] { stage->updateRegion(true); };
    };
}

} // namespace

void TestAllocationFailure::initTestCase()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
    // Qt makes some things once, and does not recover if it fails.
    EndOfProcess::prepare();
    Stage stage(FailureOutcome::frames());
    QVERIFY(FailureOutcome::isUsable(stage));
}

void TestAllocationFailure::nothingIsThrown_data()
{
    QTest::addColumn<Operation>("operation");
    const auto row = [](const char *name, const Operation &operation) {
        QTest::newRow(name) << operation;
    };
    const QString name = QStringLiteral("object_name");
    const QImage image = FailureOutcome::frames().constFirst();

    row("createObject", plain([](Stage &) {
            if (CBaseObject *object = createObject_animatedImage(0, 1, true))
                object->Release();
        }));
    row("playImage", plain([](Stage &stage) { stage->playImage(true); }));
    row("a tick", [](Stage &stage) {
        stage->playImage(true);
        return [&stage] { stage.probe.tick(); };
    });
    row("setCurrentIndex", plain([](Stage &stage) { stage->setCurrentIndex(1); }));
    row("setShiftInterval", plain([](Stage &stage) { stage->setShiftInterval(50); }));
    row("setSize", plain([](Stage &stage) { stage->setSize({50, 40}, true, true); }));
    row("setCenterPos", plain([](Stage &stage) {
            stage->setCenterPos({50, 40}, {20, 30}, 45, true);
        }));
    row("setPos", plain([](Stage &stage) { stage->setPos({5, 4}, true); }));
    row("setMirror", plain([](Stage &stage) { stage->setMirror(true, true); }));
    row("setFlip", plain([](Stage &stage) { stage->setFlip(true, true); }));
    row("OnQPainterDraw", paint());
    row("OnQPainterDraw again", paintAgain());
    row("OnQPainterDraw of a wide background", paintWideBackground());
    row("shape", plain([](Stage &stage) { stage->shape(); }));
    row("rectsFromImage",
        [image](Stage &) { return [image] { CAnimatedImage::rectsFromImage(image, 128); }; });
    row("mergeRects", mergeRects());
    row("regions that frames hold", plain([](Stage &stage) { stage.probe.frames(); }));
    row("generateBGImage", plain([](Stage &stage) { stage->generateBGImage(1); }));
    row("regenBGImage", plain([](Stage &stage) { stage->regenBGImage(); }));
    row("updateRegion", plain([](Stage &stage) { stage->updateRegion(true); }));
    row("updateRegion of shared frames", updateSharedFrames());
    row("generatePortraitName", [name](Stage &stage) {
        return [&stage, name] { stage->generatePortraitName(name, true); };
    });
    row("GetAllThumbnail", plain([](Stage &stage) {
            ThumbnailList list;
            animatedImage_GetAllThumbnail(stage.image, false, list);
        }));
    row("loadFromImage", plain([image](Stage &stage) { stage->loadFromImage(&image); }));
    row("GetSettingJson", plain([](Stage &stage) {
            QString json;
            stage->GetSettingJson(json);
        }));
    row("setOtherParams", [name](Stage &stage) {
        const QVariant value(name);
        return [&stage, name, value] { stage->setOtherParams(name, value); };
    });
}

void TestAllocationFailure::nothingIsThrown()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

QTEST_MAIN(TestAllocationFailure)
#include "tst_allocation_failure.moc"
