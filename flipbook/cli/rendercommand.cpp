#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/documentcommand.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::pngOutput(line);
    const double scale = chosenScale(line);
    Reading reading = Arguments::reading(line);
    checkOutput(output, {path});
    const Plugin plugin = openPlugin(line);
    const OpenedFile opened = openDocument(plugin, path, reading);
    checkOutput(output, reading);
    Page &page = chosenPage(line, path, *opened.document);
    if (line.isSet(QStringLiteral("presented")))
        opened.document->enterAlternateMode();
    writePng(output, renderPage(reading.memory(), path, page, scale));
}

} // namespace

Command renderCommand()
{
    return {QStringLiteral("render"),
            QStringLiteral("DOC.flipbook -o PAGE.png [--page N] [--scale S] [--presented]"),
            QStringLiteral("Paint a page of a document."),
            {{QStringLiteral("o"), QStringLiteral("Write the picture to PAGE.png."),
              QStringLiteral("PAGE.png")},
             pageOption(),
             scaleOption(),
             {QStringLiteral("presented"),
              QStringLiteral("Paint the page as it is presented, not as it is edited.")}},
            run};
}
