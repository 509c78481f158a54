#pragma once

#include <QtCore/QRect>

#include <optional>

constexpr qint64 MaxSheetPixels = qint64(48) << 20;

/// Where everything is on a contact sheet, in pixels.
struct SheetLayout {
    int columns = 0;
    int rows = 0;
    QSize box;          ///< the place for a picture in each cell
    QSize cell;         ///< picture and label
    QSize sheet;        ///< the whole, with its margins
    double scale = 1.0; ///< of all pictures; never above 1

    /// The place for the picture of cell @p index, counted from 0, row by row.
    QRect boxAt(int index) const;
    /// The place for its label, right below.
    QRect labelAt(int index) const;
};

/// Lays out @p count pictures (1 or more) of which the widest and the highest measure @p largest,
/// with labels of @p labelHeight below. Cells are no larger than needed, and all pictures have one
/// scale. Nothing when there are too many to see on one sheet of no more than @p mostPixels.
std::optional<SheetLayout> layOutSheet(int count, QSizeF largest, int labelHeight,
                                       qint64 mostPixels = MaxSheetPixels);
