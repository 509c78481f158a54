#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/filmoptions.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/filmexchange.h"
#include "flipbook/export/webpage.h"
#include "flipbook/import/sourcefile.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

namespace
{

QString htmlOutput(const QCommandLineParser &line)
{
    const QString path = plainPath(Arguments::needed(line, QStringLiteral("o")));
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix != QLatin1String("html") && suffix != QLatin1String("htm"))
        throw UsageError{QStringLiteral("'%1' does not end in .html").arg(path)};
    return path;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = htmlOutput(line);
    const FilmSelection selection = FilmOptions::chosen(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    checkOutput(output, reading);
    Page &page = chosenPage(line, path, *opened.document);

    const QVector<int> delaysMs =
        exchangeFilms(plugin, page, opened.delaysMs(), selection, reading.memory(), path);
    int frames = 0;
    const QList<CBaseObject *> objects = page.objects();
    for (CBaseObject *object : objects)
        frames += AnimatedObject(*object).frameCount();
    ProgressLine progress(QStringLiteral("Writing %1").arg(output), frames);
    try {
        const WebPageSource source{QFileInfo(path).completeBaseName(), delaysMs, selection.scale};
        writeFile(output, webPage(plugin, page, source, reading.memory(),
                                  [&progress](int done, int) { progress.setDone(done); }));
    } catch (const Failure &failure) {
        if (failure.subject == output)
            throw;
        throw Failure{path, failure.reason};
    }
}

} // namespace

Command webCommand()
{
    return withSheetOptions(withPageFilmOptions(
        {QStringLiteral("web"),
         QStringLiteral("DOC-OR-FILE -o PAGE.html [--page N]"),
         QStringLiteral("Write a page as one HTML file that plays in a browser."),
         {{QStringLiteral("o"), QStringLiteral("Write the page to PAGE.html."),
           QStringLiteral("PAGE.html")},
          pageOption()},
         run}));
}
