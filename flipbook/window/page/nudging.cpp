#include "flipbook/window/page/nudging.h"

#include "flipbook/window/commands/geometrycommand.h"
#include "flipbook/window/session.h"

#include <QtCore/QCoreApplication>

namespace
{

constexpr double Step = 1.0;
constexpr double LargeStep = 10.0;

QPointF directionOf(int key)
{
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

} // namespace

bool nudgeSelection(Session &session, int key, Qt::KeyboardModifiers modifiers)
{
    const QPointF direction = directionOf(key);
    if (direction.isNull() || modifiers & (Qt::ControlModifier | Qt::AltModifier))
        return false;
    const double step = modifiers & Qt::ShiftModifier ? LargeStep : Step;
    QVector<GeometryChange> changes;
    const QList<CBaseObject *> selected = session.selection();
    for (CBaseObject *object : selected) {
        const ObjectGeometry before = ObjectHandles::geometryOf(*object);
        ObjectGeometry after = before;
        after.pos += direction * step;
        changes.append({object, before, after});
    }
    if (changes.isEmpty())
        return false;
    session.push(
        std::make_unique<GeometryCommand>(QCoreApplication::translate("SelectionTool", "Nudge"),
                                          changes, GeometryCommand::Merging::WithTheLast));
    return true;
}
