#include "flipbook/outputfile.h"

#include "flipbook/failure.h"
#include "flipbook/sourcefile.h"

#include <QtCore/QDir>
#include <QtCore/QFileInfo>
#include <QtCore/QSaveFile>
#include <QtGui/QImageWriter>

namespace
{

void open(QSaveFile &file)
{
    if (!file.open(QIODevice::WriteOnly))
        throw Failure{file.fileName(), QStringLiteral("cannot be written: ") + file.errorString()};
}

void commit(QSaveFile &file)
{
    if (!file.commit())
        throw Failure{file.fileName(), QStringLiteral("cannot be written: ") + file.errorString()};
}

} // namespace

void checkOutput(const QString &path, const QStringList &inputs)
{
    for (const QString &input : inputs) {
        if (isSameFile(path, input))
            throw Failure{path, QStringLiteral("is an input; it is not overwritten")};
    }
    const QFileInfo info(path);
    if (info.isDir())
        throw Failure{path, QStringLiteral("is a folder")};
    if (isSpecialFile(path))
        throw Failure{path, QStringLiteral("is no regular file")};
    if (!info.absoluteDir().exists())
        throw Failure{path, QStringLiteral("its folder does not exist")};
}

void writePng(const QString &path, const QImage &image)
{
    QSaveFile file(path);
    open(file);
    QImageWriter writer(&file, "png");
    if (!writer.write(image) && file.error() == QFileDevice::NoError)
        throw Failure{path, QStringLiteral("cannot be written: ") + writer.errorString()};
    commit(file);
}

void writeFile(const QString &path, const QByteArray &bytes)
{
    QSaveFile file(path);
    open(file);
    file.write(bytes);
    commit(file);
}
