#include "flipbook/object/objectsummary.h"

#include <QtCore/QHash>
#include <QtCore/QJsonArray>

#include <algorithm>

namespace
{

qint64 visiblePixelsOfRow(const QImage &row)
{
    const auto *pixels = reinterpret_cast<const QRgb *>(row.constScanLine(0));
    return std::count_if(pixels, pixels + row.width(),
                         [](QRgb pixel) { return qAlpha(pixel) != 0; });
}

qint64 visiblePixels(const QImage &image)
{
    if (!image.hasAlphaChannel())
        return qint64(image.width()) * image.height();
    qint64 count = 0;
    // Row by row, so that a large picture is never there in a second format as a whole.
    for (int y = 0; y < image.height(); ++y) {
        const QImage row = image.copy(0, y, image.width(), 1);
        count += visiblePixelsOfRow(row.convertToFormat(QImage::Format_ARGB32));
    }
    return count;
}

} // namespace

ObjectSummary summarise(const Plugin &plugin, CBaseObject &object, Pixels pixels)
{
    const AnimatedObject animated(object);
    ObjectSummary summary;
    summary.intervalMs = animated.intervalMs();
    summary.loopCount = animated.loopCount();

    const Plugin::Frames frames = plugin.frames(object);
    summary.frames = frames.size();
    if (!frames.isEmpty())
        summary.size = frames.first().second.size();
    qint64 all = 0;
    qint64 visible = 0;
    // Frames may share their pixels, which are then looked at once.
    QHash<qint64, qint64> counted;
    for (const auto &frame : frames) {
        const QImage &image = frame.second;
        summary.names << frame.first;
        const qint64 key = image.cacheKey();
        if (!counted.contains(key)) {
            counted.insert(key, pixels == Pixels::Counted ? visiblePixels(image) : 0);
            summary.decodedBytes += image.sizeInBytes();
        }
        summary.sizesDiffer |= image.size() != summary.size;
        all += qint64(image.width()) * image.height();
        visible += counted.value(key);
    }
    if (pixels == Pixels::Counted)
        summary.opaqueShare = all > 0 ? double(visible) / double(all) : 0.0;
    return summary;
}

QJsonObject toJson(const ObjectSummary &summary)
{
    QJsonObject json{{QStringLiteral("frames"), summary.frames},
                     {QStringLiteral("width"), summary.size.width()},
                     {QStringLiteral("height"), summary.size.height()},
                     {QStringLiteral("intervalMs"), summary.intervalMs},
                     {QStringLiteral("loopCount"), summary.loopCount},
                     {QStringLiteral("names"), QJsonArray::fromStringList(summary.names)},
                     {QStringLiteral("decodedBytes"), summary.decodedBytes}};
    if (summary.opaqueShare)
        json.insert(QStringLiteral("opaqueShare"), *summary.opaqueShare);
    return json;
}

QString loopWords(int loopCount)
{
    if (loopCount == -1)
        return QStringLiteral("forever");
    if (loopCount <= 0)
        return QStringLiteral("once");
    return QStringLiteral("%1 times").arg(qint64(loopCount) + 1);
}
