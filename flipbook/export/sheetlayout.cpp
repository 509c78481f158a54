#include "flipbook/export/sheetlayout.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

constexpr int Margin = 16;
constexpr int Gap = 16;
constexpr int LabelGap = 6;
constexpr int NarrowestLabel = 72;
constexpr double WantedAspect = 1.6;
constexpr int MaxPictures = 60000;
constexpr int MaxSheetSide = 32000;
constexpr std::array<int, 6> BoxSides = {160, 128, 96, 64, 48, 32};

QSize sheetSize(int columns, int rows, QSize cell)
{
    return QSize(2 * Margin + columns * cell.width() + (columns - 1) * Gap,
                 2 * Margin + rows * cell.height() + (rows - 1) * Gap);
}

int rowsFor(int count, int columns)
{
    return (count + columns - 1) / columns;
}

// How far a grid is from a sheet of pleasant shape without empty places at its end.
double flaw(int count, int columns, QSize cell)
{
    const int rows = rowsFor(count, columns);
    const QSize sheet = sheetSize(columns, rows, cell);
    const double aspect = double(sheet.width()) / sheet.height();
    const double empty = double(rows * columns - count) / columns;
    return std::abs(std::log(aspect / WantedAspect)) + empty;
}

SheetLayout layOut(int count, QSizeF largest, int labelHeight, int side)
{
    SheetLayout layout;
    const double longest = std::max(largest.width(), largest.height());
    layout.scale = longest > side ? side / longest : 1.0;
    layout.box = QSize(std::max(1, int(std::ceil(largest.width() * layout.scale))),
                       std::max(1, int(std::ceil(largest.height() * layout.scale))));
    layout.box.setWidth(std::max(layout.box.width(), std::min(NarrowestLabel, side)));
    layout.cell = layout.box + QSize(0, LabelGap + labelHeight);

    const int mostColumns = std::min(count, MaxSheetSide / layout.cell.width());
    layout.columns = 1;
    for (int columns = 2; columns <= mostColumns; ++columns) {
        if (flaw(count, columns, layout.cell) < flaw(count, layout.columns, layout.cell))
            layout.columns = columns;
    }
    layout.rows = rowsFor(count, layout.columns);
    layout.sheet = sheetSize(layout.columns, layout.rows, layout.cell);
    return layout;
}

bool fits(QSize sheet, qint64 mostPixels)
{
    return sheet.width() <= MaxSheetSide && sheet.height() <= MaxSheetSide &&
           qint64(sheet.width()) * sheet.height() <= qMin(mostPixels, MaxSheetPixels);
}

} // namespace

QRect SheetLayout::boxAt(int index) const
{
    const int column = index % columns;
    const int row = index / columns;
    return QRect(
        QPoint(Margin + column * (cell.width() + Gap), Margin + row * (cell.height() + Gap)), box);
}

QRect SheetLayout::labelAt(int index) const
{
    const QRect picture = boxAt(index);
    return QRect(picture.left(), picture.bottom() + 1 + LabelGap, cell.width(),
                 cell.height() - box.height() - LabelGap);
}

std::optional<SheetLayout> layOutSheet(int count, QSizeF largest, int labelHeight,
                                       qint64 mostPixels)
{
    if (count > MaxPictures)
        return std::nullopt;
    for (const int side : BoxSides) {
        const SheetLayout layout = layOut(count, largest, labelHeight, side);
        if (fits(layout.sheet, mostPixels))
            return layout;
    }
    return std::nullopt;
}
