#include "flipbook/window/frames/framestrip.h"

#include "flipbook/window/frames/framedelegate.h"
#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/import/offeredpicture.h"

#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

FrameStrip::FrameStrip(FrameModel &model, QWidget *parent)
    : DragList(QStringLiteral("application/x-flipbook-frame-rows"), parent)
{
    setObjectName(QStringLiteral("frameStrip"));
    setAccessibleName(tr("Frames"));
    setModel(&model);
    setItemDelegate(new FrameDelegate(this));
    setFlow(LeftToRight);
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setSelectionRectVisible(true);
    setEditTriggers(DoubleClicked);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

void FrameStrip::selectRows(const QVector<int> &rows)
{
    QItemSelection selection;
    for (const int row : rows) {
        const QModelIndex index = model()->index(row, 0);
        selection.select(index, index);
    }
    if (!rows.isEmpty())
        selectionModel()->setCurrentIndex(model()->index(rows.last(), 0),
                                          QItemSelectionModel::NoUpdate);
    selectionModel()->select(selection, QItemSelectionModel::ClearAndSelect);
}

void FrameStrip::selectionChanged(const QItemSelection &selected, const QItemSelection &deselected)
{
    DragList::selectionChanged(selected, deselected);
    Q_EMIT selectedRowsChanged();
}

void FrameStrip::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    DragList::currentChanged(current, previous);
    // Keys move through the film as clicks do.
    if (current.isValid() && hasFocus())
        Q_EMIT frameClicked(current.row());
}

void FrameStrip::mousePressEvent(QMouseEvent *event)
{
    DragList::mousePressEvent(event);
    const QModelIndex index = indexAt(event->pos());
    if (index.isValid() && event->button() == Qt::LeftButton)
        Q_EMIT frameClicked(index.row());
}

void FrameStrip::wheelEvent(QWheelEvent *event)
{
    const QPoint angle = event->angleDelta();
    const int way = angle.y() != 0 ? angle.y() : angle.x();
    QScrollBar *bar = horizontalScrollBar();
    bar->setValue(bar->value() - way);
    event->accept();
}

bool FrameStrip::takes(const QMimeData &data) const
{
    return data.hasUrls() || offersPicture(data);
}

QPixmap FrameStrip::dragPicture(const QModelIndex &index) const
{
    return index.data(FrameModel::ThumbnailRole).value<QPixmap>();
}

void FrameStrip::paintEvent(QPaintEvent *event)
{
    // The window may have come to another screen.
    if (auto *frames = qobject_cast<FrameModel *>(model()))
        frames->setPixelRatio(devicePixelRatioF());
    DragList::paintEvent(event);
}
