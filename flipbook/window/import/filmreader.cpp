#include "flipbook/window/import/filmreader.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/saturating.h"
#include "flipbook/document/formmemory.h"
#include "flipbook/editing/keeptiming.h"
#include "flipbook/import/filmtimes.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/gifframes.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/import/picturefacts.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/pictureformat.h"
#include "flipbook/import/sourcefile.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/object/streamform.h"
#include "flipbook/window/commands/filmedit.h"
#include "flipbook/window/import/offeredpicture.h"
#include "flipbook/window/progress.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QLocale>
#include <QtCore/QTemporaryFile>

#include <algorithm>

namespace
{

QString fileName(const QString &path)
{
    return QFileInfo(QDir::cleanPath(path)).fileName();
}

/// A file without a name that holds @p bytes, at its beginning. @throw Failure of @p subject
std::unique_ptr<QFile> temporaryFile(const QByteArray &bytes, const QString &subject)
{
    auto file = std::make_unique<QTemporaryFile>();
    if (!file->open() || file->write(bytes) != bytes.size() || !file->flush())
        throw Failure{subject,
                      QStringLiteral("no private copy can be made: ") + file->errorString()};
    file->seek(0);
    return file;
}

Plugin::Frames repeated(const Plugin::Frames &frames, const RepeatPlan &plan)
{
    FrameNames names(frames);
    Plugin::Frames result;
    for (int i = 0; i < frames.size(); ++i) {
        result.append(frames.at(i));
        for (int repeat = 1; repeat < plan.repeats.value(i, 1); ++repeat)
            result.append({names.give(frames.at(i).first), frames.at(i).second});
    }
    return result;
}

} // namespace

QString textOfNumbered(const QStringList &names)
{
    constexpr int mostNames = 3;
    QString list = names.mid(0, mostNames).join(QStringLiteral(", "));
    if (names.size() > mostNames)
        list += QStringLiteral(", …");
    return FilmReader::tr("Names that were taken got a number: %1").arg(list);
}

FilmReader::FilmReader(const Plugin &plugin, Progress &progress, qint64 maxMemory)
    : m_plugin(plugin)
    , m_progress(progress)
    , m_reading(maxMemory, false)
{
}

ReadFilm FilmReader::read(const QString &path)
{
    Source source = m_reading.open(path);
    return read(source, path);
}

ReadFilm FilmReader::read(const OfferedPicture &offered, const QString &name)
{
    if (!offered.bytes.isEmpty()) {
        Source source{temporaryFile(offered.bytes, name), FileHandle()};
        // Only a file that is called so is read as a GIF.
        const bool isGif = PictureFormat::of(offered.bytes).kind() == PictureFormat::Gif;
        return read(source, isGif ? name + QStringLiteral(".gif") : name);
    }
    // The object keeps a copy of its own.
    m_reading.memory().require(2 * offered.picture.sizeInBytes(), name,
                               QStringLiteral("the picture"));
    FilmState state(*m_plugin.createObject());
    state.setName(name);
    ReadFilm film;
    film.path = name;
    film.object = state.withFrames(m_plugin, {{name, offered.picture}}, 0);
    return film;
}

Plugin::Frames FilmReader::read(const QVector<EncodedFrame> &frames)
{
    const QLocale locale;
    requireRoomFor(frames);
    Plugin::Frames read;
    for (const EncodedFrame &frame : frames) {
        m_progress.step(
            tr("Reading %1, %2 of %3 pictures")
                .arg(frame.name, locale.toString(read.size() + 1), locale.toString(frames.size())),
            read.size(), frames.size());
        QImage picture;
        if (!frame.picture.isEmpty())
            picture = readPicture(*temporaryFile(frame.picture, frame.name), frame.name,
                                  m_reading.memory());
        m_reading.memory().take(picture.sizeInBytes() + MemoryBudget::BytesPerFrame);
        read.append({frame.name, picture});
    }
    return read;
}

QString FilmReader::clipboardName()
{
    return tr("The clipboard");
}

void FilmReader::requireRoomFor(const QVector<EncodedFrame> &frames)
{
    qint64 kept = 0;
    qint64 work = 0;
    for (const EncodedFrame &frame : frames) {
        kept = Saturating::sum(kept, MemoryBudget::BytesPerFrame);
        if (frame.picture.isEmpty())
            continue;
        QByteArray bytes = frame.picture;
        QBuffer buffer(&bytes);
        buffer.open(QIODevice::ReadOnly);
        const PictureFacts facts = PictureFacts::read(buffer, m_reading.memory().limit());
        kept = Saturating::sum(kept, facts.keptBytes());
        work = std::max(work, facts.workBytes);
    }
    m_reading.memory().require(Saturating::sum(kept, work), clipboardName(),
                               QStringLiteral("%1 pictures").arg(frames.size()));
}

/// Beside its pictures: the object itself, and the picture that a background makes of a frame.
void FilmReader::takeRoomFor(const StreamForm &form, CBaseObject &withoutFrames)
{
    // Measured: names and settings as values, each with its place in a list.
    constexpr qint64 bytesPerStateByte = 16;
    MemoryAccount &memory = m_reading.memory();
    qint64 kept = FormMemory::BytesPerObject + bytesPerStateByte * form.state.size();
    qint64 work = 0;
    if (FilmEdit::isBackground(withoutFrames)) {
        const QSizeF size = withoutFrames.getSize();
        kept = Saturating::sum(kept, MemoryBudget::keptForTile(size));
        work = MemoryBudget::forTileAtWork(size);
    }
    memory.require(Saturating::sum(kept, work), clipboardName(), QStringLiteral("an object"));
    memory.take(kept);
}

