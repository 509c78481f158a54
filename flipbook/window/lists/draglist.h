#pragma once

#include <QtCore/QMimeData>
#include <QtWidgets/QListView>

/// A list in icon mode whose rows, one after the other in its flow, the user drags to other places
/// in it, where a line marks the place. That asks for the rows to be moved, or with the Ctrl key
/// copied; the list itself changes nothing.
class DragList : public QListView
{
    Q_OBJECT

public:
    /// @p format is the MIME type by which the list knows its own rows.
    explicit DragList(const QString &format, QWidget *parent = nullptr);

    /// The rows that are selected, in ascending order.
    QVector<int> selectedRows() const;
    /// The row before which something that is dropped at @p position goes.
    int rowForDrop(const QPoint &position) const;

Q_SIGNALS:
    /// The selected rows should be moved before row @p before.
    void moveWanted(const QVector<int> &rows, int before);
    void copyWanted(const QVector<int> &rows, int before);
    /// Something else was dropped, which takes() has agreed to.
    void dropped(const QMimeData *data, int before);

protected:
    /// Whether @p data from elsewhere may be dropped between the rows. At first nothing is.
    virtual bool takes(const QMimeData &data) const;
    /// What is seen beside the pointer while @p index is dragged.
    virtual QPixmap dragPicture(const QModelIndex &index) const;

    /// Where one row is chosen, no click takes the choice away.
    QItemSelectionModel::SelectionFlags selectionCommand(const QModelIndex &index,
                                                         const QEvent *event) const override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;
    void dropEvent(QDropEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void startDrag(Qt::DropActions actions) override;

private:
    void setDropRow(int row);
    void scrollNearTheEdge(const QPoint &position);
    QRect dropMark() const;

    QString m_format;
    int m_dropRow = -1;
};
