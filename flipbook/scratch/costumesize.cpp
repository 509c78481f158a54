#include "flipbook/scratch/costumesize.h"

#include "flipbook/scratch/sprite.h"
#include "host/jsonutil.h"

namespace
{

QSizeF largestSaved(CBaseObject &object)
{
    QSizeF largest(0.0, 0.0);
    const QStringList texts =
        object.getOtherParams(QStringLiteral("animatedImageSizes")).toStringList();
    for (const QString &text : texts)
        largest = largest.expandedTo(GetJsonUtil()->textToVariant(text).toSizeF());
    return largest;
}

} // namespace

QSizeF Scratch::largestCostume(const Plugin &plugin, CBaseObject &object)
{
    QSizeF largest = largestSaved(object);
    const QSizeF size = object.getSize();
    const QSize shown = object.getImageSize();
    const double horizontal = shown.isEmpty() ? 1.0 : size.width() / shown.width();
    const double vertical = shown.isEmpty() ? 1.0 : size.height() / shown.height();
    const Plugin::Frames frames = plugin.frames(object);
    for (const auto &frame : frames) {
        const QSizeF pixels = frame.second.size();
        largest = largest.expandedTo(pixels).expandedTo(
            QSizeF(pixels.width() * horizontal, pixels.height() * vertical));
    }
    return largest * BitmapResolution;
}
