#pragma once

#include "framework/objecthandles.h"

#include <QtCore/QString>

class QPainter;

/// How the selection looks. Sizes are in pixels of the screen, whatever the zoom; @p unit is the
/// length of one such pixel in page coordinates, those of the painter.
namespace HandlePainting
{

/// The side of a handle.
constexpr double HandleSize = 8.0;
/// How far from a handle's middle a press still takes it.
constexpr double Reach = 7.0;

void paintOutline(QPainter &painter, const ObjectGeometry &geometry);
void paintHandles(QPainter &painter, const ObjectGeometry &geometry, double unit);
/// @p text beside the point @p place.
void paintTip(QPainter &painter, const QPointF &place, const QString &text, double unit);

/// The pointer that says what @p handle of an object turned by @p angle does.
Qt::CursorShape cursorFor(ObjectHandles::Handle handle, double angle);

} // namespace HandlePainting
