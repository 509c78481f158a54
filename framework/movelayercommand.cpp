#include "framework/movelayercommand.h"

#include <limits>
#include <new>

MoveLayerCommand::MoveLayerCommand(Page *page, const QList<CBaseObject *> &objects,
                                   Page::Layer target)
    : m_page(page)
    , m_target(target)
{
    for (CBaseObject *object : objects)
        m_moves.append(Move{object, {}});
}

void MoveLayerCommand::redo()
try {
    for (Move &move : m_moves) {
        if (!m_page || !m_page->holds(move.object))
            continue;
        move.from = m_page->placeOf(move.object);
        m_page->placeObject(move.object, {m_target, std::numeric_limits<int>::max()});
    }
} catch (const std::bad_alloc &) {
}

void MoveLayerCommand::undo()
try {
    // Backwards: each place was noted when the objects before it had already gone.
    for (auto move = m_moves.rbegin(); move != m_moves.rend(); ++move) {
        if (m_page && m_page->holds(move->object))
            m_page->placeObject(move->object, move->from);
    }
} catch (const std::bad_alloc &) {
}
