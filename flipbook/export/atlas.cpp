#include "flipbook/export/atlas.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/saturating.h"
#include "flipbook/base/version.h"
#include "flipbook/export/atlaslayout.h"
#include "flipbook/export/outgoingfilm.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>

#include <algorithm>
#include <new>

namespace
{

constexpr qint64 BytesPerPixel = 4;

const QRgb *row(const QImage &picture, int y)
{
    return reinterpret_cast<const QRgb *>(picture.constScanLine(y));
}

/// The smallest rectangle with all pixels that are not fully transparent; one pixel without them.
QRect opaqueRect(const QImage &picture)
{
    QRect all;
    for (int y = 0; y < picture.height(); ++y) {
        const QRgb *begin = row(picture, y);
        const QRgb *end = begin + picture.width();
        const auto isVisible = [](QRgb pixel) { return qAlpha(pixel) != 0; };
        const QRgb *first = std::find_if(begin, end, isVisible);
        if (first == end)
            continue;
        const QRgb *last = end - 1;
        while (!isVisible(*last))
            --last;
        all |= QRect(QPoint(int(first - begin), y), QPoint(int(last - begin), y));
    }
    return all.isEmpty() ? QRect(0, 0, 1, 1) : all;
}

/// The same for equal pixels of one size, and for no others.
QByteArray digestOf(const QImage &picture, const QRect &rect)
{
    QCryptographicHash hash(QCryptographicHash::Sha256);
    for (int y = rect.top(); y <= rect.bottom(); ++y)
        hash.addData(reinterpret_cast<const char *>(row(picture, y) + rect.left()),
                     rect.width() * int(sizeof(QRgb)));
    return hash.result() + QByteArray::number(rect.width());
}

class Packer
{
public:
    Packer(const OutgoingFilm &film, const MemoryAccount &memory, const QString &path)
        : m_film(film)
        , m_memory(memory)
        , m_path(path)
    {
    }

    Atlas pack(Trimming trimming, const FilmProgress &progress);

private:
    void measure(Trimming trimming, const FilmProgress &progress);
    void place(Atlas &atlas);
    void draw(Atlas &atlas, const FilmProgress &progress) const;

    const OutgoingFilm &m_film;
    const MemoryAccount &m_memory;
    const QString m_path;
    QVector<QRect> m_rects;   ///< of each frame in its picture
    QVector<int> m_pictures;  ///< which of the different pictures each frame has
    QVector<QSize> m_sizes;   ///< of the different pictures
    QVector<int> m_firstUses; ///< the first frame that has each of them
};

void Packer::measure(Trimming trimming, const FilmProgress &progress)
{
    m_memory.require(m_film.workingBytes(), m_path, QStringLiteral("its frames"));
    QHash<QByteArray, int> known;
    for (int i = 0; i < m_film.count(); ++i) {
        const QImage picture = m_film.picture(i);
        const QRect rect = trimming == Trimming::Borders ? opaqueRect(picture) : picture.rect();
        const QByteArray digest = digestOf(picture, rect);
        if (!known.contains(digest)) {
            known.insert(digest, m_sizes.size());
            m_sizes.append(rect.size());
            m_firstUses.append(i);
        }
        m_rects.append(rect);
        m_pictures.append(known.value(digest));
        if (progress)
            progress(i + 1, 2 * m_film.count());
    }
}

void Packer::place(Atlas &atlas)
{
    const std::optional<AtlasLayout> layout = layOutAtlas(m_sizes);
    if (!layout)
        throw Failure{m_path, QStringLiteral("%1 frames of %2 x %3 pixels do not fit on a sheet of "
                                             "%4 x %4; --scale or --every makes it smaller")
                                  .arg(m_film.count())
                                  .arg(m_film.size().width())
                                  .arg(m_film.size().height())
                                  .arg(MaxAtlasSide)};
    // Once as a picture, and at most as much again as a file.
    const qint64 pixels = qint64(layout->size.width()) * layout->size.height();
    m_memory.require(Saturating::sum(2 * pixels * BytesPerPixel, m_film.workingBytes()), m_path,
                     QStringLiteral("a sheet of %1 x %2 pixels")
                         .arg(layout->size.width())
                         .arg(layout->size.height()));
    atlas.sheet = QImage(layout->size, QImage::Format_ARGB32);
    if (atlas.sheet.isNull())
        throw std::bad_alloc();
    atlas.sheet.fill(0U);
    for (int i = 0; i < m_film.count(); ++i) {
        const QPoint corner = layout->places.at(m_pictures.at(i));
        atlas.frames.append({QRect(corner, m_rects.at(i).size()), m_rects.at(i).topLeft()});
    }
}

void Packer::draw(Atlas &atlas, const FilmProgress &progress) const
{
    for (const int frame : m_firstUses) {
        const QImage picture = m_film.picture(frame);
        const QRect &rect = m_rects.at(frame);
        const QRect &place = atlas.frames.at(frame).place;
        for (int y = 0; y < rect.height(); ++y) {
            const QRgb *from = row(picture, rect.top() + y) + rect.left();
            auto *to = reinterpret_cast<QRgb *>(atlas.sheet.scanLine(place.top() + y));
            std::copy(from, from + rect.width(), to + place.left());
        }
        if (progress)
            progress(m_film.count() + frame + 1, 2 * m_film.count());
    }
}

Atlas Packer::pack(Trimming trimming, const FilmProgress &progress)
{
    Atlas atlas;
    measure(trimming, progress);
    place(atlas);
    draw(atlas, progress);
    return atlas;
}

QJsonObject toJson(const QSize &size)
{
    return {{QStringLiteral("w"), size.width()}, {QStringLiteral("h"), size.height()}};
}

QJsonObject toJson(const QRect &rect)
{
    QJsonObject json = toJson(rect.size());
    json.insert(QStringLiteral("x"), rect.x());
    json.insert(QStringLiteral("y"), rect.y());
    return json;
}

} // namespace

Atlas atlasOf(const OutgoingFilm &film, Trimming trimming, const MemoryAccount &memory,
              const QString &path, const FilmProgress &progress)
{
    return Packer(film, memory, path).pack(trimming, progress);
}

QByteArray atlasJson(const Atlas &atlas, const OutgoingFilm &film, const QString &image)
{
    QJsonArray frames;
    for (int i = 0; i < film.count(); ++i) {
        const Atlas::Frame &frame = atlas.frames.at(i);
        frames.append(QJsonObject{
            {QStringLiteral("filename"), film.name(i)},
            {QStringLiteral("frame"), toJson(frame.place)},
            {QStringLiteral("rotated"), false},
            {QStringLiteral("trimmed"), frame.place.size() != film.size()},
            {QStringLiteral("spriteSourceSize"), toJson(QRect(frame.trimmed, frame.place.size()))},
            {QStringLiteral("sourceSize"), toJson(film.size())},
            {QStringLiteral("duration"), film.delayMs(i)}});
    }
    const QJsonObject meta{{QStringLiteral("app"), programAndVersion()},
                           {QStringLiteral("image"), image},
                           {QStringLiteral("format"), QStringLiteral("RGBA8888")},
                           {QStringLiteral("size"), toJson(atlas.sheet.size())},
                           {QStringLiteral("scale"), QStringLiteral("1")}};
    return QJsonDocument(
               QJsonObject{{QStringLiteral("frames"), frames}, {QStringLiteral("meta"), meta}})
        .toJson();
}
