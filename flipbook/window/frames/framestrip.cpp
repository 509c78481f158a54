#include "flipbook/window/frames/framestrip.h"

#include "flipbook/window/frames/framedelegate.h"
#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/import/offeredpicture.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtCore/QMimeData>
#include <QtGui/QDrag>
#include <QtGui/QPainter>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QScrollBar>

#include <algorithm>

namespace
{

const QLatin1String RowsFormat("application/x-flipbook-frame-rows");

/// Rows mean something in this process only, which writes its number before them.
QByteArray encodedRows(const QVector<int> &rows)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream << QCoreApplication::applicationPid() << rows;
    return bytes;
}

QVector<int> decodedRows(const QByteArray &bytes, const QAbstractItemModel &model)
{
    QDataStream stream(bytes);
    qint64 process = 0;
    QVector<int> rows;
    stream >> process >> rows;
    const bool isSound =
        process == QCoreApplication::applicationPid() && std::is_sorted(rows.begin(), rows.end()) &&
        std::all_of(rows.begin(), rows.end(),
                    [&model](int row) { return row >= 0 && row < model.rowCount(); });
    return isSound ? rows : QVector<int>();
}

} // namespace

FrameStrip::FrameStrip(FrameModel &model, QWidget *parent)
    : QListView(parent)
{
    setObjectName(QStringLiteral("frameStrip"));
    setAccessibleName(tr("Frames"));
    setFrameShape(QFrame::NoFrame);
    setModel(&model);
    setItemDelegate(new FrameDelegate(this));
    setViewMode(IconMode);
    setFlow(LeftToRight);
    setWrapping(false);
    setMovement(Static);
    setUniformItemSizes(true);
    setSelectionMode(ExtendedSelection);
    setSelectionRectVisible(true);
    setEditTriggers(DoubleClicked);
    setDragEnabled(true);
    viewport()->setAcceptDrops(true);
    setHorizontalScrollMode(ScrollPerPixel);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
}

QVector<int> FrameStrip::selectedRows() const
{
    QVector<int> rows;
    const QModelIndexList indexes = selectionModel()->selectedIndexes();
    for (const QModelIndex &index : indexes)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
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
    QListView::selectionChanged(selected, deselected);
    Q_EMIT selectedRowsChanged();
}

void FrameStrip::currentChanged(const QModelIndex &current, const QModelIndex &previous)
{
    QListView::currentChanged(current, previous);
    // Keys move through the film as clicks do.
    if (current.isValid() && hasFocus())
        Q_EMIT frameClicked(current.row());
}

void FrameStrip::mousePressEvent(QMouseEvent *event)
{
    QListView::mousePressEvent(event);
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

void FrameStrip::startDrag(Qt::DropActions)
{
    const QVector<int> rows = selectedRows();
    if (rows.isEmpty())
        return;
    auto *data = new QMimeData;
    data->setData(RowsFormat, encodedRows(rows));
    auto *drag = new QDrag(this);
    drag->setMimeData(data);
    const QModelIndex index = model()->index(rows.first(), 0);
    drag->setPixmap(index.data(FrameModel::ThumbnailRole).value<QPixmap>());
    drag->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
    setDropRow(-1);
}

int FrameStrip::rowForDrop(const QPoint &position) const
{
    const int count = model()->rowCount();
    for (int row = 0; row < count; ++row) {
        if (position.x() < visualRect(model()->index(row, 0)).center().x())
            return row;
    }
    return count;
}

void FrameStrip::setDropRow(int row)
{
    m_dropRow = row;
    viewport()->update();
}

void FrameStrip::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void FrameStrip::dragMoveEvent(QDragMoveEvent *event)
{
    const bool isOwn = event->mimeData()->hasFormat(RowsFormat);
    if (!isOwn && !event->mimeData()->hasUrls() && !offersPicture(*event->mimeData())) {
        event->ignore();
        return;
    }
    if (isOwn)
        event->setDropAction(event->keyboardModifiers() & Qt::ControlModifier ? Qt::CopyAction
                                                                              : Qt::MoveAction);
    setDropRow(rowForDrop(event->pos()));
    event->accept();
}

void FrameStrip::dragLeaveEvent(QDragLeaveEvent *event)
{
    setDropRow(-1);
    event->accept();
}

void FrameStrip::dropEvent(QDropEvent *event)
{
    const int before = rowForDrop(event->pos());
    setDropRow(-1);
    event->accept();
    const QVector<int> rows = decodedRows(event->mimeData()->data(RowsFormat), *model());
    if (!event->mimeData()->hasFormat(RowsFormat))
        Q_EMIT dropped(event->mimeData(), before);
    else if (rows.isEmpty())
        return;
    else if (event->keyboardModifiers() & Qt::ControlModifier)
        Q_EMIT copyWanted(rows, before);
    else
        Q_EMIT moveWanted(rows, before);
}

void FrameStrip::paintEvent(QPaintEvent *event)
{
    // The window may have come to another screen.
    if (auto *frames = qobject_cast<FrameModel *>(model()))
        frames->setPixelRatio(devicePixelRatioF());
    QListView::paintEvent(event);
    if (m_dropRow < 0 || model()->rowCount() == 0)
        return;
    const int count = model()->rowCount();
    const QRect item = visualRect(model()->index(std::min(m_dropRow, count - 1), 0));
    const int x = m_dropRow < count ? item.left() : item.right();
    QPainter painter(viewport());
    painter.fillRect(QRect(x - 1, item.top(), 3, item.height()),
                     palette().color(QPalette::Highlight));
}
