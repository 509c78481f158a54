#include "flipbook/window/page/selectiontool.h"

#include "flipbook/object/filmstate.h"
#include "flipbook/window/counted.h"
#include "flipbook/window/page/handlepainting.h"
#include "flipbook/window/page/nudging.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/session.h"

#include <QtCore/QLineF>
#include <QtGui/QPainter>
#include <QtWidgets/QApplication>

using ObjectHandles::Handle;

namespace
{

/// What the host is doing with an object, as the object is told.
constexpr int MovedByHand = 2;
constexpr int LeftAlone = 0;

QVector<GeometryChange> unchanged(const QList<CBaseObject *> &objects)
{
    QVector<GeometryChange> changes;
    for (CBaseObject *object : objects) {
        const ObjectGeometry geometry = ObjectHandles::geometryOf(*object);
        changes.append({object, geometry, geometry});
    }
    return changes;
}

} // namespace

SelectionTool::SelectionTool(Session &session, PageView &view)
    : m_session(session)
    , m_view(view)
{
}

/// The length of a pixel of the screen on the page.
double SelectionTool::unit() const
{
    return 1.0 / m_view.zoom();
}

std::optional<Handle> SelectionTool::handleAt(const QPointF &point) const
{
    const CBaseObject *object = m_session.film();
    if (!object)
        return std::nullopt;
    const ObjectGeometry geometry = ObjectHandles::geometryOf(*object);
    std::optional<Handle> nearest;
    double distance = HandlePainting::Reach * unit();
    for (const Handle handle : ObjectHandles::all()) {
        const QPointF place =
            ObjectHandles::place(geometry, handle, HandlePainting::HandleSize * unit());
        const double length = QLineF(place, point).length();
        if (length <= distance) {
            nearest = handle;
            distance = length;
        }
    }
    return nearest;
}

void SelectionTool::press(const QPointF &point, Qt::KeyboardModifiers modifiers)
{
    Page *page = m_session.page();
    if (!page || isDragging())
        return;
    m_from = m_to = point;
    m_modifiers = modifiers;
    m_selectedBefore = m_session.selection();
    if (const auto handle = handleAt(point)) {
        CBaseObject &object = *m_session.film();
        m_handleDrag.emplace(*handle, FilmState(object).keepsRatio(), object.getImageSize());
        startDrag(State::Handle);
    } else if (CBaseObject *object = page->objectAt(point)) {
        pressObject(object, modifiers);
    } else {
        if (!(modifiers & Qt::ShiftModifier))
            page->selectObjects({});
        m_selectedBefore = m_session.selection();
        m_state = State::RubberBand;
    }
}

void SelectionTool::pressObject(CBaseObject *object, Qt::KeyboardModifiers modifiers)
{
    QList<CBaseObject *> selected = m_session.selection();
    if (modifiers & Qt::ShiftModifier) {
        if (!selected.removeOne(object))
            selected.append(object);
        m_session.page()->selectObjects(selected);
    } else if (!selected.contains(object)) {
        m_session.page()->selectObjects({object});
    }
    if (object->isSelected())
        m_state = State::Pressed;
}

void SelectionTool::startDrag(State state)
{
    m_state = state;
    m_changes = unchanged(m_session.selection());
    for (const GeometryChange &change : qAsConst(m_changes))
        change.object->setStatus(MovedByHand);
    m_session.setDragging(true);
    if (state == State::Handle && m_handleDrag)
        Q_EMIT m_view.hinted(m_handleDrag->hint());
    else
        Q_EMIT m_view.hinted(tr("Shift restricts the direction. Escape cancels."));
}

void SelectionTool::move(const QPointF &point, Qt::KeyboardModifiers modifiers)
{
    m_to = point;
    m_modifiers = modifiers;
    if (m_state == State::Idle)
        updateCursor(point);
    else
        updateDrag();
}

void SelectionTool::updateDrag()
{
    if (m_state == State::Pressed) {
        const double way = QLineF(m_from, m_to).length() / unit();
        if (way < QApplication::startDragDistance())
            return;
        startDrag(State::Moving);
    }
    switch (m_state) {
    case State::Moving:
        moveSelection();
        break;
    case State::Handle: {
        GeometryChange &change = m_changes.first();
        if (!change.object || !m_handleDrag)
            break;
        change.after = m_handleDrag->geometry(change.before, m_from, m_to, m_modifiers);
        ObjectHandles::setGeometry(*change.object, change.after);
        break;
    }
    case State::RubberBand:
        selectInBand();
        break;
    default:
        break;
    }
    m_view.viewport()->update();
}

