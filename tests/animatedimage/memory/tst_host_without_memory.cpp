#include "framework/document.h"
#include "framework/framework.h"
#include "framework/page.h"
#include "host/specialpropertyids.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/probe.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <new>

namespace
{

/// A page that finds no memory for its answers while it is told so.
class ForgetfulPage : public Page
{
public:
    using Page::Page;

    IGdDocument *document() const override
    {
        requireMemory();
        return Page::document();
    }

    QRectF pageRect() const override
    {
        requireMemory();
        return Page::pageRect();
    }

    bool hasMemory = true;

private:
    void requireMemory() const
    {
        if (!hasMemory)
            throw std::bad_alloc();
    }
};

/// A page of 100 x 100 with an object of 8 x 6.
struct Scene {
    Scene()
        : page(QRectF(0.0, 0.0, 100.0, 100.0), &document)
        , image(new CAnimatedImage(1, true, nullptr))
        , probe(*image)
    {
        page.addObject(image);
        const QImage picture = Pictures::solid(8, 6, Qt::red);
        image->loadFromImage(&picture);
    }

    Document document;
    ForgetfulPage page;
    CAnimatedImage *image;
    AnimatedImageProbe probe;
};

/// An object of a host that finds no memory to give it a size.
class Sizeless : public CAnimatedImage
{
public:
    Sizeless()
        : CAnimatedImage(1, true, nullptr)
    {
    }

    void setSize(QSizeF /*size*/, bool /*keepCenter*/, bool /*notify*/) override
    {
        throw std::bad_alloc();
    }
};

} // namespace

/// The host finds no memory while the object asks it for something.
class TestHostWithoutMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theDocumentStaysAsItWasKnown();
    void thePartOnThePageStaysAsItWas();
    void theTypeIsChangedAlthoughTheMacroEndsBadly();
    void aFilmIsImportedAlthoughItsSizeIsNotTaken();
};

void TestHostWithoutMemory::theDocumentStaysAsItWasKnown()
{
    Scene scene;
    IGdDocument *none = nullptr;
    scene.probe.belongDoc() = none;
    scene.page.hasMemory = false;
    scene.probe.refreshBelongDoc();
    scene.page.hasMemory = true;
    QCOMPARE(scene.probe.belongDoc(), none);
    scene.probe.refreshBelongDoc();
    QCOMPARE(scene.probe.belongDoc(), static_cast<IGdDocument *>(&scene.document));
}

void TestHostWithoutMemory::thePartOnThePageStaysAsItWas()
{
    Scene scene;
    scene.probe.bgRect() = QRectF(1.0, 2.0, 3.0, 4.0);
    scene.page.hasMemory = false;
    scene.image->regenBGImage();
    scene.page.hasMemory = true;
    QCOMPARE(scene.probe.bgRect(), QRectF(1.0, 2.0, 3.0, 4.0));
    scene.image->regenBGImage();
    QCOMPARE(scene.probe.bgRect(), QRectF(0.0, 0.0, 8.0, 6.0));
}

void TestHostWithoutMemory::theTypeIsChangedAlthoughTheMacroEndsBadly()
{
    Stage stage(solidFrames({{8, 6}}));
    QUndoStack *stack = Framework::instance().undoStack();
    QVERIFY(stage.probe.animatedType() != CAnimatedImage::BackgroundType);
    const auto ending =
        connect(stack, &QUndoStack::indexChanged, stage.page, [] { throw std::bad_alloc(); });
    Request(Request::packed(qint32(CAnimatedImage::BackgroundType), true))
        .set(stage.image, SpecialPropertyId::AnimatedType);
    disconnect(ending);
    QCOMPARE(stage.probe.animatedType(), CAnimatedImage::BackgroundType);
    QVERIFY(!Framework::instance().isUndoMacroOpen());
    stack->undo();
    QVERIFY(stage.probe.animatedType() != CAnimatedImage::BackgroundType);
    Framework::instance().dropUndoCommands();
}

void TestHostWithoutMemory::aFilmIsImportedAlthoughItsSizeIsNotTaken()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a.gif"));
    GifBuilder(8, 6).add(0, 12).add(1, 5).write(path);
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    Sizeless image;
    QVERIFY(image.loadFromFile(path, &file));
    QCOMPARE(AnimatedImageProbe(image).frames().size(), 2);
    QVERIFY(image.loadFromFile(path));
    QCOMPARE(AnimatedImageProbe(image).frames().size(), 2);
}

QTEST_MAIN(TestHostWithoutMemory)
#include "tst_host_without_memory.moc"
