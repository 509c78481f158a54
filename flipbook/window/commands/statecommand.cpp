#include "flipbook/window/commands/statecommand.h"

StateCommand::StateCommand(const QString &text, const Plugin &plugin,
                           const QVector<Change> &changes)
    : m_plugin(plugin)
    , m_changes(changes)
{
    setText(text);
}

void StateCommand::undo()
{
    m_isDone = false;
    for (const Change &change : qAsConst(m_changes)) {
        if (change.object)
            change.before.giveTo(m_plugin, *change.object);
    }
}

void StateCommand::redo()
{
    if (m_isDone)
        return;
    m_isDone = true;
    for (const Change &change : qAsConst(m_changes)) {
        if (change.object)
            change.after.giveTo(m_plugin, *change.object);
    }
}