void SelectionTool::moveSelection()
{
    QPointF way = m_to - m_from;
    if (m_modifiers & Qt::ShiftModifier) {
        if (std::abs(way.x()) > std::abs(way.y()))
            way.setY(0);
        else
            way.setX(0);
    }
    // Whole units: pictures stay sharp.
    way = QPointF(qRound(way.x()), qRound(way.y()));
    for (GeometryChange &change : m_changes) {
        change.after.pos = change.before.pos + way;
        if (change.object)
            change.object->setPos(change.after.pos, true);
    }
}

void SelectionTool::selectInBand()
{
    const QRectF band = QRectF(m_from, m_to).normalized();
    QList<CBaseObject *> selected;
    const QList<CBaseObject *> objects = m_session.page()->objects();
    for (CBaseObject *object : objects) {
        const QRectF bounds = object->mapRectToScene(object->getClientRect());
        if (m_selectedBefore.contains(object) || (object->isEditable() && band.intersects(bounds)))
            selected.append(object);
    }
    if (selected != m_session.selection())
        m_session.page()->selectObjects(selected);
}

void SelectionTool::release()
{
    const State state = m_state;
    if (state == State::Moving)
        finish(counted(m_changes.size(), tr("Move"), tr("Move %1 Objects")));
    else if (state == State::Handle && m_handleDrag)
        finish(m_handleDrag->commandText());
    endDrag();
}

void SelectionTool::finish(const QString &text)
{
    const bool isMoved =
        std::any_of(m_changes.begin(), m_changes.end(),
                    [](const GeometryChange &change) { return change.before != change.after; });
    if (isMoved)
        m_session.push(std::make_unique<GeometryCommand>(text, m_changes));
}

void SelectionTool::endDrag()
{
    for (const GeometryChange &change : qAsConst(m_changes)) {
        if (change.object)
            change.object->setStatus(LeftAlone);
    }
    m_changes.clear();
    m_handleDrag.reset();
    m_state = State::Idle;
    m_session.setDragging(false);
    Q_EMIT m_view.hinted(QString());
    m_view.viewport()->update();
}

void SelectionTool::cancel()
{
    if (!isDragging())
        return;
    for (const GeometryChange &change : qAsConst(m_changes)) {
        if (change.object)
            ObjectHandles::setGeometry(*change.object, change.before);
    }
    if (m_state == State::RubberBand && m_session.page())
        m_session.page()->selectObjects(m_selectedBefore);
    endDrag();
}

bool SelectionTool::keyPress(int key, Qt::KeyboardModifiers modifiers)
{
    if (key == Qt::Key_Escape) {
        if (isDragging())
            cancel();
        else if (m_session.page())
            m_session.page()->selectObjects({});
        return true;
    }
    if (isDragging()) {
        m_modifiers = modifiers;
        updateDrag();
        return true;
    }
    return nudgeSelection(m_session, key, modifiers);
}

void SelectionTool::keyRelease(Qt::KeyboardModifiers modifiers)
{
    if (!isDragging())
        return;
    m_modifiers = modifiers;
    updateDrag();
}

void SelectionTool::updateCursor(const QPointF &point)
{
    QWidget &viewport = *m_view.viewport();
    if (const auto handle = handleAt(point))
        viewport.setCursor(HandlePainting::cursorFor(*handle, m_session.film()->getRotate()));
    else if (m_session.page() && m_session.page()->objectAt(point))
        viewport.setCursor(Qt::SizeAllCursor);
    else
        viewport.unsetCursor();
}

void SelectionTool::paint(QPainter &painter) const
{
    const QList<CBaseObject *> selected = m_session.selection();
    for (const CBaseObject *object : selected)
        HandlePainting::paintOutline(painter, ObjectHandles::geometryOf(*object));
    if (selected.size() == 1 && m_state != State::Moving)
        HandlePainting::paintHandles(painter, ObjectHandles::geometryOf(*selected.first()), unit());
    if (m_state == State::RubberBand)
        paintBand(painter);
    if (m_state == State::Handle && m_handleDrag)
        HandlePainting::paintTip(painter, m_to, m_handleDrag->tip(m_changes.first().after), unit());
}

void SelectionTool::paintBand(QPainter &painter) const
{
    QColor color = m_view.palette().color(QPalette::Highlight);
    QPen pen(color);
    pen.setCosmetic(true);
    painter.setPen(pen);
    color.setAlpha(40);
    painter.setBrush(color);
    painter.drawRect(QRectF(m_from, m_to));
}
