#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/progressline.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/document/pagelayout.h"
#include "flipbook/editing/keeptiming.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/import/naturalorder.h"
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

void addTo(std::vector<Film> &films, ImportedMedia media, const QString &path)
{
    for (const QString &warning : qAsConst(media.warnings))
        Console::warn(path, warning);
    const QVector<int> delays = unevenDelays(media);
    films.push_back({std::move(media.object), path, delays});
}

std::vector<Film> importAll(const Plugin &plugin, const QStringList &files,
                            const QVector<QStringList> &pictureLists, Reading &reading)
{
    std::vector<Film> films;
    ProgressLine progress(QStringLiteral("Reading"), files.size() + pictureLists.size());
    for (const QString &file : files) {
        addTo(films, importMedia(plugin, file, reading, int(films.size()) + 1), file);
        progress.setDone(int(films.size()));
    }
    for (QStringList pictures : pictureLists) {
        sortNaturally(pictures);
        addTo(films, importPictures(plugin, pictures, reading, int(films.size()) + 1),
              pictures.constFirst());
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
    const QVector<QStringList> pictures = Arguments::lists(line, QStringLiteral("film"));
    Reading reading = Arguments::reading(line);
    checkOutput(path, added);
    for (const QStringList &list : pictures)
        checkOutput(path, list);
    const auto ifExists =
        line.isSet(QStringLiteral("force")) ? IfExists::Replace : IfExists::Refuse;
    if (ifExists == IfExists::Refuse && QFileInfo::exists(path))
        refuseExisting(path);

    const Plugin plugin = openPlugin(line);
    Document document;
    // Pictures that occur again share their pixels.
    document.setKeepsImagesInline(false);
    std::vector<Film> films = importAll(plugin, added, pictures, reading);
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
    return withSheetOptions(
        {QStringLiteral("new"),
         QStringLiteral("DOC.flipbook [--add FILE...] [--film FILE...] "
                        "[--keep-timing] [--force]"),
         QStringLiteral("Create a document with these animations and pictures on its page."),
         {{QStringLiteral("add"),
           QStringLiteral("Add the following FILEs to the page: GIFs, animated PNG and WebP "
                          "files, folders, or pictures.")},
          {QStringLiteral("film"),
           QStringLiteral(
               "Add one film made of the pictures in the following FILEs, in natural order: 2 "
               "before 10. May be given several times."),
           QStringLiteral("FILE...")},
          {QStringLiteral("keep-timing"),
           QStringLiteral("Preserve the timing of films whose frames have different "
                          "durations, by repeating frames.")},
          {QStringLiteral("force"), QStringLiteral("Replace an existing document.")}},
         run,
         Operands::Files,
         QStringLiteral("film")});
}
