#include "flipbook/window/commands/geometrycommand.h"

#include "flipbook/window/commands/commandids.h"
#include "host/baseobject.h"

#include <algorithm>

GeometryCommand::GeometryCommand(const QString &text, const QVector<GeometryChange> &changes,
                                 Merging merging)
    : m_changes(changes)
    , m_merging(merging)
{
    setText(text);
}

void GeometryCommand::undo()
{
    for (const GeometryChange &change : qAsConst(m_changes)) {
        if (change.object)
            ObjectHandles::setGeometry(*change.object, change.before);
    }
}

void GeometryCommand::redo()
{
    for (const GeometryChange &change : qAsConst(m_changes)) {
        if (change.object)
            ObjectHandles::setGeometry(*change.object, change.after);
    }
}

int GeometryCommand::id() const
{
    return m_merging == Merging::WithTheLast ? CommandId::Geometry : -1;
}

bool GeometryCommand::mergeWith(const QUndoCommand *next)
{
    const auto *other = static_cast<const GeometryCommand *>(next);
    const bool isSame = other->text() == text() &&
                        std::equal(m_changes.begin(), m_changes.end(), other->m_changes.begin(),
                                   other->m_changes.end(), [](const auto &one, const auto &two) {
                                       return one.object == two.object && one.after == two.before;
                                   });
    if (!isSame)
        return false;
    for (int i = 0; i < m_changes.size(); ++i)
        m_changes[i].after = other->m_changes.at(i).after;
    return true;
}
