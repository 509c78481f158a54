#include "flipbook/import/pictureformat.h"

#include <cctype>

namespace
{

bool isNetpbm(const QByteArray &start)
{
    return start.size() >= 3 && start.at(0) == 'P' && start.at(1) >= '1' && start.at(1) <= '6' &&
           std::isspace(uchar(start.at(2))) != 0;
}

PictureFormat::Kind kindOf(const QByteArray &start)
{
    if (start.startsWith("\x89PNG\r\n\x1a\n"))
        return PictureFormat::Png;
    if (start.startsWith("\xff\xd8\xff"))
        return PictureFormat::Jpeg;
    if (start.startsWith("GIF87a") || start.startsWith("GIF89a"))
        return PictureFormat::Gif;
    if (start.startsWith("RIFF") && start.mid(8, 4) == "WEBP")
        return PictureFormat::Webp;
    if (start.startsWith("BM"))
        return PictureFormat::Bmp;
    return isNetpbm(start) ? PictureFormat::Netpbm : PictureFormat::Unknown;
}

} // namespace

PictureFormat PictureFormat::of(const QByteArray &start)
{
    PictureFormat format;
    format.m_kind = kindOf(start);
    return format;
}

QString PictureFormat::list()
{
    return QStringLiteral("PNG, JPEG, GIF, BMP, PBM, PGM, PPM and WebP");
}

QString PictureFormat::title() const
{
    return m_kind == Webp ? QStringLiteral("WebP") : QString::fromLatin1(readerName()).toUpper();
}

QByteArray PictureFormat::readerName() const
{
    switch (m_kind) {
    case Png:
        return "png";
    case Jpeg:
        return "jpeg";
    case Gif:
        return "gif";
    case Bmp:
        return "bmp";
    case Netpbm:
        return "ppm";
    case Webp:
        return "webp";
    case Unknown:
        break;
    }
    return QByteArray();
}

QString PictureFormat::suffix() const
{
    return isKnown() ? QLatin1Char('.') + QString::fromLatin1(readerName()) : QString();
}
