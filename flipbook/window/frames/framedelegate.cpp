#include "flipbook/window/frames/framedelegate.h"

#include "flipbook/window/frames/framemodel.h"

#include <QtGui/QPainter>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>

namespace
{

constexpr int Side = FrameModel::ThumbnailSide;
constexpr int SquareSide = 8;
constexpr int BarHeight = 3;

QRect pictureRect(const QRect &item)
{
    return QRect(item.x() + (item.width() - Side) / 2, item.y() + FrameDelegate::Margin, Side,
                 Side);
}

QRect labelRect(const QRect &item)
{
    const int top = item.y() + FrameDelegate::Margin + Side + 2;
    return QRect(item.x() + 3, top, item.width() - 6, item.bottom() - top);
}

void paintCheckers(QPainter &painter, const QRect &rect)
{
    painter.fillRect(rect, Qt::white);
    for (int y = rect.top(); y <= rect.bottom(); y += SquareSide) {
        const int shift = ((y - rect.top()) / SquareSide % 2) * SquareSide;
        for (int x = rect.left() + shift; x <= rect.right(); x += 2 * SquareSide)
            painter.fillRect(QRect(x, y, SquareSide, SquareSide) & rect, QColor(222, 222, 222));
    }
}

void paintThumbnail(QPainter &painter, const QRect &box, const QPixmap &pixmap)
{
    QRect place(QPoint(0, 0), pixmap.size() / pixmap.devicePixelRatioF());
    if (pixmap.isNull())
        place = QRect(0, 0, Side / 2, Side / 2);
    place.moveCenter(box.center());
    paintCheckers(painter, place);
    painter.drawPixmap(place, pixmap);
    painter.setPen(QColor(0, 0, 0, 70));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(place.adjusted(-1, -1, 0, 0));
}

} // namespace

QSize FrameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &) const
{
    return QSize(Side + 2 * Margin, Side + 2 * Margin + option.fontMetrics.height());
}

void FrameDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option,
                          const QModelIndex &index) const
{
    painter->save();
    QStyleOptionViewItem panel = option;
    panel.text.clear();
    // The style marks only the text otherwise, of which it knows nothing.
    panel.showDecorationSelected = true;
    const QStyle *style = option.widget ? option.widget->style() : QApplication::style();
    style->drawPrimitive(QStyle::PE_PanelItemViewItem, &panel, painter, option.widget);

    paintThumbnail(*painter, pictureRect(option.rect),
                   index.data(FrameModel::ThumbnailRole).value<QPixmap>());

    const QRect label = labelRect(option.rect);
    const bool isSelected = option.state & QStyle::State_Selected;
    const auto group = option.state & QStyle::State_Active ? QPalette::Active : QPalette::Inactive;
    const QColor text =
        option.palette.color(group, isSelected ? QPalette::HighlightedText : QPalette::Text);
    painter->setPen(text);
    const QString number = QString::number(index.row() + 1);
    QFont bold = option.font;
    bold.setBold(true);
    painter->setFont(bold);
    painter->drawText(label, Qt::AlignLeft | Qt::AlignVCenter, number);
    const int taken = QFontMetrics(bold).horizontalAdvance(number) + 5;
    painter->setFont(option.font);
    const QRect nameRect = label.adjusted(taken, 0, 0, 0);
    painter->drawText(
        nameRect, Qt::AlignLeft | Qt::AlignVCenter,
        option.fontMetrics.elidedText(index.data().toString(), Qt::ElideMiddle, nameRect.width()));
    if (index.data(FrameModel::RunningRole).toBool()) {
        const QRect bar(option.rect.x(), option.rect.y(), option.rect.width(), BarHeight);
        painter->fillRect(bar, isSelected ? text : option.palette.color(QPalette::Highlight));
    }
    if (option.state & QStyle::State_HasFocus) {
        QStyleOptionFocusRect focus;
        focus.QStyleOption::operator=(option);
        focus.rect = option.rect.adjusted(1, 1, -1, -1);
        focus.state |= QStyle::State_KeyboardFocusChange;
        focus.backgroundColor =
            option.palette.color(isSelected ? QPalette::Highlight : QPalette::Base);
        style->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, painter, option.widget);
    }
    painter->restore();
}

void FrameDelegate::setEditorData(QWidget *editor, const QModelIndex &index) const
{
    const auto *line = qobject_cast<QLineEdit *>(editor);
    if (!line || !line->isModified())
        QStyledItemDelegate::setEditorData(editor, index);
}

void FrameDelegate::updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                                         const QModelIndex &) const
{
    QRect place = labelRect(option.rect);
    place.setTop(place.center().y() - editor->sizeHint().height() / 2);
    place.setHeight(editor->sizeHint().height());
    editor->setGeometry(place);
}
