#pragma once

#include "flipbook/window/commands/geometrycommand.h"
#include "flipbook/window/page/handledrag.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QRectF>

#include <optional>

class PageView;
class QPainter;
class Session;

/// Selects, moves, resizes and turns the objects of the shown page with the mouse and the arrow
/// keys. All points are in page coordinates.
class SelectionTool
{
    Q_DECLARE_TR_FUNCTIONS(SelectionTool)

public:
    SelectionTool(Session &session, PageView &view);

    void press(const QPointF &point, Qt::KeyboardModifiers modifiers);
    void move(const QPointF &point, Qt::KeyboardModifiers modifiers);
    void release();
    /// True when the key means something here.
    bool keyPress(int key, Qt::KeyboardModifiers modifiers);
    void keyRelease(Qt::KeyboardModifiers modifiers);
    /// Gives back what was before the drag.
    void cancel();

    bool isDragging() const { return m_state != State::Idle; }

    /// Outlines and handles of the selection, the rubber band, and the size while resizing. The
    /// painter is in page coordinates.
    void paint(QPainter &painter) const;

private:
    enum class State { Idle, Pressed, Moving, Handle, RubberBand };

    double unit() const;
    std::optional<ObjectHandles::Handle> handleAt(const QPointF &point) const;
    void pressObject(CBaseObject *object, Qt::KeyboardModifiers modifiers);
    void startDrag(State state);
    void updateDrag();
    void moveSelection();
    void selectInBand();
    void finish(const QString &text);
    void endDrag();
    void updateCursor(const QPointF &point);
    void paintBand(QPainter &painter) const;

    Session &m_session;
    PageView &m_view;
    State m_state = State::Idle;
    QPointF m_from;
    QPointF m_to;
    Qt::KeyboardModifiers m_modifiers;
    QVector<GeometryChange> m_changes;
    std::optional<HandleDrag> m_handleDrag;
    QList<CBaseObject *> m_selectedBefore;
};
