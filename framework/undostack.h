#pragma once

#include "framework/frameworkglobal.h"

#include <QtWidgets/QUndoStack>

#include <deque>
#include <memory>

/// An undo stack that may be used at any time, also by one of its commands or by who is told
/// something while one runs: QUndoStack still uses a command that has just returned. It can know
/// this only if its commands are run through this class, not through a reference to QUndoStack.
class FRAMEWORK_API UndoStack final : public QUndoStack
{
    Q_OBJECT

public:
    explicit UndoStack(QObject *parent = nullptr);
    ~UndoStack() override;

    /// Takes ownership of @p command and runs its redo(). While another command runs, it is added
    /// to the stack after that one.
    void push(QUndoCommand *command);

    /// Opens and closes a macro, into which commands go. Macros nest. Without an open macro,
    /// endMacro() does nothing.
    void beginMacro(const QString &text);
    void endMacro();
    /// Whether a macro is open that was opened through this class.
    bool isMacroOpen() const;

    /// Deletes all commands and closes all macros: at once, or as soon as the command that is
    /// running has returned. No other command runs until then.
    void drop();
    /// The same with the next turn of the event loop, if no command is running.
    void dropLater();

public Q_SLOTS:
    /// These do nothing while a command runs.
    void undo();
    void redo();
    /// Undoes or redoes until @p index commands are done. Nothing while a macro is open.
    void setIndex(int index);

private:
    /// What is to be done to the stack when the running command has returned.
    struct Waiting {
        enum Kind { Push, BeginMacro, EndMacro };
        Kind kind;
        QString text;
        std::unique_ptr<QUndoCommand> command;
    };

    template<typename Run>
    void run(const Run &run);
    void catchUp();
    void retireCommands();

    std::deque<Waiting> m_waiting;
    int m_openMacros = 0;
    int m_running = 0;
    bool m_isDropPending = false;
    bool m_isDropping = false;
};
