#include "flipbook/cli/arguments.h"
#include "flipbook/cli/opening.h"
#include "flipbook/failure.h"
#include "flipbook/outputfile.h"
#include "framework/page.h"

namespace
{

QImage picture(Document &document, Page &page, bool presented)
{
    if (!presented)
        return page.rendered();
    document.enterAlternateMode();
    const QImage image = page.rendered();
    document.leaveAlternateMode();
    return image;
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::pngOutput(line);
    checkOutput(output, inputsOf(path));
    const Plugin plugin = openPlugin(line);
    const OpenedSource source = openSource(line, plugin, path);
    Page &page = chosenPage(line, *source.document, path);
    const QImage image = picture(*source.document, page, line.isSet(QStringLiteral("presented")));
    if (image.isNull())
        throw Failure{path, QStringLiteral("the page is too large for a picture")};
    writePng(output, image);
}

} // namespace

Command renderCommand()
{
    return {QStringLiteral("render"),
            QStringLiteral("DOC -o PAGE.png [--presented]"),
            QStringLiteral("Paint a page of a document."),
            {{QStringLiteral("o"), QStringLiteral("Write the picture to PAGE.png."),
              QStringLiteral("PAGE.png")},
             {QStringLiteral("presented"),
              QStringLiteral("Paint the page as it is presented, not as it is edited.")},
             pageOption()},
            run};
}
