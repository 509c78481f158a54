#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QRect>
#include <QtGui/QImage>

#include <deque>

/// The pictures of the walks, each known by a number, so that a model can speak of a picture
/// without its pixels. What is slow to compute of a picture is computed once.
class PicturePool
{
public:
    /// The number of a picture without pixels.
    static constexpr int Null = 0;

    static PicturePool &instance();

    /// The number of a picture with these pixels and this format; a new one for a new picture.
    int number(const QImage &image);

    const QImage &image(int number) const { return m_entries[size_t(number)].image; }
    QSize size(int number) const { return image(number).size(); }
    /// The PNG file that represents the picture in a stream, without the marker before it.
    const QByteArray &png(int number) const { return m_entries[size_t(number)].png; }

    /// The picture fitted into 150 x 150 pixels.
    int thumbnail(int number);
    /// What comes back of the picture through a stream, and through a document's own forms.
    int streamed(int number);
    int stored(int number);
    /// The same pixels with a device pixel ratio of 1.
    int plain(int number);
    /// Fully transparent white, or opaque white.
    int blank(const QSize &size);
    int white(const QSize &size);

    /// The opaque rectangles, neither mirrored nor flipped, and the size they are measured on.
    const QList<QRect> &rects(int number);
    QSize regionSize(int number);

    /// The pictures that walks begin with, in many formats. Those that are small and narrow have
    /// small thumbnails, which take the least time; the square ones are small, too.
    const QList<int> &narrow() const { return m_narrow; }
    const QList<int> &square() const { return m_square; }
    const QList<int> &large() const { return m_large; }

private:
    static constexpr int Unknown = -1;

    struct Entry {
        QImage image;
        QByteArray png;
        int thumbnail = Unknown;
        int streamed = Unknown;
        int stored = Unknown;
        int plain = Unknown;
        QList<QRect> rects;
        QSize regionSize;
    };

    PicturePool();
    Entry &entry(int number) { return m_entries[size_t(number)]; }
    void measure(Entry &entry);
    int filled(const QSize &size, QImage::Format format, QRgb color);

    std::deque<Entry> m_entries;
    QHash<QByteArray, int> m_numbers;
    QHash<quint64, int> m_filled;
    QList<int> m_narrow;
    QList<int> m_square;
    QList<int> m_large;
};
