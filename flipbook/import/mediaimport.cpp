#include "flipbook/import/mediaimport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/apngchunks.h"
#include "flipbook/import/apngfilm.h"
#include "flipbook/import/framefolder.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/pictureformat.h"
#include "flipbook/import/picturelist.h"
#include "flipbook/import/sheetjson.h"
#include "flipbook/import/sourcefile.h"
#include "flipbook/import/spritesheet.h"
#include "flipbook/import/webpfile.h"
#include "flipbook/object/filmstate.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <algorithm>

namespace
{

bool hasPicture(const Plugin::Frames &frames)
{
    return std::any_of(frames.begin(), frames.end(),
                       [](const auto &frame) { return !frame.second.isNull(); });
}

// The stem that objects give their frames; pictures keep the whole of theirs.
QString nameOf(const QString &path, SourceKind kind)
{
    if (isStandardInput(path))
        return QStringLiteral("film");
    if (kind == SourceKind::FrameFolder)
        return QDir(QDir(path).absolutePath()).dirName();
    return kind == SourceKind::Gif ? QFileInfo(path).baseName() : FrameNames::ofFile(path);
}

void importGif(ImportedMedia &media, QFile &file, const QString &path, Reading &reading)
{
    const GifSource source = copyGif(file, path, reading.memory(), *media.privateFolder);
    media.warnings = source.warnings;
    media.gif = source.descriptors;
    media.copy = source.copy;
    media.format = QStringLiteral("GIF");
    AnimatedObject(*media.object).loadPath(media.copy);
    GifScreen::clear(AnimatedObject(*media.object), media.copy, source.descriptors);
    media.times = FilmTimes::ofGif(media.copy, AnimatedObject(*media.object).frameCount());
}

void importFolder(ImportedMedia &media, const FileHandle &source, const QString &path,
                  Reading &reading)
{
    if (isGifPath(path))
        throw Failure{path, QStringLiteral("is a folder, but its path contains \".gif\" and "
                                           "would be taken for a GIF; use another path to it")};
    media.format = QStringLiteral("frame folder");
    const FrameFolder folder = copyFrameFolder(source, path, reading, *media.privateFolder);
    media.warnings = folder.warnings;
    media.copy = folder.copy;
    AnimatedObject(*media.object).loadPath(media.copy);
    FrameNames::assign(*media.object, folder.names);
}

void importPicture(ImportedMedia &media, QFile &file, const QString &path, Reading &reading)
{
    const QByteArray start = file.peek(PictureFormat::StartLength);
    media.format = PictureFormat::of(start).title();
    const QImage picture = readPicture(file, path, reading.memory());
    reading.memory().take(picture.sizeInBytes() + MemoryBudget::BytesPerFrame);
    AnimatedObject(*media.object).loadPicture(picture, nameOf(path, SourceKind::OtherFile));
}

/// The object for a film that was decoded here: it gets frames, interval and loop count.
void takeOver(ImportedMedia &media, const Plugin &plugin, const DecodedFilm &film,
              const QString &name)
{
    Plugin::Frames frames;
    for (int i = 0; i < film.pictures.size(); ++i) {
        const QString numbered = QStringLiteral("%1_%2").arg(name, QString::number(i + 1));
        frames.append({film.names.value(i, numbered), film.pictures.at(i)});
    }
    FilmState state(*media.object);
    if (!film.delaysMs.isEmpty())
        state.setInterval(film.delaysMs.constFirst());
    state.setLoopCount(film.loopCount);
    media.object = state.withFrames(plugin, frames, 0);
    media.warnings = film.warnings;
    media.format = film.format;
    media.times = FilmTimes::listed(film.delaysMs);
}

/// A film in a file that objects cannot read; none if the file holds a picture.
std::optional<DecodedFilm> readFilm(QFile &file, const QString &path, Reading &reading)
{
    MemoryAccount &memory = reading.memory();
    const QByteArray start = file.peek(WebpFile::StartLength);
    if (WebpFile::isAnimated(start))
        return WebpFile::readFilm(contentOf(file, path, memory), path, memory, reading.steps());
    if (PictureFormat::of(start).kind() == PictureFormat::Png && ApngChunks::announces(file))
        return readApng(contentOf(file, path, memory), path, memory, reading.steps());
    if (mayBeSheetJson(start))
        return readSheetJson(file, path, reading);
    return std::nullopt;
}

[[noreturn]] void refuseToCut(const QString &path, const QString &what)
{
    throw Failure{path, QStringLiteral("only a still picture can be cut into frames, not ") + what};
}

void importOther(ImportedMedia &media, const Plugin &plugin, QFile &file, const QString &path,
                 Reading &reading)
{
    const QString name = nameOf(path, SourceKind::OtherFile);
    const std::optional<SheetCut> &cut = reading.sheetCut();
    if (const std::optional<DecodedFilm> film = readFilm(file, path, reading)) {
        if (cut)
            refuseToCut(path, QStringLiteral("an animation"));
        takeOver(media, plugin, *film, name);
        return;
    }
    if (!cut) {
        importPicture(media, file, path, reading);
        return;
    }
    const QImage sheet = readPicture(file, path, reading.memory());
    takeOver(media, plugin, cutSheet(sheet, *cut, path, reading.memory()), name);
}

/// A frame folder, or one that holds nothing but pictures.
void importAnyFolder(ImportedMedia &media, const Plugin &plugin, const FileHandle &folder,
                     const QString &path, Reading &reading)
{
    if (reading.sheetCut())
        refuseToCut(path, QStringLiteral("a folder"));
    if (Reading::holds(folder, QStringLiteral("config.json")))
        importFolder(media, folder, path, reading);
    else
        takeOver(media, plugin, readPictureFolder(folder, path, reading),
                 nameOf(path, SourceKind::FrameFolder));
}

QString reasonOfEmptyFrames(const ImportedMedia &media)
{
    if (media.gif)
        return reasonNothingIsRead(*media.gif);
    const QStringList reasons =
        QStringList(QStringLiteral("no frame of it could be read")) + media.warnings.mid(0, 1);
    return reasons.join(QStringLiteral(": "));
}

} // namespace

