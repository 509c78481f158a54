#include "flipbook/import/spritesheet.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/sheetcut.h"

#include <algorithm>

namespace
{

/// How the cells lie along one side of the sheet.
struct Side {
    qint64 count = 0;
    qint64 length = 0; ///< of a cell
    qint64 rest = 0;   ///< pixels after the last cell and the margin
};

/// @p whole pixels in @p count cells; no cells if that is not possible.
Side divided(qint64 whole, qint64 count, const SheetCut &cut)
{
    const qint64 pixels = whole - 2 * qint64(cut.margin) - (count - 1) * cut.spacing;
    if (pixels < count || pixels % count != 0)
        return {};
    return {count, pixels / count, 0};
}

/// As many cells of @p length pixels as there is room for.
Side filled(qint64 whole, qint64 length, const SheetCut &cut)
{
    const qint64 count = (whole - cut.margin + cut.spacing) / (length + cut.spacing);
    if (count < 1)
        return {};
    const qint64 used = cut.margin + count * (length + cut.spacing) - cut.spacing;
    return {count, length, std::max<qint64>(0, whole - used - cut.margin)};
}

Side across(const QSize &size, const SheetCut &cut)
{
    return cut.grid.isEmpty() ? filled(size.width(), cut.cell.width(), cut)
                              : divided(size.width(), cut.grid.width(), cut);
}

Side down(const QSize &size, const SheetCut &cut)
{
    return cut.grid.isEmpty() ? filled(size.height(), cut.cell.height(), cut)
                              : divided(size.height(), cut.grid.height(), cut);
}

QString sizeText(const QSize &size)
{
    return QStringLiteral("%1 x %2").arg(size.width()).arg(size.height());
}

bool isEmpty(const QImage &sheet, const QRect &cell)
{
    for (int y = cell.top(); y <= cell.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(sheet.constScanLine(y)) + cell.left();
        if (std::any_of(row, row + cell.width(), [](QRgb pixel) { return qAlpha(pixel) > 0; }))
            return false;
    }
    return true;
}

void warnOfRest(QStringList &warnings, const QSize &size, const SheetCut &cut)
{
    const Side columns = across(size, cut);
    const Side rows = down(size, cut);
    if (columns.rest > 0)
        warnings << QStringLiteral("%1 pixels at the right are in no cell").arg(columns.rest);
    if (rows.rest > 0)
        warnings << QStringLiteral("%1 pixels at the bottom are in no cell").arg(rows.rest);
}

} // namespace

QVector<QRect> cellsOf(const QSize &size, const SheetCut &cut, const QString &path)
{
    const Side columns = across(size, cut);
    const Side rows = down(size, cut);
    if (columns.count == 0 || rows.count == 0) {
        const QString what =
            cut.grid.isEmpty()
                ? QStringLiteral("are too few for a cell of ") + sizeText(cut.cell)
                : QStringLiteral("cannot be divided into %1 equal cells").arg(sizeText(cut.grid));
        throw Failure{path, QStringLiteral("its %1 pixels %2").arg(sizeText(size), what)};
    }
    QVector<QRect> cells;
    for (qint64 row = 0; row < rows.count; ++row) {
        for (qint64 column = 0; column < columns.count; ++column)
            cells.append(QRect(int(cut.margin + column * (columns.length + cut.spacing)),
                               int(cut.margin + row * (rows.length + cut.spacing)),
                               int(columns.length), int(rows.length)));
    }
    return cells;
}

DecodedFilm cutSheet(const QImage &sheet, const SheetCut &cut, const QString &path,
                     MemoryAccount &memory)
{
    // As many cells as there are pixels, at worst.
    const Side columns = across(sheet.size(), cut);
    const Side rows = down(sheet.size(), cut);
    const QSize cell(int(columns.length), int(rows.length));
    constexpr int copiesOfSheet = 1;
    requireFilm(memory, path, cell, columns.count * rows.count, 0,
                copiesOfSheet * qint64(sheet.width()) * sheet.height() * 4);
    QVector<QRect> cells = cellsOf(sheet.size(), cut, path);
    const QImage pixels = sheet.convertToFormat(QImage::Format_ARGB32);
    while (!cells.isEmpty() && isEmpty(pixels, cells.constLast()))
        cells.removeLast();
    if (cells.isEmpty())
        throw Failure{path, QStringLiteral("all its cells are transparent")};
    DecodedFilm film;
    film.format = QStringLiteral("sprite sheet");
    for (const QRect &place : qAsConst(cells))
        film.pictures.append(pixels.copy(place));
    warnOfRest(film.warnings, sheet.size(), cut);
    memory.take(MemoryBudget::keptForFilm(cell, cells.size()));
    return film;
}
