#pragma once

#include <QtCore/QList>
#include <QtCore/QMultiHash>
#include <QtGui/QImage>

/// Finds a picture that has the same pixels as another one, byte by byte.
class SamePixels
{
public:
    /// Looks among @p pictures of 32 bits per pixel; pictures of other depths are left out.
    explicit SamePixels(const QList<QImage> &pictures);

    /// The first found that has the format, the size and the pixels of @p picture; null if there is
    /// none, or if too many are nearly like it.
    const QImage *find(const QImage &picture) const;

private:
    QList<QImage> m_pictures;
    QMultiHash<uint, int> m_places; ///< in the list, by the hash of a few lines
};
