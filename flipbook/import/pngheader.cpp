#include "flipbook/import/pngheader.h"

#include "flipbook/base/saturating.h"

#include <QtCore/QtEndian>

#include <limits>

std::optional<PngHeader> PngHeader::read(const QByteArray &start)
{
    static const QByteArray signature("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16);
    if (start.size() < Length || !start.startsWith(signature))
        return std::nullopt;
    const auto width = qFromBigEndian<quint32>(start.constData() + 16);
    const auto height = qFromBigEndian<quint32>(start.constData() + 20);
    constexpr quint32 longest = std::numeric_limits<qint32>::max();
    if (width == 0 || height == 0 || width > longest || height > longest)
        return std::nullopt;
    PngHeader header;
    header.size = QSize(int(width), int(height));
    header.bytesPerPixel = start.at(24) == 16 ? 8 : 4;
    return header;
}

qint64 PngHeader::decodedBytes() const
{
    return Saturating::product(qint64(size.width()) * size.height(), bytesPerPixel);
}
