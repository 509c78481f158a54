#include "flipbook/window/import/picturegroup.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/apngchunks.h"
#include "flipbook/import/pictureformat.h"
#include "flipbook/import/webpfile.h"

#include <QtCore/QFileInfo>
#include <QtCore/QRegularExpression>
#include <QtGui/QImageReader>

namespace
{

/// The size of a still picture; invalid for anything else.
QSize pictureSize(const QString &path)
{
    try {
        const std::unique_ptr<QFile> file = Reading(0, false).openFile(path);
        const auto format = PictureFormat::of(file->peek(PictureFormat::StartLength));
        if (!format.isKnown() || format.kind() == PictureFormat::Gif)
            return QSize();
        const QByteArray start = file->peek(WebpFile::StartLength);
        if (WebpFile::isAnimated(start) ||
            (format.kind() == PictureFormat::Png && ApngChunks::announces(*file)))
            return QSize();
        if (format.kind() == PictureFormat::Webp)
            return WebpFile::sizeOf(start).value_or(QSize());
        return QImageReader(file.get(), format.readerName()).size();
    } catch (const Failure &) {
        // It is told when the file is read.
        return QSize();
    }
}

/// "walk" for walk_01.png.
QString stemOf(const QString &path)
{
    QString stem = QFileInfo(path).completeBaseName();
    stem.remove(QRegularExpression(QStringLiteral("[ _.-]*\\d+$")));
    return stem.isEmpty() ? QFileInfo(path).completeBaseName() : stem;
}

} // namespace

PictureGroup groupPictures(const QStringList &paths)
{
    PictureGroup group;
    QSize size;
    for (const QString &path : paths) {
        const QSize own = pictureSize(path);
        if (!own.isValid()) {
            group.others << path;
            continue;
        }
        if (!group.pictures.isEmpty() && own != size)
            return {{}, {}, paths};
        size = own;
        group.pictures << path;
    }
    if (group.pictures.size() < 2)
        return {{}, {}, paths};
    group.name = stemOf(group.pictures.first());
    return group;
}
