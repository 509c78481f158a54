#pragma once

#include "animatedimage/core/animatedportrait.h"
#include "animatedimage/core/cachebudget.h"

#include <QtCore/QByteArray>
#include <QtCore/QDataStream>
#include <QtCore/QHash>

/// Thumbnails as the PNG files that a data stream contains. Answers to edits contain those of all
/// frames; each is encoded once per picture.
class ThumbnailCache
{
public:
    explicit ThumbnailCache(CacheBudget &budget = CacheBudget::shared())
        : m_budget(budget)
    {
    }
    ~ThumbnailCache() { m_budget.giveBack(m_bytes); }
    Q_DISABLE_COPY(ThumbnailCache)

    /// Writes what the stream operators write for a list of pairs, the name and the thumbnail of
    /// each frame. Keeps the encoded thumbnails of these frames, as far as the budget allows, and
    /// no others. Ends where the device takes no more.
    void writeList(QDataStream &stream, const QList<CAnimatedPortrait> &frames);

    /// Writes what the stream operator writes for the thumbnail of @p picture.
    void write(QDataStream &stream, const QImage &picture);

    /// Bytes of the thumbnails kept.
    qint64 bytes() const { return m_bytes; }

private:
    QByteArray encoded(const QImage &picture);
    void keep(qint64 key, const QByteArray &png);
    void keepOnly(const QList<CAnimatedPortrait> &frames);

    CacheBudget &m_budget;
    /// PNG files by the cacheKey() of their picture.
    QHash<qint64, QByteArray> m_pngs;
    qint64 m_bytes = 0;
};

/// Part of an answer: the thumbnail of a picture.
struct EncodedThumbnail {
    ThumbnailCache &cache;
    const QImage &picture;
};
inline QDataStream &operator<<(QDataStream &stream, const EncodedThumbnail &thumbnail)
{
    thumbnail.cache.write(stream, thumbnail.picture);
    return stream;
}

/// Part of an answer: names and thumbnails of all frames.
struct EncodedThumbnails {
    ThumbnailCache &cache;
    const QList<CAnimatedPortrait> &frames;
};
inline QDataStream &operator<<(QDataStream &stream, const EncodedThumbnails &thumbnails)
{
    thumbnails.cache.writeList(stream, thumbnails.frames);
    return stream;
}
