#pragma once

#include "flipbook/window/lists/draglist.h"

class FrameModel;

/// The frames in a row. Files and pictures from elsewhere can be dropped between them.
class FrameStrip : public DragList
{
    Q_OBJECT

public:
    explicit FrameStrip(FrameModel &model, QWidget *parent = nullptr);

    void selectRows(const QVector<int> &rows);

Q_SIGNALS:
    void frameClicked(int row);
    void selectedRowsChanged();

protected:
    bool takes(const QMimeData &data) const override;
    QPixmap dragPicture(const QModelIndex &index) const override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;
};
