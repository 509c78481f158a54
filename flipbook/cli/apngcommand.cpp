#include "flipbook/cli/filmcommand.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/export/apngexport.h"

namespace
{

void run(const QCommandLineParser &line)
{
    runFilmCommand(line,
                   {QStringLiteral("png"), QStringLiteral("Writing the PNG, per cent"), apngOf});
}

} // namespace

Command apngCommand()
{
    return withSheetOptions({QStringLiteral("apng"), QStringLiteral("DOC-OR-FILE -o OUT.png"),
                             QStringLiteral("Write an animation as an animated PNG."),
                             filmCommandOptions(QStringLiteral("png")), run});
}
