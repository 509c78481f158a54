#pragma once

#include "flipbook/import/decodedfilm.h"

#include <QtCore/QRect>

class MemoryAccount;
struct SheetCut;

/// The cells of a picture of @p size, row by row.
/// @throw Failure of @p path when it cannot be cut so.
QVector<QRect> cellsOf(const QSize &size, const SheetCut &cut, const QString &path);

/// Cuts @p sheet, which the user named as @p path, into frames. Transparent cells at the end are
/// left out. What is kept of it is counted in @p memory.
/// @throw Failure when it cannot be cut so, when all cells are transparent, or when there is too
/// little memory.
DecodedFilm cutSheet(const QImage &sheet, const SheetCut &cut, const QString &path,
                     MemoryAccount &memory);
