#pragma once

#include <QtCore/QMimeData>
#include <QtWidgets/QListView>

class FrameModel;

/// The frames in a row. Dragging frames within the strip asks for them to be moved, or with the
/// Ctrl key copied; the strip itself changes nothing.
class FrameStrip : public QListView
{
    Q_OBJECT

public:
    explicit FrameStrip(FrameModel &model, QWidget *parent = nullptr);

    /// The rows that are selected, in ascending order.
    QVector<int> selectedRows() const;
    void selectRows(const QVector<int> &rows);
    /// The row before which something that is dropped at @p position goes.
    int rowForDrop(const QPoint &position) const;

Q_SIGNALS:
    /// The selected rows should be moved before row @p before.
    void moveWanted(const QVector<int> &rows, int before);
    void copyWanted(const QVector<int> &rows, int before);
    void dropped(const QMimeData *data, int before);
    void frameClicked(int row);
    void selectedRowsChanged();

protected:
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void startDrag(Qt::DropActions actions) override;
    void selectionChanged(const QItemSelection &selected,
                          const QItemSelection &deselected) override;
    void currentChanged(const QModelIndex &current, const QModelIndex &previous) override;

private:
    void setDropRow(int row);

    int m_dropRow = -1;
};
