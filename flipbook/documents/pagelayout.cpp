#include "flipbook/documents/pagelayout.h"

#include <QtCore/QtMath>

QVector<QRectF> arranged(const QVector<QSizeF> &sizes, const QRectF &page)
{
    QVector<QRectF> places;
    if (sizes.isEmpty())
        return places;
    const int columns = qCeil(std::sqrt(double(sizes.size())));
    const int rows = (sizes.size() + columns - 1) / columns;
    const QSizeF cell(page.width() / columns, page.height() / rows);
    for (int i = 0; i < sizes.size(); ++i) {
        QSizeF size = sizes.at(i);
        if (size.width() > cell.width() || size.height() > cell.height())
            size.scale(cell, Qt::KeepAspectRatio);
        QRectF place(QPointF(0.0, 0.0), size);
        place.moveCenter(page.topLeft() + QPointF((i % columns + 0.5) * cell.width(),
                                                  (i / columns + 0.5) * cell.height()));
        places.append(place);
    }
    return places;
}