std::vector<OwnedObject> FilmReader::read(const QVector<StreamForm> &forms)
{
    QVector<EncodedFrame> encoded;
    for (const StreamForm &form : forms) {
        const OwnedObject withoutFrames = form.object(m_plugin, {});
        takeRoomFor(form, *withoutFrames);
        const QString name = AnimatedObject(*withoutFrames).name();
        for (const QByteArray &picture : form.pictures)
            encoded.append({name.isEmpty() ? clipboardName() : name, picture});
    }
    const Plugin::Frames decoded = read(encoded);
    std::vector<OwnedObject> objects;
    int next = 0;
    for (const StreamForm &form : forms) {
        QList<QImage> pictures;
        while (pictures.size() < form.pictures.size())
            pictures.append(decoded.at(next++).second);
        objects.push_back(form.object(m_plugin, pictures));
    }
    return objects;
}

ReadFilm FilmReader::read(Source &source, const QString &path)
{
    const SourceKind kind = kindOf(source, path);
    if (kind == SourceKind::Gif)
        return readGif(*source.file, path);
    m_reading.setSteps(steps(tr("Reading %1, %2 of %3 frames"), path));
    m_progress.step(tr("Reading %1").arg(fileName(path)), 0, 0);
    ImportedMedia media = importMedia(m_plugin, source, path, m_reading);
    ReadFilm film;
    film.path = path;
    film.object = std::move(media.object);
    film.warnings = media.warnings;
    const QVector<int> delaysMs = media.delaysMs();
    if (isUneven(delaysMs))
        keepRhythm(film, delaysMs);
    return film;
}

/// Shows how far the work on the file at @p path is, in a line made of @p text.
Steps FilmReader::steps(const QString &text, const QString &path)
{
    return [this, text, name = fileName(path)](qint64 done, qint64 all) {
        const QLocale locale;
        m_progress.step(text.arg(name, locale.toString(done), locale.toString(all)), done, all);
    };
}

ReadFilm FilmReader::readGif(QFile &file, const QString &path)
{
    PrivateFolder folder;
    const GifSource source = copyGif(file, path, m_reading.memory(), folder);
    const QString name = QFileInfo(path).baseName();
    const Steps frameSteps = steps(tr("Reading %1, %2 of %3 frames"), path);
    const GifFrames gif = readGifFrames(
        source.copy, name, [&](int done) { frameSteps(done, source.descriptors.frames); });
    const bool hasPicture = std::any_of(gif.frames.begin(), gif.frames.end(),
                                        [](const auto &frame) { return !frame.second.isNull(); });
    if (!hasPicture)
        throw Failure{path, QStringLiteral("no frame of it could be read")};
    FilmState state(*m_plugin.createObject());
    state.setName(name);
    state.setInterval(gif.intervalMs);
    state.setLoopCount(gif.loopCount);
    ReadFilm film;
    film.path = path;
    film.warnings = source.warnings;
    film.object = state.withFrames(m_plugin, gif.frames, 0);
    GifScreen::clear(AnimatedObject(*film.object), source.copy, source.descriptors, frameSteps);
    if (source.descriptors.shortestDelay != source.descriptors.longestDelay) {
        const FilmTimes times = FilmTimes::ofGif(source.copy, gif.frames.size());
        const QVector<int> delaysMs =
            times.delaysMs(steps(tr("Reading the durations in %1, %2 of %3 frames"), path));
        if (isUneven(delaysMs))
            keepRhythm(film, delaysMs);
    }
    return film;
}

void FilmReader::keepRhythm(ReadFilm &film, const QVector<int> &delaysMs)
{
    film.lengthMs = totalMs(delaysMs);
    const RepeatPlan plan = planRepeats(delaysMs);
    if (plan.frameCount() > MaxRepeatedFrames) {
        film.warnings << tr("its frames have different durations; preserving its timing would need "
                            "more than %1 frames, so all frames have the same duration")
                             .arg(QLocale().toString(MaxRepeatedFrames));
        return;
    }
    FilmState state(*film.object);
    state.setInterval(plan.intervalMs);
    film.even = std::move(film.object);
    film.object = state.withFrames(m_plugin, repeated(m_plugin.frames(*film.even), plan), 0);
}

ReadFilm FilmReader::readPictures(const QStringList &paths, const QString &name)
{
    const QLocale locale;
    Plugin::Frames frames;
    for (const QString &path : paths) {
        m_progress.step(tr("Reading %1, %2 of %3 pictures")
                            .arg(fileName(path), locale.toString(frames.size() + 1),
                                 locale.toString(paths.size())),
                        frames.size(), paths.size());
        const QImage picture = readPicture(path, m_reading);
        m_reading.memory().take(picture.sizeInBytes());
        frames.append({FrameNames::ofFile(path), picture});
    }
    const QStringList numbered = FrameNames().giveAll(frames);
    FilmState state(*m_plugin.createObject());
    state.setName(name);
    ReadFilm film;
    film.path = paths.first();
    if (!numbered.isEmpty())
        film.warnings << textOfNumbered(numbered);
    film.object = state.withFrames(m_plugin, frames, 0);
    return film;
}
