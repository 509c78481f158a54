#include "flipbook/scratch/picture.h"

#include "flipbook/base/failure.h"

#include <QtCore/QBuffer>
#include <QtCore/QCryptographicHash>
#include <QtGui/QColorSpace>
#include <QtGui/QImageWriter>

namespace Scratch
{

Costume costumeOf(const QString &name, const QImage &image)
{
    QImage plain = image;
    plain.setColorSpace(QColorSpace());
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    if (!writer.write(plain))
        throw Failure{name,
                      QStringLiteral("its picture cannot be written: ") + writer.errorString()};

    Costume costume;
    costume.name = name;
    costume.png = buffer.data();
    costume.digest =
        QString::fromLatin1(QCryptographicHash::hash(costume.png, QCryptographicHash::Md5).toHex());
    costume.rotationCenter = QPointF(image.width(), image.height()) / 2.0;
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
