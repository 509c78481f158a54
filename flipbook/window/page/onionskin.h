#pragma once

#include "flipbook/object/plugin.h"

#include <QtCore/QObject>

class ActionSet;
class PageView;
class QPainter;
class Session;

/// Shows the frames before and after the one that is seen, faintly, on the selected film. Off at
/// first, and while the film plays.
class OnionSkin : public QObject
{
    Q_OBJECT

public:
    OnionSkin(Session &session, PageView &view, ActionSet &actions);

    /// The painter is in page coordinates.
    void paint(QPainter &painter) const;

private:
    Session &m_session;
    bool m_isOn = false;
};
