#pragma once

#include <QtWidgets/QWidget>

class PageModel;
class QListView;
class Session;

/// The pages as small pictures; the one that is chosen is shown.
class PagesPanel : public QWidget
{
    Q_OBJECT

public:
    explicit PagesPanel(Session &session, QWidget *parent = nullptr);

private:
    void followSession();

    Session &m_session;
    PageModel *m_model;
    QListView *m_view;
};
