#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/document/pagelayout.h"
#include "flipbook/editing/keeptiming.h"
#include "flipbook/import/mediaimport.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

#include <algorithm>

namespace
{

struct Film {
    OwnedObject object;
    QString path;
    QVector<int> delays; ///< of a film whose frames are shown for different times, in ms
};

QVector<int> unevenDelays(const ImportedMedia &media)
{
    // The frames of a GIF are decoded to know their times.
    if (media.gif && media.gif->shortestDelay == media.gif->longestDelay)
        return {};
    const QVector<int> delays = media.delaysMs();
    return isUneven(delays) ? delays : QVector<int>();
}

std::vector<Film> importAll(const Plugin &plugin, const QStringList &files, Reading &reading)
{
    std::vector<Film> films;
    ProgressLine progress(QStringLiteral("Reading"), files.size());
    for (const QString &file : files) {
        ImportedMedia media = importMedia(plugin, file, reading, int(films.size()) + 1);
        for (const QString &warning : qAsConst(media.warnings))
            Console::warn(file, warning);
        const QVector<int> delays = unevenDelays(media);
        films.push_back({std::move(media.object), file, delays});
        progress.setDone(int(films.size()));
    }
    return films;
}

QString seconds(qint64 ms)
{
    return QString::number(double(ms) / 1000.0) + QStringLiteral(" s");
}

/// Says what one interval for all frames does to a film whose frames are shown for different times.
void warnOfUnevenTiming(const Film &film)
{
    const int interval = AnimatedObject(*film.object).intervalMs();
    Console::warn(film.path,
                  QStringLiteral("its frames have different durations, but here each is shown "
                                 "for %1 ms: one pass takes %2 instead of %3; --keep-timing "
                                 "preserves the timing by repeating frames")
                      .arg(QString::number(interval),
                           seconds(qint64(interval) * film.delays.size()),
                           seconds(totalMs(film.delays))));
}

void placeOnNewPage(const Plugin &plugin, Document &document, std::vector<Film> films,
                    bool keepsTiming)
{
    QVector<QSizeF> sizes;
    for (const Film &film : films)
        sizes.append(film.object->getSize());
    const PageLayout layout = layOutPage(sizes);
    Page *page = document.addPage(QRectF(QPointF(0, 0), layout.page));
    for (std::size_t i = 0; i < films.size(); ++i) {
        Film &film = films[i];
        if (!keepsTiming && !film.delays.isEmpty())
            warnOfUnevenTiming(film);
        CBaseObject *object = film.object.release();
        page->addObject(object);
        object->setPos(layout.places.at(int(i)), false);
        if (keepsTiming && !film.delays.isEmpty())
            repeatFrames(plugin, *page, *object, planRepeats(film.delays), film.path);
    }
}

bool isDocumentPath(const QString &path)
{
    return path.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive);
}

/// Takes the document out of @p files, at any position: "--add FILE DOC" is natural
/// as well. Two could not be told apart, and one of them would be replaced.
QString takeDocument(QStringList &files)
{
    const auto document = std::find_if(files.begin(), files.end(), isDocumentPath);
    if (document == files.end())
        throw UsageError{QStringLiteral("'%1' does not end in .flipbook").arg(files.first())};
    QString path = *document;
    files.erase(document);
    const auto second = std::find_if(files.begin(), files.end(), isDocumentPath);
    if (second != files.end())
        throw UsageError{QStringLiteral("'%1' is one document too many").arg(*second)};
    return path;
}

[[noreturn]] void refuseExisting(const QString &path)
{
    throw Failure{path, QStringLiteral("already exists; --force replaces it")};
}

void run(const QCommandLineParser &line)
{
    QStringList added = Arguments::files(line);
    const QString path = takeDocument(added);
    if (added.isEmpty() == line.isSet(QStringLiteral("add")))
        throw UsageError{added.isEmpty() ? QStringLiteral("--add needs files")
                                         : QStringLiteral("files to be added must follow --add")};
    Reading reading = Arguments::reading(line);
    checkOutput(path, added);
    const auto ifExists =
        line.isSet(QStringLiteral("force")) ? IfExists::Replace : IfExists::Refuse;
    if (ifExists == IfExists::Refuse && QFileInfo::exists(path))
        refuseExisting(path);

    const Plugin plugin = openPlugin(line);
    Document document;
    // Pictures that occur again share their pixels.
    document.setKeepsImagesInline(false);
    std::vector<Film> films = importAll(plugin, added, reading);
    checkOutput(path, reading);
    placeOnNewPage(plugin, document, std::move(films), line.isSet(QStringLiteral("keep-timing")));
    const ProgressLine progress(QStringLiteral("Writing %1").arg(path));
    try {
        saveDocument(document, path, reading.memory(), ifExists);
    } catch (const ExistingFile &) {
        refuseExisting(path);
    }
}

} // namespace

Command newCommand()
{
    return {QStringLiteral("new"),
            QStringLiteral("DOC.flipbook [--add FILE...] [--keep-timing] [--force]"),
            QStringLiteral("Create a document with these animations and pictures on its page."),
            {{QStringLiteral("add"),
              QStringLiteral("Add the following FILEs to the page: GIFs, frame folders or "
                             "pictures.")},
             {QStringLiteral("keep-timing"),
              QStringLiteral("Preserve the timing of GIFs whose frames have different "
                             "durations, by repeating frames.")},
             {QStringLiteral("force"), QStringLiteral("Replace an existing document.")}},
            run};
}
