#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QAbstractListModel>
#include <QtCore/QHash>
#include <QtCore/QPointer>
#include <QtGui/QPixmap>

/// The frames of one animated image as a list, read through the door. It follows the object: what
/// is inserted, removed or changed there appears as just that here.
class FrameModel : public QAbstractListModel
{
    Q_OBJECT

public:
    enum Role {
        ThumbnailRole = Qt::UserRole, ///< QPixmap, at most ThumbnailSide on a side
        RunningRole,                  ///< bool: the frame that the object shows
        PictureRole,                  ///< QImage: the full picture
    };

    static constexpr int ThumbnailSide = 96;

    /// @p plugin must outlive the model.
    explicit FrameModel(const Plugin &plugin, QObject *parent = nullptr);

    /// Shows the frames of @p object; null for none.
    void setObject(CBaseObject *object);
    CBaseObject *object() const { return m_object; }
    /// Thumbnails have this many pixels for each of the view's.
    void setPixelRatio(double ratio);

    /// Compares the list with the object's and takes over what has changed.
    void refresh();

    int runningRow() const { return m_running; }

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;
    bool setData(const QModelIndex &index, const QVariant &value, int role) override;

Q_SIGNALS:
    /// The user has typed another name in place.
    void renameWanted(int row, const QString &name);
    void runningRowChanged(int row);

private:
    void followRunning();
    void noteContentChange();
    QPixmap thumbnail(const QImage &picture) const;

    const Plugin &m_plugin;
    QPointer<CBaseObject> m_object;
    Plugin::Frames m_frames;
    int m_running = -1;
    double m_pixelRatio = 1.0;
    bool m_refreshIsDue = false;
    mutable QHash<qint64, QPixmap> m_thumbnails; ///< by the picture's cache key
};
