#include "framework/pictureformat.h"

#include <QtGui/QColorSpace>

#include <algorithm>
#include <cstring>
#include <utility>

namespace
{

struct Route {
    QImage::Format format;
    QImage::Format carrier;
    const char *name;
};

/// Formats that come back exactly, and what carries them. Anything else is made one of the last
/// three kinds of true colour first.
constexpr Route Routes[] = {
    {QImage::Format_Mono, QImage::Format_Indexed8, "Mono"},
    {QImage::Format_MonoLSB, QImage::Format_Indexed8, "MonoLSB"},
    {QImage::Format_Indexed8, QImage::Format_Indexed8, "Indexed8"},
    {QImage::Format_Grayscale8, QImage::Format_Grayscale8, "Grayscale8"},
    {QImage::Format_Grayscale16, QImage::Format_Grayscale16, "Grayscale16"},
    {QImage::Format_Alpha8, QImage::Format_ARGB32, "Alpha8"},
    {QImage::Format_RGB16, QImage::Format_RGB32, "RGB16"},
    {QImage::Format_RGB888, QImage::Format_RGB32, "RGB888"},
    {QImage::Format_BGR888, QImage::Format_RGB32, "BGR888"},
    {QImage::Format_RGBX8888, QImage::Format_RGB32, "RGBX8888"},
    {QImage::Format_RGBA8888, QImage::Format_ARGB32, "RGBA8888"},
    {QImage::Format_ARGB32_Premultiplied, QImage::Format_ARGB32, "ARGB32_Premultiplied"},
    {QImage::Format_RGB32, QImage::Format_RGB32, "RGB32"},
    {QImage::Format_ARGB32, QImage::Format_ARGB32, "ARGB32"},
    {QImage::Format_RGBX64, QImage::Format_RGBX64, "RGBX64"},
    {QImage::Format_RGBA64, QImage::Format_RGBA64, "RGBA64"},
};

const Route *routeOf(QImage::Format format)
{
    const auto *found = std::find_if(std::begin(Routes), std::end(Routes),
                                     [=](const Route &route) { return route.format == format; });
    return found == std::end(Routes) ? nullptr : found;
}

const Route *routeNamed(const QString &name)
{
    const auto *found = std::find_if(std::begin(Routes), std::end(Routes), [&](const Route &route) {
        return name == QLatin1String(route.name);
    });
    return found == std::end(Routes) ? nullptr : found;
}

/// A format with a route for images whose own has none.
QImage::Format nearestFormat(const QImage &image)
{
    const bool deep = image.pixelFormat().redSize() > 8;
    if (image.hasAlphaChannel())
        return deep ? QImage::Format_RGBA64 : QImage::Format_ARGB32;
    return deep ? QImage::Format_RGBX64 : QImage::Format_RGB32;
}

const Route *routeFor(const QImage &image)
{
    const Route *route = routeOf(image.format());
    return route ? route : routeOf(nearestFormat(image));
}

/// The same pixels in an image that has nothing else.
QImage bare(const QImage &image)
{
    QImage copy(image.size(), image.format());
    if (copy.isNull())
        return {};
    const auto lineSize = size_t((qint64(image.width()) * image.depth() + 7) / 8);
    for (int y = 0; y < image.height(); ++y)
        std::memcpy(copy.scanLine(y), image.constScanLine(y), lineSize);
    copy.setColorTable(image.colorTable());
    return copy;
}

void release(void *holder)
{
    delete static_cast<QImage *>(holder);
}

/// The same as bare(), of an image that is not needed any more: its pixels are taken over, unless
/// much else would stay in memory with them.
QImage takenBare(QImage image)
{
    const QStringList keys = image.textKeys();
    const bool isLight =
        keys.isEmpty() || (keys.size() == 1 && image.text(keys.first()).size() < 64);
    if (image.isNull() || !isLight || image.colorSpace().isValid())
        return bare(image);
    const QVector<QRgb> colours = image.colorTable();
    auto *holder = new QImage(std::move(image));
    QImage taken(holder->bits(), holder->width(), holder->height(), holder->bytesPerLine(),
                 holder->format(), release, holder);
    if (taken.isNull())
        release(holder);
    else
        taken.setColorTable(colours);
    return taken;
}

/// An indexed image of the same indexes whose table names a colour for each of them.
QImage withFullTable(QImage image)
{
    int highest = 0;
    for (int y = 0; y < image.height(); ++y) {
        const uchar *line = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x)
            highest = std::max(highest, int(line[x]));
    }
    QVector<QRgb> table = image.colorTable();
    while (table.size() <= highest)
        table.append(qRgb(0, 0, 0));
    image.setColorTable(table);
    return image;
}

