#include "flipbook/cli/opening.h"

#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/documents/newdocument.h"
#include "flipbook/failure.h"
#include "flipbook/sourcefile.h"
#include "framework/page.h"

#include <limits>

namespace
{

std::unique_ptr<Document> read(const QCommandLineParser &line, const Plugin &plugin,
                               const QString &path)
{
    OpenedDocument opened;
    {
        const ProgressLine progress(QStringLiteral("Reading %1").arg(path));
        opened = readDocument(plugin, path, Arguments::maxMemory(line));
    }
    for (const QString &warning : qAsConst(opened.warnings))
        Console::warn(path, warning);
    return std::move(opened.document);
}

/// The number that an option names, counted from 1.
int chosen(const QCommandLineParser &line, const QString &option)
{
    return Arguments::count(line, option, std::numeric_limits<int>::max(), 1);
}

} // namespace

bool isDocumentFile(const QString &path)
{
    return identifySource(path) == SourceKind::Document;
}

OpenedSource openSource(const QCommandLineParser &line, const Plugin &plugin, const QString &path)
{
    if (isDocumentFile(path))
        return {read(line, plugin, path), true};
    NewDocument made;
    made.add(importNamed(line, plugin, path).object, path);
    return {made.finished(), false};
}

std::unique_ptr<Document> openDocument(const QCommandLineParser &line, const Plugin &plugin,
                                       const QString &path)
{
    if (!isDocumentFile(path))
        throw Failure{path, QStringLiteral("is no flipbook document")};
    return read(line, plugin, path);
}

Page &chosenPage(const QCommandLineParser &line, const Document &document, const QString &path)
{
    const int number = chosen(line, QStringLiteral("page"));
    const QList<Page *> &pages = document.pages();
    if (number > pages.size())
        throw Failure{path, QStringLiteral("has no page %1 (it has %2)")
                                .arg(QString::number(number), QString::number(pages.size()))};
    return *pages.at(number - 1);
}

CBaseObject &chosenObject(const QCommandLineParser &line, const Page &page, const QString &path)
{
    const int number = chosen(line, QStringLiteral("object"));
    const QList<CBaseObject *> objects = page.objects();
    if (number > objects.size())
        throw Failure{path, QStringLiteral("has no object %1 on that page (there are %2)")
                                .arg(QString::number(number), QString::number(objects.size()))};
    return *objects.at(number - 1);
}

QString nameOf(const CBaseObject &object)
{
    return object.getOtherParams(QStringLiteral("object_name")).toString();
}

QCommandLineOption pageOption()
{
    return {QStringLiteral("page"), QStringLiteral("Work on page N (default: 1)."),
            QStringLiteral("N")};
}

QCommandLineOption objectOption()
{
    return {QStringLiteral("object"),
            QStringLiteral("Work on object N of the page, counted from the bottom (default: 1)."),
            QStringLiteral("N")};
}
