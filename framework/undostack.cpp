#include "framework/undostack.h"

void UndoStack::push(QUndoCommand *command)
{
    run([this, command] { QUndoStack::push(command); });
}

void UndoStack::undo()
{
    run([this] { QUndoStack::undo(); });
}

void UndoStack::redo()
{
    run([this] { QUndoStack::redo(); });
}

void UndoStack::setIndex(int index)
{
    // One by one: QUndoStack::setIndex() would run the commands that are retired on the way.
    run([this, index] {
        while (this->index() > index && canUndo() && !m_isDropPending)
            QUndoStack::undo();
        while (this->index() < index && canRedo() && !m_isDropPending)
            QUndoStack::redo();
    });
}

void UndoStack::drop()
{
    // A dying command may release objects that it owned, and so come back here.
    if (m_isDropping)
        return;
    m_isDropPending = m_running > 0;
    if (m_isDropPending) {
        retireCommands();
        return;
    }
    m_isDropping = true;
    clear();
    m_isDropping = false;
}

void UndoStack::dropLater()
{
    if (m_running > 0)
        drop();
    else if (!m_isDropping && count() > 0)
        QMetaObject::invokeMethod(this, &UndoStack::drop, Qt::QueuedConnection);
}

template<typename Run>
void UndoStack::run(const Run &run)
{
    ++m_running;
    run();
    --m_running;
    if (m_running == 0 && m_isDropPending)
        drop();
}

/// QUndoStack undoes and redoes no command that is obsolete.
void UndoStack::retireCommands()
{
    for (int i = 0; i < count(); ++i)
        const_cast<QUndoCommand *>(command(i))->setObsolete(true);
}
