#include "flipbook/import/mediaimport.h"

#include "flipbook/base/failure.h"
#include "flipbook/import/framefolder.h"
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
    const QFileInfo file(path);
    return kind == SourceKind::Gif ? file.baseName() : file.completeBaseName();
}

void importGif(ImportedMedia &media, const QString &path, qint64 maxMemory)
{
    GifSource source = examineGif(path, maxMemory);
    media.warnings = source.warnings;
    media.gif = source.descriptors;
    AnimatedObject(*media.object).loadPath(path);
}

void importFolder(ImportedMedia &media, const QString &path, qint64 maxMemory)
{
    if (isGifPath(path))
        throw Failure{path, QStringLiteral("is a folder, but its path contains \".gif\" and "
                                           "would be taken for a GIF; use another path to it")};
    media.warnings = examineFrameFolder(path, maxMemory);
    AnimatedObject(*media.object).loadPath(path);
}

void importPicture(ImportedMedia &media, const QString &path, qint64 maxMemory)
{
    const QImage picture = readPicture(path, maxMemory);
    AnimatedObject(*media.object).loadPicture(picture, nameOf(path, SourceKind::OtherFile));
}

} // namespace

ImportedMedia importMedia(const Plugin &plugin, const QString &path, qint64 maxMemory, int objectId)
{
    ImportedMedia media;
    const SourceKind kind = identifySource(path);
    media.object = plugin.createObject(objectId);
    media.object->setOtherParams(QStringLiteral("object_name"), nameOf(path, kind));
    switch (kind) {
    case SourceKind::Gif:
        importGif(media, path, maxMemory);
        break;
    case SourceKind::FrameFolder:
        importFolder(media, path, maxMemory);
        break;
    case SourceKind::Document:
        throw Failure{path, QStringLiteral("is a document; a GIF, a frame folder or a picture is "
                                           "wanted here")};
    case SourceKind::OtherFile:
        importPicture(media, path, maxMemory);
        break;
    }
    if (!hasPicture(plugin.frames(*media.object)))
        throw Failure{path, (QStringList(QStringLiteral("no frame of it could be read")) +
                             media.warnings.mid(0, 1))
                                .join(QStringLiteral(": "))};
    return media;
}

QStringList inputsOf(const QString &path)
{
    if (!QFileInfo(path).isDir())
        return {path};
    return QStringList(path) + frameFolderFiles(path);
}
