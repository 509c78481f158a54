#pragma once

#include "framework/frameworkglobal.h"

#include <QtWidgets/QUndoStack>

/// An undo stack that may be emptied at any time, also by one of its commands: QUndoStack still
/// uses a command that has just returned. It can know this only if its commands are run through
/// this class, not through a reference to QUndoStack.
class FRAMEWORK_API UndoStack final : public QUndoStack
{
    Q_OBJECT

public:
    using QUndoStack::QUndoStack;

    /// Takes ownership of @p command and runs its redo().
    void push(QUndoCommand *command);

    /// Deletes all commands and closes all macros: at once, or as soon as the command that is
    /// running has returned. No other command runs until then.
    void drop();
    /// The same with the next turn of the event loop, if no command is running.
    void dropLater();

public Q_SLOTS:
    void undo();
    void redo();
    /// Undoes or redoes until @p index commands are done. Nothing while a macro is open.
    void setIndex(int index);

private:
    template<typename Run>
    void run(const Run &run);
    void retireCommands();

    int m_running = 0;
    bool m_isDropPending = false;
    bool m_isDropping = false;
};
