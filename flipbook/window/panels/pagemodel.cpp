#include "flipbook/window/panels/pagemodel.h"

#include "flipbook/window/session.h"

#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

namespace
{

constexpr int UpdateDelayMs = 200;
constexpr int Reduction = 4;

/// With @p ratio pixels for each of the view's.
QPixmap pictureOf(Page &page, double ratio)
{
    const QSizeF size = page.pageRect().size();
    const double longer = std::max(size.width(), size.height());
    // Painted larger and then reduced, so that thin lines remain.
    const QImage picture = page.rendered(Reduction * PageModel::ThumbnailSide * ratio / longer);
    QPixmap pixmap = QPixmap::fromImage(picture.scaled(
        picture.size() / Reduction, Qt::IgnoreAspectRatio, Qt::SmoothTransformation));
    QPainter painter(&pixmap);
    painter.setPen(QColor(0, 0, 0, 70));
    painter.drawRect(pixmap.rect().adjusted(0, 0, -1, -1));
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

} // namespace

PageModel::PageModel(Session &session, QObject *parent)
    : QAbstractListModel(parent)
    , m_session(session)
    , m_timer(new QTimer(this))
{
    m_timer->setSingleShot(true);
    m_timer->setInterval(UpdateDelayMs);
    connect(m_timer, &QTimer::timeout, this, &PageModel::updateShownPage);
    connect(&session, &Session::pagesChanged, this, &PageModel::reload);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &PageModel::scheduleUpdate);
    connect(&session, &Session::draggingChanged, this, &PageModel::scheduleUpdate);
    reload();
}

void PageModel::reload()
{
    beginResetModel();
    m_pages.clear();
    m_pictures.clear();
    for (Page *page : m_session.document().pages())
        m_pages.append(page);
    endResetModel();
}

void PageModel::scheduleUpdate()
{
    m_timer->start();
}

void PageModel::updateShownPage()
{
    // An undo may have changed any page; their pictures are made again when they are seen.
    m_pictures.clear();
    if (!m_pages.isEmpty())
        Q_EMIT dataChanged(index(0), index(m_pages.size() - 1), {Qt::DecorationRole});
}

Page *PageModel::pageAt(int row) const
{
    return m_pages.value(row);
}

int PageModel::rowOf(const Page *page) const
{
    return m_pages.indexOf(const_cast<Page *>(page));
}

int PageModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_pages.size();
}

QVariant PageModel::data(const QModelIndex &index, int role) const
{
    Page *page = pageAt(index.row());
    if (!page)
        return QVariant();
    switch (role) {
    case Qt::DisplayRole:
        return QString::number(index.row() + 1);
    case Qt::ToolTipRole:
    case Qt::AccessibleTextRole:
        return tr("Page %1 of %2").arg(index.row() + 1).arg(m_pages.size());
    case Qt::DecorationRole: {
        auto known = m_pictures.find(page);
        if (known == m_pictures.end())
            known = m_pictures.insert(page, pictureOf(*page, qApp->devicePixelRatio()));
        // Views tint the picture of a selected item, unless the icon has one of its own for that.
        QIcon icon(*known);
        icon.addPixmap(*known, QIcon::Selected);
        return icon;
    }
    default:
        return QVariant();
    }
}

Qt::ItemFlags PageModel::flags(const QModelIndex &index) const
{
    const Qt::ItemFlags usual = QAbstractListModel::flags(index);
    return index.isValid() ? usual | Qt::ItemIsDragEnabled : usual | Qt::ItemIsDropEnabled;
}
