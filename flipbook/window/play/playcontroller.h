#pragma once

#include <QtCore/QObject>

class ActionSet;
class QAction;
class Session;

/// Plays, stops and steps the selected films; with nothing selected, all films of the page.
class PlayController : public QObject
{
    Q_OBJECT

public:
    PlayController(Session &session, ActionSet &actions);

    void togglePlaying();

private:
    void step(int id);
    void update();

    Session &m_session;
    QAction *m_play;
    QAction *m_next;
    QAction *m_previous;
};
