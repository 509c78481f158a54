#include "flipbook/base/outputfile.h"

#include "flipbook/base/compactpng.h"
#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/stagedfile.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>

#include <sys/stat.h>

namespace
{

/// Whether @p one and @p other lead to the same file or folder, by any path or link.
bool isSameFile(const QString &one, const QString &other)
{
    struct stat first = {};
    struct stat second = {};
    return ::stat(QFile::encodeName(one).constData(), &first) == 0 &&
           ::stat(QFile::encodeName(other).constData(), &second) == 0 &&
           first.st_dev == second.st_dev && first.st_ino == second.st_ino;
}

/// Whether a pipe, a socket or a device is at @p path.
bool isSpecialFile(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 && !S_ISREG(status.st_mode) &&
           !S_ISDIR(status.st_mode);
}

[[noreturn]] void refuseInput(const QString &path)
{
    throw Failure{path, QStringLiteral("is an input; it is not overwritten")};
}

/// @p png, which is empty when it could not be made.
QByteArray written(const QByteArray &png, const QString &path)
{
    if (png.isEmpty())
        throw Failure{path, QStringLiteral("its picture cannot be written")};
    return png;
}

} // namespace

void checkOutput(const QString &path, const QStringList &inputs)
{
    for (const QString &input : inputs) {
        if (isSameFile(path, input))
            refuseInput(path);
    }
    const QFileInfo info(path);
    if (info.isDir())
        throw Failure{path, QStringLiteral("is a folder")};
    if (isSpecialFile(path))
        throw Failure{path, QStringLiteral("is not a regular file")};
    // Not the cleaned path: with a link before "..", it leads elsewhere.
    if (!QFileInfo(info.path()).isDir())
        throw Failure{path, QStringLiteral("its folder does not exist")};
}

void checkOutput(const QString &path, const Reading &reading)
{
    if (reading.hasRead(path))
        refuseInput(path);
    checkOutput(path, QStringList());
}

bool isSameOutput(const QString &one, const QString &other)
{
    const QFileInfo first(StagedFile::targetOf(one));
    const QFileInfo second(StagedFile::targetOf(other));
    return first.fileName() == second.fileName() && isSameFile(first.path(), second.path());
}

QByteArray pngOf(const QImage &image, const QString &path)
{
    return written(encodedPng(image), path);
}

void writePng(const QString &path, const QImage &image)
{
    writeFile(path, pngOf(image, path));
}

void writeCompactPng(const QString &path, const QImage &image)
{
    writeFile(path, written(compactPng(image, PngEffort::Least), path));
}

void writeFile(const QString &path, const QByteArray &bytes, IfExists ifExists)
{
    StagedFile file(path);
    file.write(bytes);
    if (ifExists == IfExists::Replace)
        file.replace();
    else
        file.create();
}
