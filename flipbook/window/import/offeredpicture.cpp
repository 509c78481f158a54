#include "flipbook/window/import/offeredpicture.h"

#include <QtCore/QMimeData>
#include <QtCore/QStringList>

namespace
{

/// The format to ask for, empty if no picture of another program is offered. A film is more than
/// its first frame, and a picture without loss more than one with it.
QString formatOf(const QMimeData &data)
{
    const QStringList formats = data.formats();
    for (const char *wanted : {"image/gif", "image/apng", "image/webp", "image/png", "image/bmp",
                               "image/x-portable-pixmap", "image/jpeg"}) {
        if (formats.contains(QLatin1String(wanted)))
            return QLatin1String(wanted);
    }
    for (const QString &format : formats) {
        if (format.startsWith(QLatin1String("image/")))
            return format;
    }
    return QString();
}

} // namespace

bool offersPicture(const QMimeData &data)
{
    return data.hasImage() || !formatOf(data).isEmpty();
}

OfferedPicture offeredPicture(const QMimeData &data)
{
    const QString format = formatOf(data);
    if (!format.isEmpty())
        return {data.data(format), QImage()};
    return {QByteArray(), data.imageData().value<QImage>()};
}
