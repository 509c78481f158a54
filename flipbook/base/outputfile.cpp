#include "flipbook/base/outputfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"

#include <QtCore/QBuffer>
#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtGui/QImageWriter>

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

/// A disk that fills up takes a part; only the next write reports the reason.
bool isAllWritten(QIODevice &device, const QByteArray &bytes)
{
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 written = device.write(bytes.constData() + done, bytes.size() - done);
        if (written <= 0)
            return false;
        done += written;
    }
    return true;
}

[[noreturn]] void refuseInput(const QString &path)
{
    throw Failure{path, QStringLiteral("is an input; it is not overwritten")};
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
    if (!info.absoluteDir().exists())
        throw Failure{path, QStringLiteral("its folder does not exist")};
}

void checkOutput(const QString &path, const Reading &reading)
{
    if (reading.hasRead(path))
        refuseInput(path);
    checkOutput(path, QStringList());
}

void writePng(const QString &path, const QImage &image)
{
    // Encoded in memory first: QImageWriter does not report a full disk.
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(image))
        throw Failure{path, QStringLiteral("cannot be written: ") + writer.errorString()};
    writeFile(path, buffer.data());
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    // A buffer would be flushed by commit(), which does not notice when that fails.
    const bool isOpen = file.open(QIODevice::WriteOnly | QIODevice::Unbuffered);
    if (!isOpen || !isAllWritten(file, bytes) || !file.commit())
        throw Failure{path, QStringLiteral("cannot be written: ") + file.errorString()};
}

void prepareOutputFolder(const QString &path)
{
    QString folder = path;
    // With a slash at its end a path would name what is in the folder.
    while (folder.size() > 1 && folder.endsWith(QLatin1Char('/')))
        folder.chop(1);
    const QFileInfo info(folder);
    if (info.exists()) {
        if (!info.isDir())
            throw Failure{path, QStringLiteral("is not a folder")};
        if (!QDir(folder).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::System |
                                  QDir::NoDotAndDotDot))
            throw Failure{path, QStringLiteral("is a folder that is not empty")};
        return;
    }
    if (!info.absoluteDir().exists())
        throw Failure{path, QStringLiteral("its folder does not exist")};
    if (!QDir().mkdir(folder))
        throw Failure{path, QStringLiteral("the folder cannot be made")};
}
