#pragma once

#include <QtCore/QObject>
#include <QtCore/QPointer>

class ActionSet;
class PageView;
class Presentation;
class QAction;
class QWidget;
class Session;

/// Starts presentations and puts the window back afterwards. Knows whether films play by
/// themselves.
class PresentController : public QObject
{
    Q_OBJECT

public:
    PresentController(Session &session, ActionSet &actions, PageView &view, QWidget &window);
    ~PresentController() override;

    void present();
    Presentation *presentation() const;

private:
    void comeBack();

    Session &m_session;
    PageView &m_view;
    QWidget &m_window;
    QPointer<Presentation> m_presentation;
    QList<QPointer<QObject>> m_selected;
};

/// Whether films may start by themselves: not if the user has turned that off, or has asked the
/// system for less motion.
bool playsByItself();
