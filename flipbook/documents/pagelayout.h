#pragma once

#include <QtCore/QRectF>
#include <QtCore/QVector>

/// The page of a new document: twice the stage of Scratch, in page units.
constexpr QRectF NewPageRect(0.0, 0.0, 960.0, 720.0);

/// Where objects of @p sizes stand on a new page: each in the middle of a cell of its own, row by
/// row, reduced in its own proportions where it is larger than the cell. Sizes without area stay
/// as they are.
QVector<QRectF> arranged(const QVector<QSizeF> &sizes, const QRectF &page);