QImage indexesOfMono(const QImage &mono)
{
    QImage indexes(mono.size(), QImage::Format_Indexed8);
    if (indexes.isNull())
        return {};
    for (int y = 0; y < mono.height(); ++y) {
        uchar *line = indexes.scanLine(y);
        for (int x = 0; x < mono.width(); ++x)
            line[x] = uchar(mono.pixelIndex(x, y));
    }
    indexes.setColorTable(mono.colorTable());
    return indexes;
}

/// Null unless all indexes of @p indexes are 0 or 1.
QImage monoOfIndexes(const QImage &indexes, QImage::Format format)
{
    QImage mono(indexes.size(), format);
    if (mono.isNull())
        return {};
    mono.fill(0);
    for (int y = 0; y < indexes.height(); ++y) {
        const uchar *line = indexes.constScanLine(y);
        for (int x = 0; x < indexes.width(); ++x) {
            if (line[x] > 1)
                return {};
            mono.setPixel(x, y, line[x]);
        }
    }
    mono.setColorTable(indexes.colorTable().mid(0, 2));
    return mono;
}

/// A PNG whose colours are its indexes comes back as one of grey values.
QImage indexesOf(const QImage &carrier)
{
    if (carrier.format() == QImage::Format_Indexed8)
        return bare(carrier);
    if (carrier.format() != QImage::Format_Grayscale8)
        return {};
    QImage indexes(carrier.size(), QImage::Format_Indexed8);
    if (indexes.isNull())
        return {};
    for (int y = 0; y < carrier.height(); ++y)
        std::memcpy(indexes.scanLine(y), carrier.constScanLine(y), size_t(carrier.width()));
    QVector<QRgb> table;
    for (int grey = 0; grey < 256; ++grey)
        table.append(qRgb(grey, grey, grey));
    indexes.setColorTable(table);
    return indexes;
}

QImage restoredIndexes(const QImage &carrier, QImage::Format format)
{
    const QImage indexes = indexesOf(carrier);
    if (indexes.isNull() || format == QImage::Format_Indexed8)
        return indexes;
    return monoOfIndexes(indexes, format);
}

} // namespace

namespace PictureFormat
{

QString name(const QImage &image)
{
    return QLatin1String(routeFor(image)->name);
}

QImage carried(const QImage &image, QString &name)
{
    const Route *route = routeFor(image);
    name = QLatin1String(route->name);
    if (route->carrier != QImage::Format_Indexed8)
        return bare(image.convertToFormat(route->format).convertToFormat(route->carrier));
    return withFullTable(route->format == QImage::Format_Indexed8 ? bare(image)
                                                                  : indexesOfMono(image));
}

QImage restored(QImage carrier, const QString &name)
{
    const Route *route = routeNamed(name);
    if (!route)
        return takenBare(std::move(carrier));
    if (route->carrier == QImage::Format_Indexed8) {
        const QImage indexes = restoredIndexes(carrier, route->format);
        return indexes.isNull() ? bare(carrier) : indexes;
    }
    return takenBare(std::move(carrier).convertToFormat(route->format));
}

} // namespace PictureFormat
