#pragma once

#include <QtCore/QObject>
#include <QtCore/QRectF>

#include <functional>

class ActionSet;
class CBaseObject;
class QAction;
class Session;

/// The order of stacking, aligning, mirror and flip of the selected objects.
class ArrangeController : public QObject
{
    Q_OBJECT

public:
    ArrangeController(Session &session, ActionSet &actions);

private:
    /// The way of an object whose bounds are @p own to where it is aligned within @p whole.
    using Way = std::function<QPointF(const QRectF &own, const QRectF &whole)>;

    QAction *add(ActionSet &actions, const char *id, const QString &text, const char *icon,
                 const QKeySequence &key, const std::function<void()> &act);
    void addStacking(ActionSet &actions);
    void addAligning(ActionSet &actions);
    void stack(const QString &text, int step, bool toTheEnd);
    void align(const QString &text, const Way &way);
    void toggle(const QString &text, bool mirrors);
    void update();

    Session &m_session;
    QList<QAction *> m_needSelection;
};
