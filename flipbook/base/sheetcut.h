#pragma once

#include <QtCore/QSize>

/// How a picture with all frames of a film is cut into cells, row by row. Either the number of
/// cells or their size is given. In pixels.
struct SheetCut {
    QSize grid;      ///< columns and rows; empty if the size of a cell is given
    QSize cell;      ///< of one cell; empty if their number is given
    int margin = 0;  ///< around all cells
    int spacing = 0; ///< between two cells
};
