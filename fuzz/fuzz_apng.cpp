#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/import/apngchunks.h"
#include "flipbook/import/apngfilm.h"
#include "fuzz/fuzzing.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>

namespace
{

/// The file with the check sums that its chunks should have.
QByteArray withCheckSums(QByteArray file)
{
    qint64 at = 8;
    while (at + 12 <= file.size()) {
        const qint64 length = qFromBigEndian<quint32>(file.constData() + at);
        if (length > file.size() - at - 12)
            break;
        const QByteArray chunk =
            pngChunk(file.mid(int(at) + 4, 4).constData(), file.mid(int(at) + 8, int(length)));
        file.replace(int(at), chunk.size(), chunk);
        at += chunk.size();
    }
    return file;
}

} // namespace

/// An animated PNG file: its frames are read, or refused, within the memory allowed. Check sums are
/// made right first, since hardly any change would get past them.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    QByteArray file = withCheckSums(Fuzzing::bytes(data, size));
    QBuffer buffer(&file);
    buffer.open(QIODevice::ReadOnly);
    const bool isAnimated = ApngChunks::announces(buffer);
    try {
        MemoryAccount memory(Fuzzing::MaxMemory);
        const DecodedFilm film = readApng(file, QStringLiteral("film.png"), memory);
        Fuzzing::require(isAnimated || film.pictures.isEmpty() || !film.warnings.isEmpty(),
                         "frames in a file that announces none");
        qint64 decoded = 0;
        for (const QImage &picture : film.pictures)
            decoded += picture.sizeInBytes();
        Fuzzing::require(decoded <= Fuzzing::MaxMemory, "more memory than was allowed");
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
