#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/infotext.h"
#include "flipbook/cli/opening.h"
#include "framework/page.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

namespace
{

void printText(const QString &path, const ImportedMedia &media, const ObjectSummary &summary)
{
    Console::print(path);
    const QStringList lines = infoLines(summary, media.gif);
    for (const QString &line : lines)
        Console::print(line);
}

void printJson(const ImportedMedia &media, const ObjectSummary &summary)
{
    QJsonObject json = toJson(summary);
    if (media.gif) {
        json[QStringLiteral("shortestDelayMs")] = media.gif->shortestDelay;
        json[QStringLiteral("longestDelayMs")] = media.gif->longestDelay;
    }
    json[QStringLiteral("warnings")] = QJsonArray::fromStringList(media.warnings);
    Console::print(QString::fromUtf8(QJsonDocument(json).toJson()).trimmed());
}

void describeMedia(const QCommandLineParser &line, const Plugin &plugin, const QString &path)
{
    const ImportedMedia media = importNamed(line, plugin, path);
    const ObjectSummary summary = summarise(plugin, *media.object);
    if (line.isSet(QStringLiteral("json")))
        printJson(media, summary);
    else
        printText(path, media, summary);
}

/// The figures of an object on a page, with its name, place and size there.
QJsonObject placedJson(const Plugin &plugin, CBaseObject &object)
{
    QJsonObject json = toJson(summarise(plugin, object));
    const QRectF rect(object.getPos(), object.getSize());
    json[QStringLiteral("name")] = nameOf(object);
    json[QStringLiteral("x")] = rect.x();
    json[QStringLiteral("y")] = rect.y();
    json[QStringLiteral("displayWidth")] = rect.width();
    json[QStringLiteral("displayHeight")] = rect.height();
    json[QStringLiteral("rotation")] = object.getRotate();
    json[QStringLiteral("mirrored")] = object.isMirrored();
    json[QStringLiteral("flipped")] = object.isFlipped();
    return json;
}

QJsonObject pageJson(const Plugin &plugin, const Page &page)
{
    QJsonArray objects;
    const QList<CBaseObject *> all = page.objects();
    for (CBaseObject *object : all)
        objects.append(placedJson(plugin, *object));
    return {{QStringLiteral("width"), page.pageRect().width()},
            {QStringLiteral("height"), page.pageRect().height()},
            {QStringLiteral("objects"), objects}};
}

void printDocumentJson(const Plugin &plugin, const Document &document)
{
    QJsonArray pages;
    for (const Page *page : document.pages())
        pages.append(pageJson(plugin, *page));
    const QJsonObject json{{QStringLiteral("pages"), pages}};
    Console::print(QString::fromUtf8(QJsonDocument(json).toJson()).trimmed());
}

void printPage(const Plugin &plugin, const Page &page, int number)
{
    const QSizeF size = page.pageRect().size();
    const QList<CBaseObject *> objects = page.objects();
    Console::print(QStringLiteral("page %1, %2 x %3, objects: %4")
                       .arg(number)
                       .arg(size.width())
                       .arg(size.height())
                       .arg(objects.size()));
    int objectNumber = 0;
    for (CBaseObject *object : objects) {
        const QRectF rect(object->getPos(), object->getSize());
        Console::print(QStringLiteral("object %1: ").arg(++objectNumber) + nameOf(*object));
        Console::print(placeLine(rect));
        const QStringList lines = infoLines(summarise(plugin, *object), std::nullopt);
        for (const QString &text : lines)
            Console::print(text);
    }
}

void describeDocument(const QCommandLineParser &line, const Plugin &plugin, const QString &path)
{
    const std::unique_ptr<Document> document = openDocument(line, plugin, path);
    if (line.isSet(QStringLiteral("json"))) {
        printDocumentJson(plugin, *document);
        return;
    }
    Console::print(path);
    int number = 0;
    for (const Page *page : document->pages())
        printPage(plugin, *page, ++number);
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const Plugin plugin = openPlugin(line);
    if (isDocumentFile(path))
        describeDocument(line, plugin, path);
    else
        describeMedia(line, plugin, path);
}

} // namespace

Command infoCommand()
{
    return {
        QStringLiteral("info"),
        QStringLiteral("FILE-OR-DOC [--json]"),
        QStringLiteral("Tell the figures of animated images: frames, size, timing, memory, place."),
        {{QStringLiteral("json"), QStringLiteral("Answer with a JSON object.")}},
        run};
}
