#include "flipbook/cli/documentcommand.h"

#include "flipbook/cli/arguments.h"
#include "flipbook/failure.h"
#include "flipbook/memorybudget.h"
#include "framework/page.h"

namespace
{

constexpr int MostPages = 10000;
constexpr double BytesPerPixel = 4.0;

} // namespace

QCommandLineOption pageOption()
{
    return {QStringLiteral("page"), QStringLiteral("Take page N of the document (default: 1)."),
            QStringLiteral("N")};
}

OpenedFile openDocument(const QCommandLineParser &line, const Plugin &plugin, const QString &path)
{
    OpenedFile opened = openNamed(line, plugin, path);
    if (!opened.isDocument)
        throw Failure{path, QStringLiteral("is no document; 'flipbook new' makes one")};
    return opened;
}

Page &chosenPage(const QCommandLineParser &line, const QString &path, const Document &document)
{
    const int number = Arguments::count(line, QStringLiteral("page"), MostPages, 1);
    if (number > document.pages().size())
        throw Failure{path, document.pages().isEmpty()
                                ? QStringLiteral("the document has no pages")
                                : QStringLiteral("the document has %1 pages, so no page %2")
                                      .arg(document.pages().size())
                                      .arg(number)};
    return *document.pages().at(number - 1);
}

QImage renderPage(const QCommandLineParser &line, const QString &path, Page &page, double scale)
{
    const QSizeF pixels = page.pageRect().size() * scale;
    const double needed = pixels.width() * pixels.height() * BytesPerPixel;
    QImage picture;
    if (needed <= double(Arguments::maxMemory(line)))
        picture = page.rendered(scale);
    if (picture.isNull())
        throw Failure{path, QStringLiteral("a page of %1 x %2 pixels is too large")
                                .arg(pixels.width())
                                .arg(pixels.height())};
    return picture;
}
