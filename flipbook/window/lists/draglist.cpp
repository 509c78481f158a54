#include "flipbook/window/lists/draglist.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QDataStream>
#include <QtGui/QDrag>
#include <QtGui/QDropEvent>
#include <QtGui/QPainter>

#include <algorithm>

namespace
{

constexpr int MarkWidth = 3;

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

DragList::DragList(const QString &format, QWidget *parent)
    : QListView(parent)
    , m_format(format)
{
    setFrameShape(QFrame::NoFrame);
    setViewMode(IconMode);
    setWrapping(false);
    setMovement(Static);
    // After the movement, which also sets these.
    setDragEnabled(true);
    viewport()->setAcceptDrops(true);
}

QVector<int> DragList::selectedRows() const
{
    QVector<int> rows;
    const QModelIndexList indexes = selectionModel()->selectedIndexes();
    for (const QModelIndex &index : indexes)
        rows.append(index.row());
    std::sort(rows.begin(), rows.end());
    return rows;
}

bool DragList::takes(const QMimeData &) const
{
    return false;
}

QPixmap DragList::dragPicture(const QModelIndex &index) const
{
    return index.data(Qt::DecorationRole).value<QIcon>().pixmap(iconSize());
}

QItemSelectionModel::SelectionFlags DragList::selectionCommand(const QModelIndex &index,
                                                               const QEvent *event) const
{
    if (selectionMode() != SingleSelection)
        return QListView::selectionCommand(index, event);
    return index.isValid() ? QItemSelectionModel::ClearAndSelect : QItemSelectionModel::NoUpdate;
}

void DragList::startDrag(Qt::DropActions)
{
    const QVector<int> rows = selectedRows();
    if (rows.isEmpty())
        return;
    auto *data = new QMimeData;
    data->setData(m_format, encodedRows(rows));
    auto *drag = new QDrag(this);
    drag->setMimeData(data);
    drag->setPixmap(dragPicture(model()->index(rows.first(), 0)));
    drag->exec(Qt::MoveAction | Qt::CopyAction, Qt::MoveAction);
    setDropRow(-1);
}

int DragList::rowForDrop(const QPoint &position) const
{
    const int count = model()->rowCount();
    for (int row = 0; row < count; ++row) {
        const QPoint centre = visualRect(model()->index(row, 0)).center();
        if (flow() == LeftToRight ? position.x() < centre.x() : position.y() < centre.y())
            return row;
    }
    return count;
}

void DragList::setDropRow(int row)
{
    m_dropRow = row;
    viewport()->update();
}

/// Rows beyond the edge come in sight while something is held there.
void DragList::scrollNearTheEdge(const QPoint &position)
{
    const int margin = autoScrollMargin();
    if (!viewport()->rect().adjusted(margin, margin, -margin, -margin).contains(position))
        startAutoScroll();
}

void DragList::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void DragList::dragMoveEvent(QDragMoveEvent *event)
{
    const bool isOwn = event->mimeData()->hasFormat(m_format);
    if (!isOwn && !takes(*event->mimeData())) {
        event->ignore();
        return;
    }
    if (isOwn)
        event->setDropAction(event->keyboardModifiers() & Qt::ControlModifier ? Qt::CopyAction
                                                                              : Qt::MoveAction);
    setDropRow(rowForDrop(event->pos()));
    scrollNearTheEdge(event->pos());
    event->accept();
}

void DragList::dragLeaveEvent(QDragLeaveEvent *event)
{
    stopAutoScroll();
    setDropRow(-1);
    event->accept();
}

void DragList::dropEvent(QDropEvent *event)
{
    const int before = rowForDrop(event->pos());
    stopAutoScroll();
    setDropRow(-1);
    event->accept();
    const QVector<int> rows = decodedRows(event->mimeData()->data(m_format), *model());
    if (!event->mimeData()->hasFormat(m_format))
        Q_EMIT dropped(event->mimeData(), before);
    else if (rows.isEmpty())
        return;
    else if (event->keyboardModifiers() & Qt::ControlModifier)
        Q_EMIT copyWanted(rows, before);
    else
        Q_EMIT moveWanted(rows, before);
}

/// A line between two rows, or after the last one.
QRect DragList::dropMark() const
{
    const int count = model()->rowCount();
    const QRect item = visualRect(model()->index(std::min(m_dropRow, count - 1), 0));
    const bool isAfter = m_dropRow >= count;
    if (flow() == LeftToRight)
        return {(isAfter ? item.right() : item.left()) - MarkWidth / 2, item.top(), MarkWidth,
                item.height()};
    return {item.left(), (isAfter ? item.bottom() : item.top()) - MarkWidth / 2, item.width(),
            MarkWidth};
}

void DragList::paintEvent(QPaintEvent *event)
{
    QListView::paintEvent(event);
    if (m_dropRow < 0 || model()->rowCount() == 0)
        return;
    QPainter painter(viewport());
    painter.fillRect(dropMark(), palette().color(QPalette::Highlight));
}
