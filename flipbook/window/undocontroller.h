#pragma once

#include <QtCore/QObject>

class ActionSet;
class QAction;
class Session;

/// Undo and redo, with the text of the step in menu and tool tip.
class UndoController : public QObject
{
    Q_OBJECT

public:
    UndoController(Session &session, ActionSet &actions);

private:
    void update();

    Session &m_session;
    QAction *m_undo;
    QAction *m_redo;
};
