#include "flipbook/import/apngfilm.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/import/apngchunks.h"

#include <QtCore/QBuffer>
#include <QtCore/QtEndian>
#include <QtGui/QImageReader>

namespace
{

/// The frame as a PNG file of its own.
QByteArray assembled(const QByteArray &file, const ApngChunks &chunks, const ApngFrame &frame)
{
    QByteArray header = chunks.header;
    qToBigEndian(quint32(frame.place.width()), header.data());
    qToBigEndian(quint32(frame.place.height()), header.data() + 4);
    QByteArray png("\x89PNG\r\n\x1a\n", 8);
    png += pngChunk("IHDR", header) + chunks.colours;
    for (const ApngFrame::Piece &piece : frame.pieces)
        png += pngChunk("IDAT", file.mid(piece.offset, piece.length));
    return png + pngChunk("IEND", QByteArray());
}

QImage decoded(QByteArray png)
{
    QBuffer buffer(&png);
    QImageReader reader(&buffer, "png");
    return reader.read();
}

/// The canvas, what a frame replaces, and a frame as it is decoded and in the format of the canvas.
int workingPictures(const ApngChunks &chunks)
{
    return chunks.isDeep ? 5 : 4;
}

QString warningOf(const ApngChunks &chunks, int whole, const QString &damage)
{
    if (!damage.isEmpty())
        return QStringLiteral("%1: %2 of %3 frames could be read completely")
            .arg(damage, QString::number(whole), QString::number(chunks.announced));
    return QStringLiteral("it announces %1 but has %2")
        .arg(frameCountText(chunks.announced), QString::number(whole));
}

} // namespace

DecodedFilm readApng(const QByteArray &file, const QString &path, MemoryAccount &memory,
                     const Steps &steps)
{
    // The file, the list of its chunks, and a frame that is assembled of them.
    const qint64 bytes = 4 * qint64(file.size());
    memory.require(bytes, path, QStringLiteral("the description of its frames"));
    const ApngChunks chunks = ApngChunks::read(file);
    const int frames = chunks.frames.size();
    requireFilm(memory, path, chunks.canvas, frames, workingPictures(chunks), bytes);
    DecodedFilm film;
    film.format = QStringLiteral("APNG");
    film.loopCount = chunks.plays == 0 ? -1 : int(qMin(chunks.plays, 0x7fffffffU) - 1);
    QString damage = chunks.damage;
    FilmCanvas canvas(frames > 0 ? chunks.canvas : QSize(1, 1));
    for (const ApngFrame &frame : chunks.frames) {
        const QImage picture = decoded(assembled(file, chunks, frame));
        if (picture.size() != frame.place.size()) {
            damage = QStringLiteral("frame %1 is damaged").arg(film.pictures.size() + 1);
            break;
        }
        film.pictures.append(
            canvas.show(picture, frame.place.topLeft(), frame.blend, frame.disposal));
        film.delaysMs.append(shownMs(frame.delayMs));
        tellStep(steps, film.pictures.size(), frames);
    }
    const int whole = film.pictures.size();
    if (whole == 0)
        throw Failure{path, QStringLiteral("an APNG of which no frame could be read: ") +
                                (damage.isEmpty() ? QStringLiteral("it has none") : damage)};
    if (!damage.isEmpty() || quint32(whole) != chunks.announced)
        film.warnings << warningOf(chunks, whole, damage);
    memory.take(MemoryBudget::keptForFilm(chunks.canvas, whole));
    return film;
}
