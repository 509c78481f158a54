#pragma once

#include "framework/frameworkglobal.h"

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QImage>

#include <limits>

class SamePixels;

/// The pictures of a document, each distinct one kept once, as a PNG file in memory. A picture is
/// known by its digest: the MD5 of the PNG bytes as 32 lower-case hexadecimal digits.
/// The same pixels always give the same bytes, on every machine, even if they were
/// saved and loaded (see picturecodec.h). A picture that was added or returned before is recognised
/// and not encoded again.
class FRAMEWORK_API ImageStore
{
public:
    /// Keeps @p image and returns its digest; a null image, or one for which there is no room, is
    /// not kept and gives an empty digest.
    QString add(const QImage &image);
    /// Encodes those of @p images that are not known yet, several of them at the same time if the
    /// machine can, and keeps them. add() then finds them. Ends when there is no more room.
    void addAhead(const QList<QImage> &images);
    /// Keeps the PNG file @p bytes. False, with nothing kept, when they have another digest or
    /// there is no room.
    bool addPng(const QString &digest, const QByteArray &bytes);

    /// The picture with the digest @p digest; a null image if there is none or its file is damaged.
    QImage image(const QString &digest) const;
    /// The PNG file with the digest @p digest; empty if there is none.
    QByteArray png(const QString &digest) const;
    bool contains(const QString &digest) const;
    /// All digests, in ascending order.
    QList<QString> digests() const;

    /// The most bytes that the PNG files may take together; unlimited at first. What goes beyond is
    /// not kept, and hasOverflowed() tells so.
    void setCapacity(qint64 bytes);
    /// Whether a picture was not kept since the capacity was set last.
    bool hasOverflowed() const;
    /// The bytes that the PNG files take together.
    qint64 byteCount() const;

    void remove(const QString &digest);
    void clear();

    /// Counts the pictures that are added from now on as in use, and no others.
    void beginUse();
    /// Drops the pictures that were not added since beginUse(), and recognises only those that
    /// were added or returned since then.
    void dropUnused();

    /// How many pictures would be recognised.
    int recognisedCount() const { return m_known.size(); }

private:
    QList<QImage> recognised(const QList<QImage> &images, const SamePixels &known);
    QString addEncoded(const QImage &image, const QByteArray &png);
    bool keep(const QString &digest, const QByteArray &png);
    void forgetDropped();

    /// A picture whose file is in the store.
    struct Known {
        QString digest;
        int use; ///< the last one in which the picture was added or returned
    };

    /// A PNG file in the store.
    struct File {
        QByteArray bytes;
        int use = NoUse; ///< the last one in which a picture with this file was added
    };

    static constexpr int NoUse = -1;

    QHash<QString, File> m_files; ///< by digest
    /// By cacheKey(), which is unique to the pixels. A picture does not tell when it ends.
    mutable QHash<qint64, Known> m_known;
    int m_use = 0; ///< how often beginUse() was called
    qint64 m_byteCount = 0;
    qint64 m_capacity = std::numeric_limits<qint64>::max();
    bool m_overflowed = false;
};
