#include "flipbook/base/failure.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/filmexchange.h"
#include "flipbook/export/frameexport.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/import/sourcefile.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString folder = plainPath(Arguments::needed(line, QStringLiteral("o")));
    if (isGifPath(folder))
        throw UsageError{QStringLiteral("'%1' contains \".gif\" and could not be imported as a "
                                        "frame folder")
                             .arg(folder)};
    const FilmSelection selection = FilmOptions::chosen(line);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    CBaseObject &object = *exchangeFilm(plugin, chosenObject(line, path, opened),
                                        selection.isWhole() ? QVector<int>() : opened.delaysMs(),
                                        selection, reading.memory(), path)
                               .object;
    OutputFolder output(folder);
    ProgressLine progress(QStringLiteral("Writing"), AnimatedObject(object).frameCount());
    const QStringList warnings =
        exportFrames(plugin, *opened.document, object, reading.memory(), output,
                     [&progress](int done) { progress.setDone(done); });
    output.finish();
    for (const QString &warning : warnings)
        Console::warn(path, warning);
}

} // namespace

Command framesCommand()
{
    return withSheetOptions(withFilmOptions(
        {QStringLiteral("frames"),
         QStringLiteral("FILE -o FOLDER [--object N]"),
         QStringLiteral("Write the frames as PNG files, with a config.json, so that they can "
                        "be imported again."),
         {{QStringLiteral("o"), QStringLiteral("Write into FOLDER, which is new or empty."),
           QStringLiteral("FOLDER")},
          objectOption()},
         run}));
}
