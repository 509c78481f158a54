#include "flipbook/import/picturefacts.h"

#include "flipbook/base/memorybudget.h"
#include "flipbook/base/saturating.h"
#include "flipbook/import/gifdescriptors.h"
#include "flipbook/import/jpegmarkers.h"
#include "flipbook/import/pngchunks.h"
#include "flipbook/import/pngheader.h"
#include "flipbook/import/webpfile.h"

#include <QtGui/QImageReader>

namespace
{

// Measured: a text is in memory as it was stored, as a value, and as a part of a description.
constexpr qint64 CopiesOfText = 4;
constexpr qint64 CopiesOfTextWhileDecoding = 2;

constexpr qint64 BytesPerPixel = 4;

qint64 bytesOf(const QSize &size, qint64 bytesPerPixel)
{
    return Saturating::product(qint64(size.width()) * size.height(), bytesPerPixel);
}

void takeText(PictureFacts &facts, qint64 bytes)
{
    facts.textBytes = Saturating::product(bytes, CopiesOfText);
    facts.workBytes =
        Saturating::sum(facts.workBytes, Saturating::product(bytes, CopiesOfTextWhileDecoding));
}

void readPng(PictureFacts &facts, QIODevice &device, qint64 mostMemory)
{
    const auto header = PngHeader::read(device.peek(PngHeader::Length));
    if (!header)
        return;
    const PngChunks chunks = PngChunks::read(device, mostMemory / CopiesOfText);
    if (!chunks.isComplete)
        return;
    facts.pixelBytes = header->decodedBytes();
    takeText(facts, chunks.textBytes);
}

void readJpeg(PictureFacts &facts, QIODevice &device)
{
    // Written by no program, but each scan takes the decoder as long as a whole picture.
    constexpr int mostScans = 100;
    const auto markers = JpegMarkers::read(device);
    if (!markers || markers->scans > mostScans)
        return;
    facts.pixelBytes = bytesOf(markers->size, BytesPerPixel);
    if (markers->isProgressive || markers->scans > 1) {
        // All coefficients, of blocks that may reach beyond the picture.
        constexpr int blockSide = 32;
        constexpr qint64 bytesPerCoefficient = 2;
        facts.workBytes = bytesOf(markers->size + QSize(blockSide, blockSide),
                                  bytesPerCoefficient * markers->components);
    }
    takeText(facts, markers->commentBytes);
}

void readGif(PictureFacts &facts, QIODevice &device)
{
    // The decoder's own answer for the size of a GIF does not hold for large screens.
    const GifDescriptors gif = readGifDescriptors(device);
    facts.pixelBytes = MemoryBudget::keptForFilm(gif.screen, 1);
    facts.workBytes =
        MemoryBudget::neededForFilm(gif.screen, 1, gif.workingPictures()) - facts.pixelBytes;
    facts.leavesPixelsUnset = gif.leavesScreenUnset;
}

void readWebp(PictureFacts &facts, QIODevice &device)
{
    // Of a film the first frame, and the canvas that it is put on.
    constexpr qint64 workingPictures = 3;
    const auto size = WebpFile::sizeOf(device.peek(WebpFile::StartLength));
    if (!size)
        return;
    facts.pixelBytes = bytesOf(*size, BytesPerPixel);
    facts.workBytes =
        Saturating::sum(bytesOf(*size, BytesPerPixel * workingPictures), device.size());
}

void readOther(PictureFacts &facts, QIODevice &device)
{
    QImageReader reader(&device);
    reader.setAutoDetectImageFormat(false);
    reader.setFormat(facts.format.readerName());
    const QSize size = reader.size();
    if (!size.isEmpty())
        facts.pixelBytes = bytesOf(size, BytesPerPixel);
    facts.leavesPixelsUnset = facts.format.kind() == PictureFormat::Bmp;
}

} // namespace

qint64 PictureFacts::keptBytes() const
{
    return Saturating::sum(pixelBytes, textBytes);
}

qint64 PictureFacts::neededBytes() const
{
    return Saturating::sum(keptBytes(), workBytes);
}

PictureFacts PictureFacts::read(QIODevice &device, qint64 mostMemory)
{
    PictureFacts facts;
    facts.format = PictureFormat::of(device.peek(PictureFormat::StartLength));
    switch (facts.format.kind()) {
    case PictureFormat::Png:
        readPng(facts, device, mostMemory);
        break;
    case PictureFormat::Jpeg:
        readJpeg(facts, device);
        break;
    case PictureFormat::Gif:
        readGif(facts, device);
        break;
    case PictureFormat::Webp:
        readWebp(facts, device);
        break;
    case PictureFormat::Bmp:
    case PictureFormat::Netpbm:
        readOther(facts, device);
        break;
    case PictureFormat::Unknown:
        break;
    }
    return facts;
}
