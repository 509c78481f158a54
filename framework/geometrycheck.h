#pragma once

#include <QtCore/QPointF>
#include <QtCore/QSizeF>

#include <cmath>

/// Whether an object can have the position @p point.
inline bool isPlace(const QPointF &point)
{
    return std::isfinite(point.x()) && std::isfinite(point.y());
}

/// Whether an object can have the size @p size: finite and not negative.
inline bool isExtent(const QSizeF &size)
{
    return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() >= 0.0 &&
           size.height() >= 0.0;
}
