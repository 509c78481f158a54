#include "flipbook/window/lists/rowmoves.h"

#include <numeric>

QVector<int> RowMoves::range(int first, int end)
{
    QVector<int> rows(qMax(0, end - first));
    std::iota(rows.begin(), rows.end(), first);
    return rows;
}

QVector<int> RowMoves::order(int count, const QVector<int> &rows, int before)
{
    QVector<int> order;
    for (int row = 0; row <= count; ++row) {
        if (row == before)
            order += rows;
        if (row < count && !rows.contains(row))
            order.append(row);
    }
    return order;
}
