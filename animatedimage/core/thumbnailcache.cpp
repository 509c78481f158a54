#include "animatedimage/core/thumbnailcache.h"

#include "animatedimage/core/thumbnail.h"

#include <QtCore/QBuffer>
#include <QtCore/QSet>
#include <QtGui/QImageWriter>

#include <new>

namespace
{

/// From this version of the stream format on, a picture is a PNG file after a marker, which is 0
/// for a null picture and then has no file.
constexpr int VersionWithNullMarker = QDataStream::Qt_3_1;

} // namespace

void ThumbnailCache::writeList(QDataStream &stream, const QList<CAnimatedPortrait> &frames)
{
    keepOnly(frames);
    stream << quint32(frames.size());
    for (const CAnimatedPortrait &frame : frames) {
        stream << frame.name;
        if (stream.status() != QDataStream::Ok)
            return;
        write(stream, frame.image);
    }
}

void ThumbnailCache::write(QDataStream &stream, const QImage &picture)
{
    if (stream.version() < VersionWithNullMarker) {
        stream << thumbnail(picture);
        return;
    }
    const QByteArray png = encoded(picture);
    stream << qint32(png.isEmpty() ? 0 : 1);
    stream.writeRawData(png.constData(), png.size());
}

/// Empty for a null picture, and without memory.
QByteArray ThumbnailCache::encoded(const QImage &picture)
{
    const auto kept = m_pngs.constFind(picture.cacheKey());
    if (kept != m_pngs.constEnd())
        return *kept;
    try {
        const QImage reduced = thumbnail(picture);
        QByteArray png;
        QBuffer buffer(&png);
        if (reduced.isNull() || !QImageWriter(&buffer, "png").write(reduced))
            return {};
        png.squeeze();
        keep(picture.cacheKey(), png);
        return png;
    } catch (const std::bad_alloc &) {
        return {};
    }
}

void ThumbnailCache::keep(qint64 key, const QByteArray &png)
{
    if (!m_budget.take(png.size()))
        return;
    try {
        m_pngs.insert(key, png);
        m_bytes += png.size();
    } catch (const std::bad_alloc &) {
        m_budget.giveBack(png.size());
    }
}

/// Drops the thumbnails of pictures that @p frames do not show.
void ThumbnailCache::keepOnly(const QList<CAnimatedPortrait> &frames)
{
    QSet<qint64> shown;
    try {
        for (const CAnimatedPortrait &frame : frames)
            shown.insert(frame.image.cacheKey());
    } catch (const std::bad_alloc &) {
        shown.clear();
    }
    for (auto png = m_pngs.begin(); png != m_pngs.end();) {
        if (shown.contains(png.key())) {
            ++png;
            continue;
        }
        m_bytes -= png->size();
        m_budget.giveBack(png->size());
        png = m_pngs.erase(png);
    }
}
