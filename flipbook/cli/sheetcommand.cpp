#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/opening.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/contactsheet.h"
#include "flipbook/failure.h"
#include "flipbook/outputfile.h"
#include "framework/page.h"

#include <QtGui/QFontDatabase>

namespace
{

QImage paint(const QString &path, const QList<CBaseObject *> &objects)
{
    int frames = 0;
    for (CBaseObject *object : objects)
        frames += AnimatedObject(*object).frameCount();
    ProgressLine progress(QStringLiteral("Painting"), frames);
    try {
        return contactSheet(objects, [&progress](int done) { progress.setDone(done); });
    } catch (const Failure &failure) {
        throw Failure{path, failure.reason};
    }
}

void paintDocument(const QCommandLineParser &line, const Plugin &plugin, const QString &path,
                   const QString &output)
{
    const std::unique_ptr<Document> document = openDocument(line, plugin, path);
    QList<CBaseObject *> objects;
    for (const Page *page : document->pages())
        objects += page->objects();
    writePng(output, paint(path, objects));
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::pngOutput(line);
    checkOutput(output, inputsOf(path));
    const Plugin plugin = openPlugin(line);
    if (QFontDatabase().families().isEmpty())
        Console::warn(output, QStringLiteral("no font is installed; there are no labels"));
    if (isDocumentFile(path)) {
        paintDocument(line, plugin, path, output);
    } else {
        const ImportedMedia media = importNamed(line, plugin, path);
        writePng(output, paint(path, {media.object.get()}));
    }
}

} // namespace

Command sheetCommand()
{
    return {QStringLiteral("sheet"),
            QStringLiteral("FILE-OR-DOC -o OUT.png"),
            QStringLiteral("Paint all frames on one contact sheet."),
            {{QStringLiteral("o"), QStringLiteral("Write the sheet to OUT.png."),
              QStringLiteral("OUT.png")}},
            run};
}
