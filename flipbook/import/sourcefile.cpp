#include "flipbook/import/sourcefile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"

QString plainPath(const QString &path)
{
    return path.startsWith(QLatin1Char(':')) ? QStringLiteral("./") + path : path;
}

bool isStandardInput(const QString &path)
{
    return path == Reading::StandardInput;
}

SourceKind kindOf(const Source &source, const QString &path)
{
    if (source.isFolder())
        return SourceKind::FrameFolder;
    const QByteArray start = source.file->peek(6);
    if (start.isEmpty()) {
        if (source.file->error() != QFileDevice::NoError)
            throw Failure{path, source.file->errorString()};
        throw Failure{path, QStringLiteral("the file is empty")};
    }
    if (start == "GIF87a" || start == "GIF89a")
        return SourceKind::Gif;
    if (path.endsWith(QLatin1String(".flipbook"), Qt::CaseInsensitive) ||
        start.startsWith("PK\x03\x04") || start.startsWith("PK\x05\x06"))
        return SourceKind::Document;
    return SourceKind::OtherFile;
}

QByteArray contentOf(QFile &file, const QString &path, const MemoryAccount &memory)
{
    const qint64 size = file.size();
    memory.require(size, path, QStringLiteral("the bytes of the file alone"));
    return file.read(size);
}
