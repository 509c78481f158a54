#include "flipbook/cli/arguments.h"
#include "flipbook/cli/opening.h"
#include "flipbook/cli/outputfolder.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/documents/recording.h"
#include "flipbook/failure.h"
#include "flipbook/outputfile.h"
#include "framework/page.h"

#include <cmath>

namespace
{

constexpr int MostFps = 1000;
constexpr int MostPictures = 1000000;

/// The number of pictures in a film of --seconds at @p fps.
int pictureCount(const QCommandLineParser &line, int fps)
{
    const QString text = Arguments::needed(line, QStringLiteral("seconds"));
    bool isNumber = false;
    const double seconds = text.toDouble(&isNumber);
    const double count = std::round(seconds * fps);
    if (!isNumber || !std::isfinite(seconds) || count < 1.0 || count > MostPictures)
        throw UsageError{QStringLiteral("--seconds takes a time of 1 to %1 pictures, not '%2'")
                             .arg(QString::number(MostPictures), text)};
    return static_cast<int>(count);
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString output = Arguments::plainPath(Arguments::needed(line, QStringLiteral("o")));
    const int fps = Arguments::count(line, QStringLiteral("fps"), MostFps, 25);
    const int count = pictureCount(line, fps);
    OutputFolder folder(output);
    const Plugin plugin = openPlugin(line);
    const OpenedSource source = openSource(line, plugin, path);
    Page &page = chosenPage(line, *source.document, path);

    ProgressLine progress(QStringLiteral("Recording"), count);
    int number = 0;
    record(*source.document, page, fps, count, [&](const QImage &picture) {
        if (picture.isNull())
            throw Failure{path, QStringLiteral("the page is too large for a picture")};
        writePng(
            QStringLiteral("%1/%2.png")
                .arg(folder.path(), QString::number(++number).rightJustified(5, QLatin1Char('0'))),
            picture);
        progress.setDone(number);
    });
    folder.commit();
}

} // namespace

Command recordCommand()
{
    return {QStringLiteral("record"),
            QStringLiteral("DOC -o DIR --seconds S [--fps N]"),
            QStringLiteral("Present a page and write it picture by picture."),
            {{QStringLiteral("o"), QStringLiteral("Write to DIR, which must be new or empty."),
              QStringLiteral("DIR")},
             {QStringLiteral("seconds"), QStringLiteral("Record S seconds."), QStringLiteral("S")},
             {QStringLiteral("fps"), QStringLiteral("Take N pictures a second (default: 25)."),
              QStringLiteral("N")},
             pageOption()},
            run};
}
