#include "tests/flipbook/bombs.h"

#include "flipbook/document/documentarchive.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QtEndian>

#include <zlib.h>

namespace
{

QByteArray bigEndian(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(number, bytes.data());
    return bytes;
}

QByteArray little16(int number)
{
    QByteArray bytes(2, '\0');
    qToLittleEndian(quint16(number), bytes.data());
    return bytes;
}

QByteArray little32(quint32 number)
{
    QByteArray bytes(4, '\0');
    qToLittleEndian(number, bytes.data());
    return bytes;
}

QByteArray deflated(const QByteArray &bytes)
{
    return qCompress(bytes, 9).mid(4); // without the length that Qt puts before
}

/// Transparent pixels of @p size, deflated without ever being there as a whole.
QByteArray deflatedPixels(const QSize &size)
{
    const QByteArray row(1 + size.width() * 4, '\0');
    QByteArray out(int(compressBound(uLong(row.size())) + 1024), '\0');
    QByteArray all;
    z_stream stream = {};
    deflateInit(&stream, 9);
    for (int y = 0; y < size.height(); ++y) {
        stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(row.constData()));
        stream.avail_in = uInt(row.size());
        stream.next_out = reinterpret_cast<Bytef *>(out.data());
        stream.avail_out = uInt(out.size());
        deflate(&stream, y + 1 == size.height() ? Z_FINISH : Z_NO_FLUSH);
        all.append(out.constData(), out.size() - int(stream.avail_out));
    }
    deflateEnd(&stream);
    return all;
}

QByteArray pngOf(const QSize &size, const QVector<QByteArray> &chunks, const QByteArray &pixels)
{
    QByteArray header = bigEndian(quint32(size.width())) + bigEndian(quint32(size.height()));
    header += QByteArray::fromHex("0806000000"); // eight bits, with alpha
    QByteArray png("\x89PNG\r\n\x1a\n");
    png += Bombs::pngChunk("IHDR", header);
    for (const QByteArray &chunk : chunks)
        png += chunk;
    return png + Bombs::pngChunk("IDAT", pixels) + Bombs::pngChunk("IEND", {});
}

} // namespace

QByteArray Bombs::pngChunk(const char *type, const QByteArray &data)
{
    const QByteArray body = type + data;
    const auto sum = crc32(0, reinterpret_cast<const Bytef *>(body.constData()), uInt(body.size()));
    return bigEndian(quint32(data.size())) + body + bigEndian(quint32(sum));
}

QByteArray Bombs::png(const QSize &size, const QVector<QByteArray> &chunks)
{
    return pngOf(size, chunks, deflatedPixels(size));
}

QByteArray Bombs::claimingPng(int width, int height)
{
    return pngOf({width, height}, {}, deflated(QByteArray(8, '\0')));
}

QByteArray Bombs::checkerboard(int side, int odd)
{
    QByteArray pixels;
    for (int y = 0; y < side; ++y) {
        pixels += QByteArray(1, '\0');
        for (int x = 0; x < side; ++x)
            pixels += QByteArray(4, (x + y + odd) % 2 == 0 ? '\0' : '\xff');
    }
    return pngOf({side, side}, {}, deflated(pixels));
}

QByteArray Bombs::compressedText(int length)
{
    return pngChunk("zTXt", QByteArray("Comment\0\0", 9) + deflated(QByteArray(length, 'a')));
}

QByteArray Bombs::colourProfile(int length)
{
    return pngChunk("iCCP", QByteArray("p\0\0", 3) + deflated(QByteArray(length, '\0')));
}

QByteArray Bombs::text(int length, char letter)
{
    return pngChunk("tEXt", QByteArray("Comment\0", 8) + QByteArray(length, letter));
}

QString Bombs::digest(const QByteArray &png)
{
    return QString::fromLatin1(QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex());
}

