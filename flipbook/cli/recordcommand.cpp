#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/documentcommand.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/editing/filmmemory.h"
#include "flipbook/import/sourcefile.h"
#include "flipbook/object/steppedplayback.h"
#include "framework/page.h"

#include <cmath>

namespace
{

constexpr int MaxFps = 1000;
constexpr int DefaultFps = 25;
constexpr double MaxSeconds = 86400.0;
constexpr double MaxPictures = 1e7;

int pictureCount(int fps, double seconds)
{
    const double count = std::floor(fps * seconds + 1e-9);
    if (count < 1.0)
        throw UsageError{QStringLiteral("%1 seconds at %2 pictures a second give no picture")
                             .arg(seconds)
                             .arg(fps)};
    if (count > MaxPictures)
        throw UsageError{QStringLiteral("that would be %1 pictures").arg(count, 0, 'f', 0)};
    return int(count);
}

QString pictureFile(int number, int count)
{
    const int digits = std::max(5, QString::number(count).size());
    return QStringLiteral("frame-%1.png")
        .arg(QString::number(number).rightJustified(digits, QLatin1Char('0')));
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString folder = plainPath(Arguments::needed(line, QStringLiteral("o")));
    const int fps = Arguments::count(line, QStringLiteral("fps"), MaxFps, DefaultFps);
    Arguments::needed(line, QStringLiteral("seconds"));
    const double seconds = Arguments::amount(line, QStringLiteral("seconds"), MaxSeconds, 0.0);
    const double scale = chosenScale(line);
    const int count = pictureCount(fps, seconds);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openDocument(plugin, path, reading);
    Page &page = chosenPage(line, path, *opened.document);
    MemoryAccount &memory = reading.memory();
    const qint64 copies = FilmMemory::ofPaintedCopies(plugin, page.objects());
    memory.require(copies, path, QStringLiteral("painting its pictures repeatedly"));
    memory.take(copies);
    OutputFolder output(folder);

    ProgressLine progress(QStringLiteral("Recording"), count);
    SteppedPlayback playback(*opened.document, page);
    for (int i = 0; i < count; ++i) {
        playback.advanceTo(qint64(i) * 1000 / fps);
        const QString name = pictureFile(i + 1, count);
        output.write(name, pngOf(renderPage(memory, path, page, scale), name));
        progress.setDone(i + 1);
    }
    output.finish();
}

} // namespace

Command recordCommand()
{
    return {QStringLiteral("record"),
            QStringLiteral("DOC.flipbook -o FOLDER --seconds S [--fps N] [--page N] [--scale S]"),
            QStringLiteral("Present a page and write what is shown as numbered PNG files."),
            {{QStringLiteral("o"), QStringLiteral("Write into FOLDER, which is new or empty."),
              QStringLiteral("FOLDER")},
             {QStringLiteral("seconds"), QStringLiteral("Record S seconds, such as 2.5."),
              QStringLiteral("S")},
             {QStringLiteral("fps"),
              QStringLiteral("Write N pictures for each second (default: 25). Animations advance "
                             "every 40 ms for any N."),
              QStringLiteral("N")},
             pageOption(),
             scaleOption()},
            run};
}
