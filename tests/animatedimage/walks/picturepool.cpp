#include "tests/animatedimage/walks/picturepool.h"

#include "framework/document.h"
#include "tests/animatedimage/region/slowregion.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonObject>

namespace
{

constexpr int markerSize = 4;
constexpr int thumbnailSide = 150;
constexpr int regionSide = 256;

QByteArray streamBytes(const QImage &image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << image;
    return bytes;
}

/// Pixels from a formula that leaves holes, half transparent places and full rows.
QImage drawn(int width, int height, unsigned seed, QImage::Format format)
{
    QImage image(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            seed = seed * 1103515245U + 12345U;
            const unsigned alpha = (seed >> 29) < 3 ? 0U : (seed >> 16) & 0xffU;
            image.setPixel(x, y, (alpha << 24) | ((seed >> 8) & 0xffffffU));
        }
    }
    return image.convertToFormat(format);
}

QImage solid(int width, int height, QRgb color, QImage::Format format)
{
    QImage image(width, height, format);
    image.fill(color);
    return image;
}

} // namespace

PicturePool &PicturePool::instance()
{
    static PicturePool pool;
    return pool;
}

PicturePool::PicturePool()
{
    number(QImage());
    const auto add = [this](const QImage &image) { m_narrow.append(number(image)); };
    m_narrow.append(Null);
    add(drawn(6, 1, 1, QImage::Format_ARGB32));
    add(drawn(1, 6, 2, QImage::Format_ARGB32));
    add(drawn(5, 1, 3, QImage::Format_ARGB32));
    add(drawn(4, 1, 4, QImage::Format_Grayscale8));
    add(drawn(6, 1, 5, QImage::Format_Indexed8));
    add(drawn(1, 4, 8, QImage::Format_RGB16));
    add(drawn(5, 1, 10, QImage::Format_RGB888));
    add(solid(1, 5, qRgb(9, 8, 7), QImage::Format_RGB32));
    // Eight pixels wide: what fills the last byte of a row is left to chance.
    add(drawn(8, 1, 11, QImage::Format_Mono));
    m_square.append(number(drawn(6, 6, 9, QImage::Format_ARGB32)));
    m_square.append(number(solid(4, 3, qRgb(10, 200, 30), QImage::Format_ARGB32)));
    m_square.append(number(drawn(2, 5, 6, QImage::Format_ARGB32_Premultiplied)));
    m_square.append(number(solid(1, 1, qRgba(1, 2, 3, 4), QImage::Format_ARGB32)));
    m_square.append(number(drawn(5, 4, 7, QImage::Format_Indexed8)));
    QImage dense = drawn(4, 2, 12, QImage::Format_ARGB32);
    dense.setDevicePixelRatio(2.0);
    m_square.append(number(dense));
    m_large.append(number(drawn(300, 2, 13, QImage::Format_ARGB32)));
    m_large.append(number(drawn(300, 230, 14, QImage::Format_ARGB32)));
    m_large.append(number(drawn(260, 260, 15, QImage::Format_Grayscale8)));
}

int PicturePool::number(const QImage &image)
{
    const QByteArray bytes = streamBytes(image);
    const QByteArray key = bytes + ' ' + QByteArray::number(image.format()) + ' ' +
                           QByteArray::number(image.devicePixelRatio());
    const auto known = m_numbers.constFind(key);
    if (known != m_numbers.constEnd())
        return *known;
    const int next = int(m_entries.size());
    m_entries.push_back({});
    m_entries.back().image = image;
    m_entries.back().png = bytes.mid(markerSize);
    measure(m_entries.back());
    m_numbers.insert(key, next);
    return next;
}

void PicturePool::measure(Entry &entry)
{
    QImage measured = entry.image;
    if (measured.width() * measured.height() > regionSide * regionSide)
        measured =
            measured.scaled(regionSide, regionSide, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    entry.rects = SlowRegion::rectsFromImage(measured, 1);
    entry.regionSize = measured.size();
}

const QList<QRect> &PicturePool::rects(int number)
{
    return entry(number).rects;
}

QSize PicturePool::regionSize(int number)
{
    return entry(number).regionSize;
}

int PicturePool::thumbnail(int number)
{
    if (entry(number).thumbnail == Unknown) {
        const QImage reduced = image(number).scaled(thumbnailSide, thumbnailSide,
                                                    Qt::KeepAspectRatio, Qt::FastTransformation);
        entry(number).thumbnail = this->number(reduced);
    }
    return entry(number).thumbnail;
}

int PicturePool::streamed(int number)
{
    if (entry(number).streamed == Unknown) {
        QDataStream stream(streamBytes(image(number)));
        QImage read;
        stream >> read;
        entry(number).streamed = this->number(read);
    }
    return entry(number).streamed;
}

int PicturePool::stored(int number)
{
    if (entry(number).stored == Unknown) {
        Document document;
        QJsonObject json;
        QList<QImage> list{image(number)};
        document.jsonImageList(json, list, QStringLiteral("one"), true);
        document.jsonImageList(json, list, QStringLiteral("one"), false);
        entry(number).stored = this->number(list.value(0));
    }
    return entry(number).stored;
}

int PicturePool::plain(int number)
{
    if (entry(number).plain == Unknown) {
        QImage copy = image(number);
        copy.setDevicePixelRatio(1.0);
        entry(number).plain = this->number(copy);
    }
    return entry(number).plain;
}

int PicturePool::filled(const QSize &size, QImage::Format format, QRgb color)
{
    const quint64 key =
        (quint64(format) << 60) | (quint64(size.width()) << 30) | quint64(size.height());
    const auto known = m_filled.constFind(key);
    if (known != m_filled.constEnd())
        return *known;
    const int found = number(solid(size.width(), size.height(), color, format));
    m_filled.insert(key, found);
    return found;
}

int PicturePool::blank(const QSize &size)
{
    return filled(size, QImage::Format_ARGB32, qRgba(255, 255, 255, 0));
}

int PicturePool::white(const QSize &size)
{
    return filled(size, QImage::Format_RGB32, qRgb(255, 255, 255));
}
