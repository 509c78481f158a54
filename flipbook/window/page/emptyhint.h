#pragma once

#include <QtWidgets/QWidget>

class PageView;
class QAction;
class Session;

/// What an empty page says: that films are dropped here, with a button that opens them.
class EmptyHint : public QWidget
{
    Q_OBJECT

public:
    EmptyHint(Session &session, PageView &view, QAction &import);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void update();

    Session &m_session;
    PageView &m_view;
};
