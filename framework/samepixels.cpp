#include "framework/samepixels.h"

#include <QtCore/QHash>

#include <cstring>

namespace
{

constexpr int Depth = 32;
/// Films may have thousands of frames that differ in a few pixels.
constexpr int MostCompared = 8;

size_t lineBytes(const QImage &picture)
{
    return size_t(picture.width()) * sizeof(QRgb);
}

/// Of three lines. Pictures with the same pixels have the same.
uint fingerprint(const QImage &picture)
{
    uint hash = qHash(picture.width()) ^ (qHash(picture.height()) << 1) ^ uint(picture.format());
    for (const int quarter : {1, 2, 3}) {
        const uchar *line = picture.constScanLine(picture.height() * quarter / 4);
        hash = qHashBits(line, lineBytes(picture), hash);
    }
    return hash;
}

bool isSame(const QImage &a, const QImage &b)
{
    if (a.format() != b.format() || a.size() != b.size())
        return false;
    for (int y = 0; y < a.height(); ++y) {
        if (std::memcmp(a.constScanLine(y), b.constScanLine(y), lineBytes(a)) != 0)
            return false;
    }
    return true;
}

} // namespace

SamePixels::SamePixels(const QList<QImage> &pictures)
    : m_pictures(pictures)
{
    for (int i = 0; i < m_pictures.size(); ++i) {
        if (m_pictures.at(i).depth() == Depth)
            m_places.insert(fingerprint(m_pictures.at(i)), i);
    }
}

const QImage *SamePixels::find(const QImage &picture) const
{
    if (picture.depth() != Depth)
        return nullptr;
    const uint hash = fingerprint(picture);
    int compared = 0;
    for (auto place = m_places.constFind(hash);
         place != m_places.constEnd() && place.key() == hash && compared < MostCompared;
         ++place, ++compared) {
        const QImage &candidate = m_pictures.at(place.value());
        if (isSame(candidate, picture))
            return &candidate;
    }
    return nullptr;
}
