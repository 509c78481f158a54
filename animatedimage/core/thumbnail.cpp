#include "animatedimage/core/thumbnail.h"

QImage thumbnail(const QImage &image)
{
    constexpr int side = 150;
    if (image.isNull())
        return {};
    return image.scaled(side, side, Qt::KeepAspectRatio, Qt::FastTransformation);
}
