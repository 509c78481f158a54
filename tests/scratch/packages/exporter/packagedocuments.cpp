#include "tests/scratch/packages/exporter/packagedocuments.h"

#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/editing/frameeditor.h"
#include "framework/page.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/scratch/packages/exporter/packagemaker.h"
#include "tests/support/pictures.h"

namespace PackageDocuments
{

namespace
{

constexpr qint64 enoughMemory = qint64(1) << 31;

/// A small picture that is not like those of other numbers.
QImage numbered(int number)
{
    QImage picture = Pictures::solid(12, 8, QColor(30, 60, 200));
    for (int x = 0; x <= number % 12; ++x)
        picture.setPixelColor(x, 3, Qt::yellow);
    return picture;
}

void arrange(CBaseObject &object, const QPointF &pos, const QSizeF &size, double degrees)
{
    object.setSize(size, false, false);
    object.setRotate(degrees, false);
    object.setPos(pos, false);
}

} // namespace

void writeThreeObjects(const Plugin &plugin, const QDir &samples, double degrees,
                       const QString &path)
{
    runFlipbook({QStringLiteral("new"), path, QStringLiteral("--force"), QStringLiteral("--add"),
                 samples.filePath(QStringLiteral("walk.gif")),
                 samples.filePath(QStringLiteral("loop-forever.gif")),
                 samples.filePath(QStringLiteral("uneven.gif"))});
    for (const char *number : {"1", "2"})
        runFlipbook({QStringLiteral("edit"), path, QStringLiteral("--object"),
                     QLatin1String(number), QStringLiteral("--mirror")});

    Reading reading(enoughMemory, false);
    const LoadedDocument loaded = loadDocument(plugin, path, reading);
    Page &page = *loaded.document->pages().constFirst();
    page.setPageRect(QRectF(0, 0, 960, 720));
    const QList<CBaseObject *> objects = page.objects();
    arrange(*objects.at(0), QPointF(60, 420), QSizeF(240, 240), 0.0);
    arrange(*objects.at(1), QPointF(600.5, 100), QSizeF(168, 210), degrees);
    arrange(*objects.at(2), QPointF(700, 560), QSizeF(128, 132), 0.0);
    saveDocument(*loaded.document, path);
}

void writeNamedFrames(const Plugin &plugin, const QStringList &names, const QString &path)
{
    Document document;
    Page *page = document.addPage(QRectF(0, 0, 480, 360));
    CBaseObject *object = plugin.createObject(1).release();
    AnimatedObject animated(*object);
    animated.loadPicture(numbered(0), QStringLiteral("names"));
    page->addObject(object);
    FrameEditor editor(*object);
    for (int i = 1; i < names.size(); ++i) {
        editor.duplicate(i, i + 1);
        editor.replacePicture(i + 1, numbered(i));
    }
    for (int i = 0; i < names.size(); ++i)
        editor.rename(i + 1, names.at(i));
    animated.setInterval(100);
    saveDocument(document, path);
}

void writeNamedObjects(const Plugin &plugin, const QStringList &names, const QString &path)
{
    Document document;
    Page *page = document.addPage(QRectF(0, 0, 480, 360));
    for (int i = 0; i < names.size(); ++i) {
        CBaseObject *object = plugin.createObject(i + 1).release();
        AnimatedObject(*object).loadPicture(numbered(i), QStringLiteral("picture"));
        object->setOtherParams(QStringLiteral("object_name"), names.at(i));
        page->addObject(object);
        object->setPos(QPointF(20.0 * i, 10.0 * i), false);
    }
    saveDocument(document, path);
}

void writeLargeFolder(const QDir &folder)
{
    folder.mkpath(QStringLiteral("."));
    numbered(0).scaled(1200, 800).save(folder.filePath(QStringLiteral("first.png")));
    numbered(5).scaled(1001, 901).save(folder.filePath(QStringLiteral("last.png")));
    writeBytes(folder.filePath(QStringLiteral("config.json")),
               R"({"ImageList": [{"filename": "first.png"}, {"filename": "last.png"}],)"
               R"( "ShiftInterval": 120, "LoopCount": -1})");
}

void writeFolderWithGap(const QDir &folder)
{
    folder.mkpath(QStringLiteral("."));
    numbered(0).save(folder.filePath(QStringLiteral("first.png")));
    numbered(1).save(folder.filePath(QStringLiteral("last.png")));
    writeBytes(folder.filePath(QStringLiteral("config.json")),
               R"({"ImageList": [{"filename": "first.png"}, {"filename": "none.png"},)"
               R"( {"filename": "last.png"}], "ShiftInterval": 120, "LoopCount": 3})");
}

} // namespace PackageDocuments
