#pragma once

#include "framework/page.h"
#include "host/baseobject.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

/// Moves objects of a page onto the top of one of its layers. Objects and a page that are gone
/// are left out, and so are those that memory does not suffice for.
class MoveLayerCommand final : public CNmUndoCmd
{
public:
    MoveLayerCommand(Page *page, const QList<CBaseObject *> &objects, Page::Layer target);

    void undo() override;
    void redo() override;

private:
    struct Move {
        QPointer<CBaseObject> object;
        Page::Place from;
    };

    QPointer<Page> m_page;
    Page::Layer m_target;
    QVector<Move> m_moves;
};
