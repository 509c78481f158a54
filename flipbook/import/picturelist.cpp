#include "flipbook/import/picturelist.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/saturating.h"
#include "flipbook/base/warninglimit.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/naturalorder.h"
#include "flipbook/import/picturefacts.h"
#include "flipbook/import/picturefile.h"

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>

#include <algorithm>
#include <functional>

namespace
{

using Open = std::function<std::unique_ptr<QFile>(const QString &name)>;

bool hasPictureName(const QString &name)
{
    static const QStringList endings = {QStringLiteral("png"),  QStringLiteral("jpg"),
                                        QStringLiteral("jpeg"), QStringLiteral("bmp"),
                                        QStringLiteral("ppm"),  QStringLiteral("pgm"),
                                        QStringLiteral("pbm"),  QStringLiteral("webp")};
    return endings.contains(QFileInfo(name).suffix().toLower());
}

/// Before any is decoded: what all of them would need. @p subject is told that it is too much;
/// without one, the first that is.
void requireAll(const QStringList &names, const Open &open, const QString &subject,
                const MemoryAccount &memory)
{
    qint64 kept = 0;
    qint64 work = 0;
    for (const QString &name : names) {
        PictureFacts facts;
        try {
            facts = PictureFacts::read(*open(name), memory.limit());
        } catch (const MissingFile &) {
            // It is told when it is read.
            continue;
        }
        kept = Saturating::sum(kept, facts.keptBytes() + MemoryBudget::BytesPerFrame);
        work = std::max(work, facts.workBytes);
        memory.require(Saturating::sum(kept, work), subject.isEmpty() ? name : subject,
                       QStringLiteral("%1 pictures").arg(names.size()));
    }
}

void add(DecodedFilm &film, const QString &name, QFile &file, const QString &subject,
         MemoryAccount &memory)
{
    const QImage picture = readPicture(file, subject, memory);
    memory.take(picture.sizeInBytes() + MemoryBudget::BytesPerFrame);
    film.pictures.append(picture);
    film.names.append(FrameNames::ofFile(name));
}

} // namespace

QStringList picturesInFolder(const FileHandle &folder, const QString &path)
{
    QStringList names = Reading::filesIn(folder, path);
    names.erase(std::remove_if(names.begin(), names.end(),
                               [](const QString &name) { return !hasPictureName(name); }),
                names.end());
    sortNaturally(names);
    return names;
}

DecodedFilm readPictureFolder(const FileHandle &folder, const QString &path, Reading &reading)
{
    const QStringList names = picturesInFolder(folder, path);
    if (names.isEmpty())
        throw Failure{path, QStringLiteral("the folder has no config.json and no pictures")};
    const Open open = [&](const QString &name) {
        return reading.openFrom(folder, QStringLiteral("./") + name);
    };
    DecodedFilm film;
    film.format = QStringLiteral("folder of pictures");
    QString reason;
    try {
        requireAll(names, open, path, reading.memory());
        for (const QString &name : names) {
            const std::unique_ptr<QFile> file = open(name);
            tellStep(reading.steps(), film.pictures.size(), names.size());
            try {
                add(film, name, *file, path + QLatin1Char('/') + name, reading.memory());
            } catch (const OverBudget &) {
                throw;
            } catch (const Failure &failure) {
                reason = QStringLiteral("%1 is left out: %2").arg(name, failure.reason);
                if (film.warnings.size() < MaxWarnings)
                    film.warnings << reason;
            }
        }
    } catch (const OverBudget &) {
        throw;
    } catch (const Failure &failure) {
        throw Failure{path, QStringLiteral("%1: %2").arg(failure.subject, failure.reason)};
    }
    if (film.pictures.isEmpty())
        throw Failure{path, QStringLiteral("no picture in the folder can be read: ") + reason};
    makeNamesUnique(film);
    return film;
}

DecodedFilm readPictureFiles(const QStringList &paths, Reading &reading)
{
    const Open open = [&reading](const QString &path) { return reading.openFile(path); };
    requireAll(paths, open, QString(), reading.memory());
    DecodedFilm film;
    film.format = QStringLiteral("pictures");
    for (const QString &path : paths) {
        tellStep(reading.steps(), film.pictures.size(), paths.size());
        add(film, path, *open(path), path, reading.memory());
    }
    makeNamesUnique(film);
    return film;
}

QString commonName(const QStringList &paths)
{
    static const QRegularExpression number(QStringLiteral("[ _.-]*\\d+$"));
    const QString whole = QFileInfo(paths.value(0)).completeBaseName();
    QString stem = whole;
    stem.remove(number);
    return stem.isEmpty() ? whole : stem;
}

void makeNamesUnique(DecodedFilm &film)
{
    FrameNames names;
    for (QString &name : film.names) {
        const QString wanted = name;
        name = names.give(wanted);
        if (name != wanted && film.warnings.size() < MaxWarnings)
            film.warnings << FrameNames::told(wanted, name);
    }
}
