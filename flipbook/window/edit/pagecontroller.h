#pragma once

#include <QtCore/QObject>

class ActionSet;
class QAction;
class Session;

/// Adds, duplicates, deletes and moves pages, and goes from one to the next.
class PageController : public QObject
{
    Q_OBJECT

public:
    PageController(Session &session, ActionSet &actions);

    /// Puts page @p row before page @p before, counted from 0.
    void move(int row, int before);
    /// Puts a copy of page @p row before page @p before, and shows it.
    void copy(int row, int before);

private:
    int shownIndex() const;
    void addPage();
    void deletePage();
    void go(int step);
    void update();

    Session &m_session;
    QAction *m_delete;
    QAction *m_up;
    QAction *m_down;
    QAction *m_previous;
    QAction *m_next;
};
