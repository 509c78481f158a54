#include "flipbook/cli/documentcommand.h"

#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/document/documentlimits.h"
#include "framework/page.h"

namespace
{

constexpr double BytesPerPixel = 4.0;

} // namespace

QCommandLineOption pageOption()
{
    return {QStringLiteral("page"), QStringLiteral("Take page N of the document (default: 1)."),
            QStringLiteral("N")};
}

OpenedFile openDocument(const Plugin &plugin, const QString &path, Reading &reading)
{
    OpenedFile opened = openNamed(plugin, path, reading);
    if (!opened.isDocument)
        throw Failure{path, QStringLiteral("is not a document; 'flipbook new' creates one")};
    return opened;
}

QCommandLineOption scaleOption()
{
    return {QStringLiteral("scale"),
            QStringLiteral("Paint S pixels for each unit of the page (default: 1)."),
            QStringLiteral("S")};
}

double chosenScale(const QCommandLineParser &line)
{
    constexpr double maxScale = 100.0;
    return Arguments::amount(line, QStringLiteral("scale"), maxScale, 1.0);
}

Page &chosenPage(const QCommandLineParser &line, const QString &path, const Document &document)
{
    const int number = Arguments::count(line, QStringLiteral("page"), DocumentLimits::MaxPages, 1);
    if (number > document.pages().size())
        throw Failure{path, document.pages().isEmpty()
                                ? QStringLiteral("the document has no pages")
                                : QStringLiteral("the document has %1 pages, so no page %2")
                                      .arg(document.pages().size())
                                      .arg(number)};
    return *document.pages().at(number - 1);
}

QCommandLineOption objectOption()
{
    return {QStringLiteral("object"),
            QStringLiteral("Use object N of a document, counted through all its pages in the order "
                           "of info."),
            QStringLiteral("N")};
}

CBaseObject &objectNumbered(const QString &path, const QList<CBaseObject *> &objects, int number)
{
    if (objects.isEmpty())
        throw Failure{path, QStringLiteral("the document has no objects")};
    if (number > objects.size())
        throw Failure{path, QStringLiteral("it has %1, so no object %2")
                                .arg(objects.size() == 1
                                         ? QStringLiteral("1 object")
                                         : QStringLiteral("%1 objects").arg(objects.size()))
                                .arg(number)};
    return *objects.at(number - 1);
}

CBaseObject &chosenObject(const QCommandLineParser &line, const QString &path,
                          const OpenedFile &opened)
{
    const QList<CBaseObject *> objects = opened.objects();
    const int number =
        Arguments::count(line, QStringLiteral("object"), DocumentLimits::MaxObjects, 0);
    if (number == 0 && objects.size() > 1)
        throw Failure{
            path,
            QStringLiteral("it has %1 objects; choose one with --object").arg(objects.size())};
    return objectNumbered(path, objects, qMax(1, number));
}

Page &pageOf(const CBaseObject &object)
{
    return static_cast<Page &>(*object.scene());
}

QImage renderPage(const MemoryAccount &memory, const QString &path, Page &page, double scale)
{
    const QSizeF pixels = page.pageRect().size() * scale;
    // Once painted, and at most as much again as a file.
    const double needed = pixels.width() * pixels.height() * BytesPerPixel * 2.0;
    QImage picture;
    if (needed <= double(memory.room()))
        picture = page.rendered(scale);
    if (picture.isNull())
        throw Failure{path, QStringLiteral("a page of %1 x %2 pixels is too large")
                                .arg(pixels.width())
                                .arg(pixels.height())};
    return picture;
}
