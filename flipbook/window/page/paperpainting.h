#pragma once

class QPainter;
class QRectF;

/// Paints the white paper of a page, with a soft edge that is as wide on the screen at any zoom.
/// @p rect is in the painter's coordinates, of which one is @p zoom pixels.
void paintPaper(QPainter &painter, const QRectF &rect, double zoom);
