#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/filmcommand.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/webpexport.h"

namespace
{

std::optional<double> chosenQuality(const QCommandLineParser &line)
{
    const QString value = Arguments::optional(line, QStringLiteral("quality"));
    if (value.isEmpty())
        return std::nullopt;
    bool isNumber = false;
    const double quality = value.toDouble(&isNumber);
    // Written so that it also refuses NaN.
    if (!isNumber || !(quality >= 0.0 && quality <= 100.0))
        throw UsageError{
            QStringLiteral("--quality takes a number from 0 to 100, not '%1'").arg(value)};
    return quality;
}

void run(const QCommandLineParser &line)
{
    const std::optional<double> quality = chosenQuality(line);
    runFilmCommand(line, {QStringLiteral("webp"), QStringLiteral("Writing the WebP, per cent"),
                          [quality](const OutgoingFilm &film, const MemoryAccount &memory,
                                    const QString &path, const FilmProgress &progress) {
                              return webpOf(film, quality, memory, path, progress);
                          }});
}

} // namespace

Command webpCommand()
{
    return withSheetOptions(
        {QStringLiteral("webp"), QStringLiteral("DOC-OR-FILE -o OUT.webp"),
         QStringLiteral("Write an animation as an animated WebP."),
         filmCommandOptions(QStringLiteral("webp")) << QCommandLineOption(
             QStringLiteral("quality"),
             QStringLiteral("Lose details: Q from 0, the smallest file, to 100. Without "
                            "it all pixels are exact."),
             QStringLiteral("Q")),
         run});
}
