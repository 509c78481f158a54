#include "flipbook/cli/arguments.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/opening.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/documents/newdocument.h"
#include "flipbook/editing/keeptiming.h"
#include "flipbook/failure.h"
#include "flipbook/outputfile.h"
#include "framework/document.h"

#include <QtCore/QFileInfo>

namespace
{

QString seconds(qint64 ms)
{
    return QString::number(double(ms) / 1000.0) + QStringLiteral(" s");
}

/// Says what one interval for all frames does to a film whose frames are shown for different times.
void warnOfUnevenTiming(const QString &path, const QVector<int> &delays, int intervalMs)
{
    const qint64 original = totalMs(delays);
    const qint64 played = qint64(intervalMs) * delays.size();
    Console::warn(path, QStringLiteral("its frames are shown for different times, but an object "
                                       "has one interval for all: one pass takes %1 instead of "
                                       "%2; --keep-timing keeps the rhythm by repeating frames")
                            .arg(seconds(played), seconds(original)));
}

void addFile(const QCommandLineParser &line, const Plugin &plugin, NewDocument &document,
             const QString &path)
{
    ImportedMedia media = importNamed(line, plugin, path);
    const bool mayBeUneven = media.gif && media.gif->shortestDelay != media.gif->longestDelay;
    CBaseObject *object = document.add(std::move(media.object), path);
    if (!mayBeUneven)
        return;
    const ProgressLine progress(QStringLiteral("Timing %1").arg(path));
    const QVector<int> delays = frameDelays(path);
    if (!isUneven(delays))
        return;
    if (line.isSet(QStringLiteral("keep-timing")))
        repeatFrames(plugin, document.page(), *object, planRepeats(delays), path);
    else
        warnOfUnevenTiming(path, delays, AnimatedObject(*object).intervalMs());
}

QStringList filesToAdd(const QCommandLineParser &line)
{
    QStringList files;
    const QStringList values = line.values(QStringLiteral("add"));
    for (const QString &value : values) {
        if (value.isEmpty())
            throw UsageError{QStringLiteral("--add needs a file")};
        files.append(Arguments::plainPath(value));
    }
    // What follows the document are files as well, so that a shell can expand "--add *.gif".
    const QStringList others = line.positionalArguments().mid(1);
    for (const QString &other : others)
        files.append(Arguments::plainPath(other));
    return files;
}

void run(const QCommandLineParser &line)
{
    const QStringList arguments = line.positionalArguments();
    if (arguments.isEmpty() || arguments.first().isEmpty())
        throw UsageError{QStringLiteral("the name of the document is missing")};
    const QString path = Arguments::plainPath(arguments.first());
    const QStringList files = filesToAdd(line);
    QStringList inputs;
    for (const QString &file : files)
        inputs.append(inputsOf(file));
    checkOutput(path, inputs);
    if (QFileInfo::exists(path) && !line.isSet(QStringLiteral("force")))
        throw Failure{path, QStringLiteral("exists already; --force replaces it")};

    const Plugin plugin = openPlugin(line);
    NewDocument document;
    for (const QString &file : files)
        addFile(line, plugin, document, file);
    const std::unique_ptr<Document> finished = document.finished();
    const ProgressLine progress(QStringLiteral("Writing %1").arg(path));
    writeDocument(*finished, path);
}

} // namespace

Command newCommand()
{
    return {QStringLiteral("new"),
            QStringLiteral("DOC [--add FILE...]"),
            QStringLiteral("Make a document of one page with GIFs, frame folders and pictures."),
            {{QStringLiteral("add"), QStringLiteral("Put FILE on the page; may be repeated."),
              QStringLiteral("FILE")},
             {QStringLiteral("keep-timing"),
              QStringLiteral("Repeat frames of GIFs that show them for different times.")},
             {QStringLiteral("force"), QStringLiteral("Replace DOC if it exists.")}},
            run};
}
