#include "flipbook/cli/sheetoptions.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/cli/arguments.h"

#include <QtCore/QRegularExpression>

namespace
{

constexpr int MostPixels = 1 << 20;

const QLatin1String Grid("grid");
const QLatin1String Cell("cell");
const QLatin1String Margin("margin");
const QLatin1String Spacing("spacing");

/// Two whole numbers above 0, such as "4x3"; empty when the option is not given.
QSize pair(const QCommandLineParser &line, const QString &option)
{
    const QString value = Arguments::optional(line, option);
    if (value.isEmpty())
        return {};
    static const QRegularExpression form(QStringLiteral("^(\\d{1,7})[xX](\\d{1,7})$"));
    const QRegularExpressionMatch match = form.match(value);
    const QSize size(match.captured(1).toInt(), match.captured(2).toInt());
    if (size.isEmpty() || size.width() > MostPixels || size.height() > MostPixels)
        throw UsageError{QStringLiteral("--%1 takes two whole numbers such as 4x3, not '%2'")
                             .arg(option, value)};
    return size;
}

/// Pixels from 0 on.
int distance(const QCommandLineParser &line, const QString &option)
{
    return Arguments::wholeNumber(line, option, 0, MostPixels, 0);
}

} // namespace

Command withSheetOptions(Command command)
{
    command.options +=
        {{Grid, QStringLiteral("Cut a picture into frames: COLUMNSxROWS cells of equal size."),
          QStringLiteral("COLUMNSxROWS")},
         {Cell, QStringLiteral("Cut a picture into frames: cells of WIDTHxHEIGHT pixels."),
          QStringLiteral("WIDTHxHEIGHT")},
         {Margin, QStringLiteral("N pixels are around all cells (default: 0)."),
          QStringLiteral("N")},
         {Spacing, QStringLiteral("N pixels are between two cells (default: 0)."),
          QStringLiteral("N")}};
    return command;
}

bool cutsSheets(const QCommandLineParser &line)
{
    // Other commands do not know the options, and the parser complains when it is asked for them.
    const QStringList given = line.optionNames();
    return given.contains(Grid) || given.contains(Cell) || given.contains(Margin) ||
           given.contains(Spacing);
}

void applySheetOptions(const QCommandLineParser &line, Reading &reading)
{
    if (!cutsSheets(line))
        return;
    SheetCut cut;
    cut.grid = pair(line, Grid);
    cut.cell = pair(line, Cell);
    if (cut.grid.isEmpty() == cut.cell.isEmpty())
        throw UsageError{cut.grid.isEmpty()
                             ? QStringLiteral("--margin and --spacing need --grid or --cell")
                             : QStringLiteral("--grid and --cell exclude each other")};
    cut.margin = distance(line, Margin);
    cut.spacing = distance(line, Spacing);
    reading.setSheetCut(cut);
}
