#pragma once

#include <QtWidgets/QStyledItemDelegate>

/// Paints a frame of the strip: its thumbnail on a checkerboard, its number and its name, and a bar
/// in the highlight colour over the one that is shown.
class FrameDelegate : public QStyledItemDelegate
{
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    /// A name that is being typed stays when the frame changes otherwise, such as by playing.
    void setEditorData(QWidget *editor, const QModelIndex &index) const override;
    void updateEditorGeometry(QWidget *editor, const QStyleOptionViewItem &option,
                              const QModelIndex &index) const override;

    static constexpr int Margin = 6;
};
