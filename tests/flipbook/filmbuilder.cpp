#include "tests/flipbook/filmbuilder.h"

#include "tests/flipbook/bombs.h"

#include <QtCore/QHash>
#include <QtCore/QtEndian>

#include <webp/encode.h>

namespace
{

QByteArray number(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

QByteArray shortNumber(int value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(quint16(value), bytes.data());
    return bytes;
}

/// The rows of a picture, unfiltered and compressed, without Qt's length in front.
QByteArray compressed(const QImage &picture)
{
    const QImage rgba = picture.convertToFormat(QImage::Format_RGBA8888);
    QByteArray rows;
    for (int y = 0; y < rgba.height(); ++y) {
        rows += '\0';
        rows += QByteArray(reinterpret_cast<const char *>(rgba.constScanLine(y)), rgba.width() * 4);
    }
    return qCompress(rows, 1).mid(4);
}

QByteArray control(int sequence, const FilmFrame &frame)
{
    return number(quint32(sequence)) + number(quint32(frame.picture.width())) +
           number(quint32(frame.picture.height())) + number(quint32(frame.place.x())) +
           number(quint32(frame.place.y())) + shortNumber(frame.delay) +
           shortNumber(frame.divisor) + char(frame.disposal) + char(frame.blends ? 1 : 0);
}

/// @p count bytes of @p value, the least significant first.
QByteArray little(quint32 value, int count)
{
    QByteArray bytes;
    for (int i = 0; i < count; ++i)
        bytes += char((value >> (8 * i)) & 0xff);
    return bytes;
}

QByteArray riffChunk(const char *type, const QByteArray &content)
{
    QByteArray chunk = type + little(quint32(content.size()), 4) + content;
    if (content.size() % 2 == 1)
        chunk += '\0';
    return chunk;
}

/// What comes after the header of the file.
QByteArray encoded(const QImage &picture)
{
    const QImage argb = picture.convertToFormat(QImage::Format_ARGB32);
    WebPConfig config;
    WebPConfigInit(&config);
    config.lossless = 1;
    config.exact = 1;
    // As fast as possible.
    config.method = 0;
    config.quality = 0;
    WebPPicture image;
    WebPPictureInit(&image);
    image.use_argb = 1;
    image.width = argb.width();
    image.height = argb.height();
    WebPPictureImportBGRA(&image, argb.constBits(), argb.bytesPerLine());
    WebPMemoryWriter writer;
    WebPMemoryWriterInit(&writer);
    image.writer = WebPMemoryWrite;
    image.custom_ptr = &writer;
    WebPEncode(&config, &image);
    const QByteArray file(reinterpret_cast<const char *>(writer.mem), int(writer.size));
    WebPMemoryWriterClear(&writer);
    WebPPictureFree(&image);
    return file.mid(12);
}

QByteArray riffFile(const QByteArray &chunks)
{
    return "RIFF" + little(quint32(chunks.size() + 4), 4) + "WEBP" + chunks;
}

} // namespace

ApngBuilder &ApngBuilder::still(const QImage &picture)
{
    m_still = picture;
    return *this;
}

ApngBuilder &ApngBuilder::add(const FilmFrame &frame)
{
    m_frames.append(frame);
    return *this;
}

ApngBuilder &ApngBuilder::announce(int frames)
{
    m_announced = frames;
    return *this;
}

QByteArray ApngBuilder::data() const
{
    QByteArray file("\x89PNG\r\n\x1a\n", 8);
    file += Bombs::pngChunk("IHDR", number(quint32(m_canvas.width())) +
                                        number(quint32(m_canvas.height())) +
                                        QByteArray::fromHex("0806000000"));
    const int announced = m_announced < 0 ? m_frames.size() : m_announced;
    file += Bombs::pngChunk("acTL", number(quint32(announced)) + number(quint32(m_plays)));
    if (!m_still.isNull())
        file += Bombs::pngChunk("IDAT", compressed(m_still));
    int sequence = 0;
    QHash<qint64, QByteArray> known;
    for (int i = 0; i < m_frames.size(); ++i) {
        const FilmFrame &frame = m_frames.at(i);
        file += Bombs::pngChunk("fcTL", control(sequence++, frame));
        QByteArray &picture = known[frame.picture.cacheKey()];
        if (picture.isEmpty())
            picture = compressed(frame.picture);
        if (i == 0 && m_still.isNull())
            file += Bombs::pngChunk("IDAT", picture);
        else
            file += Bombs::pngChunk("fdAT", number(quint32(sequence++)) + picture);
    }
    return file + Bombs::pngChunk("IEND", QByteArray());
}

QByteArray webpFilm(const QSize &canvas, int loops, const QVector<FilmFrame> &frames)
{
    // Animation and alpha.
    QByteArray chunks =
        riffChunk("VP8X", QByteArray::fromHex("12000000") + little(quint32(canvas.width() - 1), 3) +
                              little(quint32(canvas.height() - 1), 3));
    chunks += riffChunk("ANIM", little(0, 4) + little(quint32(loops), 2));
    QHash<qint64, QByteArray> known;
    for (const FilmFrame &frame : frames) {
        QByteArray &picture = known[frame.picture.cacheKey()];
        if (picture.isEmpty())
            picture = encoded(frame.picture);
        const int flags = (frame.blends ? 0 : 2) + (frame.disposal == 1 ? 1 : 0);
        chunks += riffChunk("ANMF", little(quint32(frame.place.x() / 2), 3) +
                                        little(quint32(frame.place.y() / 2), 3) +
                                        little(quint32(frame.picture.width() - 1), 3) +
                                        little(quint32(frame.picture.height() - 1), 3) +
                                        little(quint32(frame.delay), 3) +
                                        little(quint32(flags), 1) + picture);
    }
    return riffFile(chunks);
}

QByteArray webpPicture(const QImage &picture)
{
    return riffFile(encoded(picture));
}

QImage pixelRow(std::initializer_list<QRgb> colours)
{
    QImage row(int(colours.size()), 1, QImage::Format_ARGB32);
    int x = 0;
    for (const QRgb colour : colours)
        row.setPixel(x++, 0, colour);
    return row;
}

QVector<QRgb> pixelsOf(const QImage &picture)
{
    const QImage argb = picture.convertToFormat(QImage::Format_ARGB32);
    QVector<QRgb> pixels;
    for (int y = 0; y < argb.height(); ++y) {
        for (int x = 0; x < argb.width(); ++x)
            pixels.append(argb.pixel(x, y));
    }
    return pixels;
}
