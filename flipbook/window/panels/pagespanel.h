#pragma once

#include <QtWidgets/QWidget>

class DragList;
class PageModel;
class Session;

/// The pages as small pictures; the one that is chosen is shown.
class PagesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PagesPanel(Session &session, QWidget *parent = nullptr);

    /// Pages are dragged in it to other places.
    DragList &list() const { return *m_view; }

private:
    void followSession();

    Session &m_session;
    PageModel *m_model;
    DragList *m_view;
};
