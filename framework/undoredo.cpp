#include "host/undoredo.h"

#include "framework/framework.h"

CNmUndoCmd::CNmUndoCmd(QUndoCommand *parent)
    : QUndoCommand(parent)
{
}

CNmUndoCmd::~CNmUndoCmd() = default;

int CNmUndoCmd::getIdxCmd()
{
    return m_idxCmd;
}

void CNmUndoCmd::setIdxCmd(int index)
{
    m_idxCmd = index;
}

QString CNmUndoCmd::getActionName(ILocalize *localize) const
{
    return localize ? localize->translated(text(), text()) : text();
}

CUndoRedo *CUndoRedo::GetInstance()
{
    static CUndoRedo instance;
    return &instance;
}

void CUndoRedo::push(CNmUndoCmd *command)
{
    if (!command)
        return;
    UndoStack *stack = Framework::instance().undoStack();
    // Numbered beforehand: the push may delete a command that merges or turns out to be obsolete.
    command->setIdxCmd(stack->index());
    stack->push(command);
}
