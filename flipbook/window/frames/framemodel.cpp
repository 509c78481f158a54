#include "flipbook/window/frames/framemodel.h"

#include "flipbook/object/animatedobject.h"
#include "framework/framework.h"
#include "host/notificationcodes.h"

#include <QtCore/QSet>
#include <QtCore/QTimer>

#include <algorithm>

namespace
{

bool isSame(const Plugin::Frames::value_type &one, const Plugin::Frames::value_type &two)
{
    return one.first == two.first && one.second.cacheKey() == two.second.cacheKey();
}

/// How many frames at the beginning (or, backwards, at the end) two lists share.
template<typename Iterator>
int commonLength(Iterator one, const Iterator &oneEnd, Iterator two, const Iterator &twoEnd)
{
    int length = 0;
    for (; one != oneEnd && two != twoEnd && isSame(*one, *two); ++one, ++two)
        ++length;
    return length;
}

bool shareAPicture(const Plugin::Frames &one, const Plugin::Frames &two)
{
    QSet<qint64> pictures;
    for (const auto &frame : one)
        pictures.insert(frame.second.cacheKey());
    return std::any_of(two.begin(), two.end(), [&pictures](const auto &frame) {
        return pictures.contains(frame.second.cacheKey());
    });
}

} // namespace

FrameModel::FrameModel(const Plugin &plugin, QObject *parent)
    : QAbstractListModel(parent)
    , m_plugin(plugin)
{
    const Notifier *notifier = Framework::instance().notifier();
    connect(notifier, &Notifier::propertyChanged, this, [this](CBaseObject *changed, int id) {
        if (changed == m_object && id == PropertyChange::ShownContent)
            noteContentChange();
    });
    connect(notifier, &Notifier::notified, this, [this](int code) {
        if (code == NotificationCode::FrameListReplaced)
            noteContentChange();
    });
    connect(Framework::instance().undoStack(), &QUndoStack::indexChanged, this,
            &FrameModel::refresh);
}

void FrameModel::setObject(CBaseObject *object)
{
    if (m_object == object)
        return;
    const Plugin::Frames frames = object ? m_plugin.frames(*object) : Plugin::Frames();
    if (shareAPicture(m_frames, frames)) {
        // The successor of the film, after an edit.
        m_object = object;
        refresh();
        return;
    }
    beginResetModel();
    m_object = object;
    m_frames = frames;
    m_thumbnails.clear();
    m_running = -1;
    endResetModel();
    followRunning();
}

void FrameModel::setPixelRatio(double ratio)
{
    if (qFuzzyCompare(ratio, m_pixelRatio))
        return;
    m_pixelRatio = ratio;
    m_thumbnails.clear();
}

/// Within a step the object may show other frames for a moment: look when it has come to rest.
void FrameModel::noteContentChange()
{
    if (m_refreshIsDue)
        return;
    m_refreshIsDue = true;
    QTimer::singleShot(0, this, [this] {
        m_refreshIsDue = false;
        refresh();
    });
}

void FrameModel::refresh()
{
    const Plugin::Frames now = m_object ? m_plugin.frames(*m_object) : Plugin::Frames();
    const int first = commonLength(m_frames.cbegin(), m_frames.cend(), now.cbegin(), now.cend());
    const int shorter = std::min(m_frames.size(), now.size());
    const int last =
        std::min(commonLength(m_frames.crbegin(), m_frames.crend(), now.crbegin(), now.crend()),
                 shorter - first);
    const int removed = m_frames.size() - first - last;
    const int added = now.size() - first - last;
    const int kept = std::min(removed, added);

    if (removed > kept) {
        beginRemoveRows(QModelIndex(), first + kept, first + removed - 1);
        m_frames.erase(m_frames.begin() + first + kept, m_frames.begin() + first + removed);
        endRemoveRows();
    }
    if (added > kept) {
        beginInsertRows(QModelIndex(), first + kept, first + added - 1);
        m_frames = now;
        endInsertRows();
    }
    m_frames = now;
    if (kept > 0)
        Q_EMIT dataChanged(index(first), index(first + kept - 1));
    followRunning();
}

void FrameModel::followRunning()
{
    const int running = m_object ? AnimatedObject(*m_object).shownIndex() : -1;
    if (running == m_running)
        return;
    const int before = m_running;
    m_running = running;
    for (const int row : {before, running}) {
        if (row >= 0 && row < m_frames.size())
            Q_EMIT dataChanged(index(row), index(row), {RunningRole});
    }
    Q_EMIT runningRowChanged(running);
}

int FrameModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : m_frames.size();
}

QPixmap FrameModel::thumbnail(const QImage &picture) const
{
    if (picture.isNull())
        return QPixmap();
    const auto known = m_thumbnails.constFind(picture.cacheKey());
    if (known != m_thumbnails.constEnd())
        return *known;
    // Small pictures keep their size, large ones are reduced.
    QSizeF size = picture.size();
    if (picture.width() > ThumbnailSide || picture.height() > ThumbnailSide)
        size.scale(ThumbnailSide, ThumbnailSide, Qt::KeepAspectRatio);
    const QSize pixels = (size * m_pixelRatio).toSize().expandedTo(QSize(1, 1));
    QPixmap pixmap =
        QPixmap::fromImage(pixels == picture.size() ? picture
                                                    : picture.scaled(pixels, Qt::IgnoreAspectRatio,
                                                                     Qt::SmoothTransformation));
    pixmap.setDevicePixelRatio(m_pixelRatio);
    m_thumbnails.insert(picture.cacheKey(), pixmap);
    return pixmap;
}

QVariant FrameModel::data(const QModelIndex &index, int role) const
{
    if (!index.isValid() || index.row() >= m_frames.size())
        return QVariant();
    const auto &frame = m_frames.at(index.row());
    switch (role) {
    case Qt::DisplayRole:
    case Qt::EditRole:
        return frame.first;
    case Qt::ToolTipRole:
        return tr("%1, %2 × %3 pixels")
            .arg(frame.first)
            .arg(frame.second.width())
            .arg(frame.second.height());
    case Qt::AccessibleTextRole:
        return tr("Frame %1 of %2, %3").arg(index.row() + 1).arg(m_frames.size()).arg(frame.first);
    case ThumbnailRole:
        return thumbnail(frame.second);
    case RunningRole:
        return index.row() == m_running;
    case PictureRole:
        return frame.second;
    default:
        return QVariant();
    }
}

Qt::ItemFlags FrameModel::flags(const QModelIndex &index) const
{
    if (!index.isValid())
        return Qt::ItemIsDropEnabled;
    return QAbstractListModel::flags(index) | Qt::ItemIsEditable | Qt::ItemIsDragEnabled;
}

bool FrameModel::setData(const QModelIndex &index, const QVariant &value, int role)
{
    if (role != Qt::EditRole || !index.isValid() || value.toString() == data(index, role))
        return false;
    Q_EMIT renameWanted(index.row(), value.toString());
    return true;
}
