#include "flipbook/import/mediaimport.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/framefolder.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/import/picturefile.h"
#include "flipbook/import/sourcefile.h"

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
    if (kind == SourceKind::FrameFolder)
        return QDir(path).dirName();
    return kind == SourceKind::Gif ? QFileInfo(path).baseName() : FrameNames::ofFile(path);
}

void importGif(ImportedMedia &media, QFile &file, const QString &path, Reading &reading)
{
    const GifSource source = copyGif(file, path, reading.memory(), *media.privateFolder);
    media.warnings = source.warnings;
    media.gif = source.descriptors;
    media.copy = source.copy;
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
    const FrameFolder folder = copyFrameFolder(source, path, reading, *media.privateFolder);
    media.warnings = folder.warnings;
    media.copy = folder.copy;
    AnimatedObject(*media.object).loadPath(media.copy);
    FrameNames::assign(*media.object, folder.names);
}

void importPicture(ImportedMedia &media, QFile &file, const QString &path, Reading &reading)
{
    const QImage picture = readPicture(file, path, reading.memory());
    reading.memory().take(picture.sizeInBytes() + MemoryBudget::BytesPerFrame);
    AnimatedObject(*media.object).loadPicture(picture, nameOf(path, SourceKind::OtherFile));
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
        importGif(media, *source.file, path, reading);
        break;
    case SourceKind::FrameFolder:
        importFolder(media, source.folder, path, reading);
        break;
    case SourceKind::Document:
        throw Failure{path, QStringLiteral("is a document, not a GIF, a frame folder or a "
                                           "picture")};
    case SourceKind::OtherFile:
        importPicture(media, *source.file, path, reading);
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
