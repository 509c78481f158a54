#include "flipbook/window/panels/historyview.h"

#include "flipbook/window/icons/icons.h"

#include <QtWidgets/QStyle>
#include <QtWidgets/QStyledItemDelegate>

namespace
{

/// Leaves room for the mark in each row, so that all texts begin at the same place.
class StepDelegate : public QStyledItemDelegate
{
public:
    using QStyledItemDelegate::QStyledItemDelegate;

protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override
    {
        QStyledItemDelegate::initStyleOption(option, index);
        const QStyle *style = option->widget->style();
        const int side = style->pixelMetric(QStyle::PM_SmallIconSize, nullptr, option->widget);
        option->features |= QStyleOptionViewItem::HasDecoration;
        option->decorationSize = QSize(side, side);
    }
};

} // namespace

HistoryView::HistoryView(QUndoStack &stack, QWidget *parent)
    : QUndoView(&stack, parent)
{
    setObjectName(QStringLiteral("history"));
    setAccessibleName(tr("History"));
    setFrameShape(QFrame::NoFrame);
    setEmptyLabel(tr("As opened"));
    setCleanIcon(Icons::icon(QStringLiteral("document-save")));
    setItemDelegate(new StepDelegate(this));
}
