#pragma once

#include <QtCore/QVector>

/// The arithmetic of rows that change places.
namespace RowMoves
{

/// The rows from @p first up to, but without, @p end.
QVector<int> range(int first, int end);

/// The old row at each place of a list of @p count after @p rows (ascending) were put before the
/// row
/// @p before.
QVector<int> order(int count, const QVector<int> &rows, int before);

} // namespace RowMoves
