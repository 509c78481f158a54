#include "flipbook/scratch/picture.h"

#include "flipbook/base/compactpng.h"
#include "flipbook/base/failure.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtGui/QImageReader>

namespace Scratch
{

namespace
{

QSize pictureSize(const QByteArray &png)
{
    QByteArray bytes = png;
    QBuffer buffer(&bytes);
    return QImageReader(&buffer, "png").size();
}

} // namespace

Costume costumeOf(const QString &name, const QImage &image)
{
    const QByteArray png = compactPng(image);
    if (png.isEmpty())
        throw Failure{name, QStringLiteral("its picture cannot be written")};

    return costumeOfPng(name, png);
}

Costume costumeOfPng(const QString &name, const QByteArray &png)
{
    Costume costume;
    costume.name = name;
    costume.png = png;
    costume.digest =
        QString::fromLatin1(QCryptographicHash::hash(png, QCryptographicHash::Md5).toHex());
    const QSize size = pictureSize(png);
    costume.rotationCenter = QPointF(size.width(), size.height()) / 2.0;
    return costume;
}

QImage pictureOf(const Costume &costume)
{
    return QImage::fromData(costume.png, "PNG");
}

Costume emptyBackdrop()
{
    QImage nothing(BitmapResolution, BitmapResolution, QImage::Format_ARGB32);
    nothing.fill(Qt::transparent);
    return costumeOf(QStringLiteral("backdrop"), nothing);
}

} // namespace Scratch