QJsonObject Bombs::stateWith(const QVector<QByteArray> &frames)
{
    QJsonArray images;
    for (const QByteArray &frame : frames)
        images.append(QJsonObject{{QStringLiteral("digest"), digest(frame)}});
    return {{QStringLiteral("ImageList"), images}};
}

void Bombs::writeDocument(const QString &path, const QVector<QJsonObject> &states,
                          const QVector<QByteArray> &pictures)
{
    QJsonArray objects;
    for (const QJsonObject &state : states)
        objects.append(QJsonObject{{QStringLiteral("kind"), QStringLiteral("animated image")},
                                   {QStringLiteral("layer"), QStringLiteral("normal")},
                                   {QStringLiteral("state"), state}});
    const QJsonObject page = {{QStringLiteral("rect"), QJsonArray{0, 0, 200, 100}},
                              {QStringLiteral("objects"), objects}};
    const QJsonObject root = {{QStringLiteral("format"), QStringLiteral("flipbook document")},
                              {QStringLiteral("version"), 1},
                              {QStringLiteral("pages"), QJsonArray{page}}};
    QMap<QString, QByteArray> files;
    for (const QByteArray &picture : pictures)
        files.insert(digest(picture), picture);
    DocumentArchive::write(path, QJsonDocument(root).toJson(QJsonDocument::Compact), files);
}

void Bombs::writeDocument(const QString &path, const QByteArray &text)
{
    DocumentArchive::write(path, text, {});
}

void Bombs::writeFolder(const QString &path, const QByteArray &picture, int count)
{
    QDir().mkpath(path);
    writeBytes(path + QStringLiteral("/a.png"), picture);
    QByteArray list = QByteArray(R"({"filename":"a.png"},)").repeated(count);
    list.chop(1);
    writeBytes(path + QStringLiteral("/config.json"), R"({"ImageList":[)" + list + "]}");
}

QByteArray Bombs::manyDots(int frames)
{
    const QByteArray film = GifBuilder(1, 1).add({QRect(0, 0, 1, 1), 1}).data();
    // The frame is between the palette, which ends at the 25th byte, and the trailer.
    const QByteArray frame = film.mid(25, film.size() - 26);
    return film.left(25) + frame.repeated(frames) + QByteArray(1, ';');
}

QByteArray Bombs::checkerboardFilm(int side, int frames)
{
    GifBuilder film(side, side);
    for (int number = 0; number < frames; ++number) {
        constexpr int transparent = 3;
        GifBuilder::Frame frame;
        frame.rect = QRect(0, 0, side, side);
        frame.disposal = GifBuilder::RestoreBackground;
        frame.transparentIndex = transparent;
        frame.colorAt = [side, number](int pixel) {
            return (pixel % side + pixel / side + number) % 2 == 0 ? 0 : transparent;
        };
        film.add(frame);
    }
    return film.data();
}

QByteArray Bombs::manyEntries(int entries)
{
    // Not by a library: these compare each name with all before it.
    QByteArray files;
    QByteArray directory;
    const auto add = [&files, &directory](const QByteArray &name, const QByteArray &content) {
        const auto sum =
            crc32(0, reinterpret_cast<const Bytef *>(content.constData()), uInt(content.size()));
        const QByteArray common =
            little16(20) + little16(0).repeated(3) + little16(33) + little32(quint32(sum)) +
            little32(quint32(content.size())).repeated(2) + little16(name.size()) + little16(0);
        directory += "PK\1\2" + little16(20) + common + QByteArray(10, '\0') +
                     little32(quint32(files.size())) + name;
        files += "PK\3\4" + common + name + content;
    };
    add("document.json", R"({"format": "flipbook document", "version": 1, "pages": []})");
    for (int i = 0; i < entries; ++i)
        add(QByteArray::number(i), {});
    return files + directory + "PK\5\6" + little32(0) + little16(entries + 1).repeated(2) +
           little32(quint32(directory.size())) + little32(quint32(files.size())) + little16(0);
}
