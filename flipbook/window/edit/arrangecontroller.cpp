#include "flipbook/window/edit/arrangecontroller.h"

#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/geometrycommand.h"
#include "flipbook/window/commands/objectchange.h"
#include "flipbook/window/commands/pagecommands.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QAction>

namespace
{

QRectF boundsOf(const CBaseObject &object)
{
    return object.mapRectToScene(object.getClientRect());
}

} // namespace

ArrangeController::ArrangeController(Session &session, ActionSet &actions)
    : QObject(&actions)
    , m_session(session)
{
    addStacking(actions);
    addAligning(actions);
    add(actions, "mirror", tr("&Mirror"), "", QKeySequence(Qt::CTRL | Qt::Key_M),
        [this] { toggle(tr("Mirror"), true); });
    add(actions, "flip", tr("&Flip"), "", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_M),
        [this] { toggle(tr("Flip"), false); });
    connect(&session, &Session::selectionChanged, this, &ArrangeController::update);
    update();
}

QAction *ArrangeController::add(ActionSet &actions, const char *id, const QString &text,
                                const char *icon, const QKeySequence &key,
                                const std::function<void()> &act)
{
    QAction *action =
        actions.add({QLatin1String(id), text, QLatin1String(icon),
                     key.isEmpty() ? QList<QKeySequence>() : QList<QKeySequence>{key}, QString()});
    connect(action, &QAction::triggered, this, act);
    m_needSelection.append(action);
    return action;
}

void ArrangeController::addStacking(ActionSet &actions)
{
    add(actions, "raise", tr("&Raise"), "object-raise", QKeySequence(Qt::CTRL | Qt::Key_Up),
        [this] { stack(tr("Raise"), 1, false); });
    add(actions, "lower", tr("&Lower"), "object-lower", QKeySequence(Qt::CTRL | Qt::Key_Down),
        [this] { stack(tr("Lower"), -1, false); });
    add(actions, "raise-to-top", tr("Raise to &top"), "",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Up),
        [this] { stack(tr("Raise to Top"), 1, true); });
    add(actions, "lower-to-bottom", tr("Lower to &bottom"), "",
        QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Down),
        [this] { stack(tr("Lower to Bottom"), -1, true); });
}

void ArrangeController::addAligning(ActionSet &actions)
{
    const auto aligning = [this, &actions](const char *id, const QString &text, const QString &step,
                                           const Way &way) {
        add(actions, id, text, "", {}, [this, step, way] { align(step, way); });
    };
    aligning("align-left", tr("Align &left"), tr("Align Left"),
             [](const QRectF &own, const QRectF &whole) {
                 return QPointF(whole.left() - own.left(), 0);
             });
    aligning("align-center", tr("Align &centre"), tr("Align Centre"),
             [](const QRectF &own, const QRectF &whole) {
                 return QPointF(whole.center().x() - own.center().x(), 0);
             });
    aligning("align-right", tr("Align &right"), tr("Align Right"),
             [](const QRectF &own, const QRectF &whole) {
                 return QPointF(whole.right() - own.right(), 0);
             });
    aligning(
        "align-top", tr("Align &top"), tr("Align Top"),
        [](const QRectF &own, const QRectF &whole) { return QPointF(0, whole.top() - own.top()); });
    aligning("align-middle", tr("Align &middle"), tr("Align Middle"),
             [](const QRectF &own, const QRectF &whole) {
                 return QPointF(0, whole.center().y() - own.center().y());
             });
    aligning("align-bottom", tr("Align &bottom"), tr("Align Bottom"),
             [](const QRectF &own, const QRectF &whole) {
                 return QPointF(0, whole.bottom() - own.bottom());
             });
}

void ArrangeController::update()
{
    for (QAction *action : qAsConst(m_needSelection))
        action->setEnabled(!m_session.selection().isEmpty());
}

/// Selected objects keep their order among themselves. Backgrounds stay where they are.
void ArrangeController::stack(const QString &text, int step, bool toTheEnd)
{
    const QList<CBaseObject *> before = normalObjects(*m_session.page());
    QList<CBaseObject *> order = before;
    QList<CBaseObject *> selected;
    const QList<CBaseObject *> chosen = m_session.selection();
    for (CBaseObject *object : chosen) {
        if (before.contains(object))
            selected.append(object);
    }
    if (toTheEnd) {
        for (CBaseObject *object : qAsConst(selected))
            order.removeOne(object);
        order = step > 0 ? order + selected : selected + order;
    } else {
        if (step > 0)
            std::reverse(selected.begin(), selected.end());
        for (CBaseObject *object : qAsConst(selected)) {
            const int from = order.indexOf(object);
            const int to = from + step;
            const bool isFree = to >= 0 && to < order.size() && !selected.contains(order.at(to));
            if (isFree)
                order.move(from, to);
        }
    }
    if (order != before && order.size() == before.size())
        m_session.push(std::make_unique<StackCommand>(text, *m_session.page(), order));
}

/// One object is aligned with the page, several with what they cover together.
void ArrangeController::align(const QString &text, const Way &way)
{
    const QList<CBaseObject *> selected = m_session.selection();
    QRectF whole = m_session.page()->pageRect();
    if (selected.size() > 1) {
        whole = QRectF();
        for (const CBaseObject *object : selected)
            whole |= boundsOf(*object);
    }
    QVector<GeometryChange> changes;
    for (CBaseObject *object : selected) {
        const ObjectGeometry before = ObjectHandles::geometryOf(*object);
        ObjectGeometry after = before;
        after.pos += way(boundsOf(*object), whole);
        if (after != before)
            changes.append({object, before, after});
    }
    if (!changes.isEmpty())
        m_session.push(std::make_unique<GeometryCommand>(text, changes));
}

void ArrangeController::toggle(const QString &text, bool mirrors)
{
    changeObjects(m_session, text, m_session.selection(), [mirrors](CBaseObject &object) {
        if (mirrors)
            object.setMirror(!object.isMirrored(), true);
        else
            object.setFlip(!object.isFlipped(), true);
    });
}
