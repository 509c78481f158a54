#pragma once

#include <QtCore/QAbstractListModel>
#include <QtCore/QPointer>
#include <QtGui/QPixmap>

class Page;
class QTimer;
class Session;

/// The pages of the document as a list, with small pictures of them that follow what is done.
class PageModel : public QAbstractListModel
{
    Q_OBJECT

public:
    /// The longer side of a picture, in the view's pixels.
    static constexpr int ThumbnailSide = 96;

    explicit PageModel(Session &session, QObject *parent = nullptr);

    Page *pageAt(int row) const;
    int rowOf(const Page *page) const;

    int rowCount(const QModelIndex &parent = QModelIndex()) const override;
    QVariant data(const QModelIndex &index, int role) const override;
    Qt::ItemFlags flags(const QModelIndex &index) const override;

private:
    void reload();
    void scheduleUpdate();
    void updateShownPage();

    Session &m_session;
    QList<QPointer<Page>> m_pages;
    mutable QHash<const Page *, QPixmap> m_pictures;
    QTimer *m_timer;
};
