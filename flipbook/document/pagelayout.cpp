#include "flipbook/document/pagelayout.h"

#include <algorithm>

namespace
{

constexpr double Margin = 24.0;
constexpr double MinWidth = 320.0;
constexpr double MinHeight = 240.0;
constexpr double RowWidth = 960.0;

} // namespace

PageLayout layOutPage(const QVector<QSizeF> &sizes)
{
    PageLayout layout;
    double widest = MinWidth;
    QPointF next(Margin, Margin);
    double rowHeight = 0.0;
    for (const QSizeF &size : sizes) {
        const bool isFirstOfRow = next.x() <= Margin;
        if (!isFirstOfRow && next.x() + size.width() + Margin > RowWidth) {
            next = QPointF(Margin, next.y() + rowHeight + Margin);
            rowHeight = 0.0;
        }
        layout.places.append(next);
        next.rx() += size.width() + Margin;
        rowHeight = std::max(rowHeight, size.height());
        widest = std::max(widest, next.x());
    }
    layout.page = QSizeF(widest, std::max(MinHeight, next.y() + rowHeight + Margin));
    return layout;
}
