#include "flipbook/cli/filmoptions.h"

#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"

#include <optional>

namespace
{

constexpr int MaxFrame = 100000000;

std::optional<int> frameNumber(const QString &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    if (!isNumber || number < 1 || number > MaxFrame)
        return std::nullopt;
    return number;
}

/// "3-7", or "5" for one frame.
void readRange(const QString &text, FilmSelection &selection)
{
    const int dash = text.indexOf(QLatin1Char('-'));
    const std::optional<int> first = frameNumber(dash < 0 ? text : text.left(dash));
    const std::optional<int> last = frameNumber(dash < 0 ? text : text.mid(dash + 1));
    if (!first || !last || *last < *first)
        throw UsageError{
            QStringLiteral("--frames takes two numbers such as 3-7, or one, not '%1'").arg(text)};
    selection.first = *first;
    selection.last = *last;
}

} // namespace

namespace FilmOptions
{

QList<QCommandLineOption> selection()
{
    return {{QStringLiteral("frames"),
             QStringLiteral("Write only the frames A to B, counted from 1."),
             QStringLiteral("A-B")},
            {QStringLiteral("every"),
             QStringLiteral("Write the first of each N frames, for the time of all of them."),
             QStringLiteral("N")},
            {QStringLiteral("reverse"), QStringLiteral("Write the last frame first.")},
            {QStringLiteral("scale"),
             QStringLiteral("Make the pictures F times as wide and high, such as 0.5. Whole "
                            "numbers repeat pixels; others smooth them."),
             QStringLiteral("F")}};
}

QList<QCommandLineOption> selectionOfPage()
{
    return {{QStringLiteral("frames"),
             QStringLiteral("Write only the frames A to B of each animation, counted from 1."),
             QStringLiteral("A-B")},
            {QStringLiteral("every"),
             QStringLiteral("Write the first of each N frames of the animations, for the time of "
                            "all of them."),
             QStringLiteral("N")},
            {QStringLiteral("reverse"),
             QStringLiteral("Write the last frame of each animation first.")},
            {QStringLiteral("scale"),
             QStringLiteral("Write pictures with F times as many pixels on each side, such as 0.5; "
                            "objects keep their places and sizes."),
             QStringLiteral("F")}};
}

FilmSelection chosen(const QCommandLineParser &line)
{
    constexpr double maxScale = 100.0;
    FilmSelection selection;
    const QString range = Arguments::optional(line, QStringLiteral("frames"));
    if (!range.isEmpty())
        readRange(range, selection);
    selection.every = Arguments::count(line, QStringLiteral("every"), MaxFrame, 1);
    selection.isReversed = line.isSet(QStringLiteral("reverse"));
    selection.scale = Arguments::amount(line, QStringLiteral("scale"), maxScale, 1.0);
    return selection;
}

} // namespace FilmOptions

Command withFilmOptions(Command command)
{
    command.options += FilmOptions::selection();
    return command;
}

Command withPageFilmOptions(Command command)
{
    command.options += FilmOptions::selectionOfPage();
    return command;
}
