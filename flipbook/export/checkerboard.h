#pragma once

class QPainter;
class QRectF;

/// Fills @p area with light squares, on which transparent places of a picture can be seen. The
/// squares begin at its top left corner.
void paintCheckerboard(QPainter &painter, const QRectF &area);
