#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/contactsheet.h"
#include "flipbook/export/filmexchange.h"

#include <QtGui/QFontDatabase>

namespace
{

QImage paint(const QString &path, const QList<CBaseObject *> &objects, const MemoryAccount &memory)
{
    int frames = 0;
    for (CBaseObject *object : objects)
        frames += AnimatedObject(*object).frameCount();
    ProgressLine progress(QStringLiteral("Painting"), frames);
    try {
        return contactSheet(objects, memory, [&progress](int done) { progress.setDone(done); });
    } catch (const Failure &failure) {
        throw Failure{path, failure.reason};
    }
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::pngOutput(line);
    const FilmSelection selection = FilmOptions::chosen(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);

    const OpenedFile opened = openNamed(plugin, path, reading);
    checkOutput(output, reading);
    const QList<CBaseObject *> objects = opened.objects();
    for (CBaseObject *object : objects)
        exchangeFilm(plugin, *object, {}, selection, reading.memory(), path);
    if (QFontDatabase().families().isEmpty())
        Console::warn(output, QStringLiteral("no font is installed; labels are omitted"));
    writeCompactPng(output, paint(path, opened.objects(), reading.memory()));
}

} // namespace

Command sheetCommand()
{
    return withSheetOptions(withFilmOptions(
        {QStringLiteral("sheet"),
         QStringLiteral("FILE -o OUT.png"),
         QStringLiteral(
             "Paint all frames of an animation, or of all objects of a document, on a sheet."),
         {{QStringLiteral("o"), QStringLiteral("Write the sheet to OUT.png."),
           QStringLiteral("OUT.png")}},
         run}));
}