ImportedMedia importMedia(const Plugin &plugin, Source &source, const QString &path,
                          Reading &reading, int objectId)
{
    ImportedMedia media;
    const SourceKind kind = kindOf(source, path);
    media.object = plugin.createObject(objectId);
    media.object->setOtherParams(QStringLiteral("object_name"), nameOf(path, kind));
    media.privateFolder = std::make_unique<PrivateFolder>();
    switch (kind) {
    case SourceKind::Gif:
        if (reading.sheetCut())
            refuseToCut(path, QStringLiteral("a GIF"));
        importGif(media, *source.file, path, reading);
        break;
    case SourceKind::FrameFolder:
        importAnyFolder(media, plugin, source.folder, path, reading);
        break;
    case SourceKind::Document:
        throw Failure{path, QStringLiteral("is a document, not a GIF, a frame folder or a "
                                           "picture")};
    case SourceKind::OtherFile:
        importOther(media, plugin, *source.file, path, reading);
        break;
    }
    if (!hasPicture(plugin.frames(*media.object)))
        throw Failure{path, reasonOfEmptyFrames(media)};
    return media;
}

ImportedMedia importMedia(const Plugin &plugin, const QString &path, Reading &reading, int objectId)
{
    Source source = reading.open(path);
    return importMedia(plugin, source, path, reading, objectId);
}

ImportedMedia importPictures(const Plugin &plugin, const QStringList &paths, Reading &reading,
                             int objectId)
{
    if (reading.sheetCut())
        refuseToCut(paths.value(0), QStringLiteral("one of several pictures"));
    ImportedMedia media;
    const QString name = commonName(paths);
    media.object = plugin.createObject(objectId);
    media.object->setOtherParams(QStringLiteral("object_name"), name);
    takeOver(media, plugin, readPictureFiles(paths, reading), name);
    return media;
}
