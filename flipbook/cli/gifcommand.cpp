#include "flipbook/cli/filmcommand.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/gif/gifexport.h"

namespace
{

void run(const QCommandLineParser &line)
{
    const Dithering dithering =
        line.isSet(QStringLiteral("dither")) ? Dithering::Diffused : Dithering::None;
    runFilmCommand(line, {QStringLiteral("gif"), QStringLiteral("Writing the GIF, per cent"),
                          [dithering](const OutgoingFilm &film, const MemoryAccount &memory,
                                      const QString &path, const FilmProgress &progress) {
                              return gifOf(film, dithering, memory, path, progress);
                          }});
}

} // namespace

Command gifCommand()
{
    return withSheetOptions(
        {QStringLiteral("gif"), QStringLiteral("DOC-OR-FILE -o OUT.gif"),
         QStringLiteral("Write an animation as a GIF."),
         filmCommandOptions(QStringLiteral("gif")) << QCommandLineOption(
             QStringLiteral("dither"), QStringLiteral("Mix colours that do not fit into a palette "
                                                      "from dots of others.")),
         run});
}
