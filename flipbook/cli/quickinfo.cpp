#include "flipbook/cli/quickinfo.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/infotext.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/import/sourcefile.h"

#include <QtCore/QFileInfo>
#include <QtGui/QImageReader>

#include <algorithm>
#include <new>

namespace
{

constexpr int BytesPerPixel = 4;

/// Whether every decoder finds the same frames, each whole, and nothing is to be warned of.
bool isSound(const GifDescriptors &gif)
{
    return gif.ending == GifEnding::Trailer && gif.frames > 0 && gif.wholeFrames == gif.frames &&
           gif.damagedFrames == 0 && !gif.unusual && !gif.leavesScreenUnset &&
           !gif.screen.isEmpty();
}

/// The delay that an object takes over; it is known after the first frame was read.
int firstDelay(QImageReader &reader)
{
    reader.read();
    return reader.nextImageDelay();
}

/// The figures that an object would have which imports the sound GIF.
ObjectSummary summaryOf(const GifDescriptors &gif, const QString &stem, int intervalMs)
{
    ObjectSummary summary;
    summary.frames = int(gif.frames);
    summary.size = gif.screen;
    summary.intervalMs = intervalMs;
    summary.loopCount = std::max(0, gif.repetitions.value_or(0)) - 1;
    for (int number = 1; number <= summary.frames; ++number)
        summary.names << QStringLiteral("%1_%2").arg(stem, QString::number(number));
    summary.decodedBytes = gif.frames * BytesPerPixel * gif.screen.width() * gif.screen.height();
    return summary;
}

bool answer(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const QString stem = QFileInfo(path).baseName();
    // It can be read once only.
    if (isStandardInput(path))
        return false;
    Reading reading = Arguments::reading(line);
    const Source source = reading.open(path);
    if (!isGifPath(path) || stem.isEmpty() || kindOf(source, path) != SourceKind::Gif)
        return false;
    QFile &file = *source.file;
    const GifDescriptors gif = readGifDescriptors(file);
    const qint64 needed =
        MemoryBudget::neededForFilm(gif.screen, gif.frames, gif.workingPictures());
    if (!isSound(gif) || !reading.memory().hasRoomFor(needed) || !file.seek(0))
        return false;
    QImageReader reader(&file, "gif");
    if (reader.imageCount() != gif.frames)
        return false;
    printInfo(path, summaryOf(gif, stem, firstDelay(reader)), gif,
              line.isSet(QStringLiteral("json")));
    return true;
}

} // namespace

bool answerQuickInfo(const QStringList &arguments)
{
    const Command info = infoCommand();
    // Whoever names a plug-in wants to hear from it.
    if (arguments.value(0) != info.name || !qEnvironmentVariableIsEmpty("FLIPBOOK_PLUGIN"))
        return false;
    QCommandLineParser line;
    line.addOptions(info.options);
    line.addOptions(commonOptions());
    if (!line.parse(arguments))
        return false;
    for (const char *other :
         {"help", "version", "verbose", "opaque", "plugin", "grid", "cell", "margin", "spacing"}) {
        if (line.isSet(QLatin1String(other)))
            return false;
    }
    // What fails here is done again with everything that a message needs.
    try {
        return answer(line);
    } catch (const UsageError &) {
        return false;
    } catch (const Failure &) {
        return false;
    } catch (const std::bad_alloc &) {
        return false;
    }
}
