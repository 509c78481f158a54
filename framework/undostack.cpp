#include "framework/undostack.h"

#include "host/undoredo.h"

namespace
{

/// A command whose redo() has run already when it is added to the stack.
class DoneCommand final : public CNmUndoCmd
{
public:
    DoneCommand(std::unique_ptr<QUndoCommand> command, int index)
        : m_command(std::move(command))
    {
        setText(m_command->text());
        setIdxCmd(index);
    }

    void undo() override { m_command->undo(); }
    void redo() override
    {
        if (!m_isDone)
            m_command->redo();
        m_isDone = false;
    }

private:
    std::unique_ptr<QUndoCommand> m_command;
    bool m_isDone = true;
};

/// Counts as a running command for as long as it lives.
class Running
{
public:
    explicit Running(int &count)
        : m_count(count)
    {
        ++m_count;
    }
    ~Running() { --m_count; }
    Q_DISABLE_COPY(Running)

private:
    int &m_count;
};

} // namespace

UndoStack::UndoStack(QObject *parent)
    : QUndoStack(parent)
{
    connect(this, &QUndoStack::indexChanged, this, [this] {
        // An open macro is on the stack: if the stack is empty, it was cleared with its macros.
        if (m_running == 0 && count() == 0)
            m_openMacros = 0;
    });
}

UndoStack::~UndoStack() = default;

void UndoStack::push(QUndoCommand *command)
{
    if (m_running == 0) {
        run([this, command] { QUndoStack::push(command); });
        return;
    }
    // QUndoStack would delete those that can be redone, and the running one may be among them.
    std::unique_ptr<QUndoCommand> owned(command);
    command->redo();
    m_waiting.push_back({Waiting::Push, QString(), std::move(owned)});
}

void UndoStack::beginMacro(const QString &text)
{
    if (m_running > 0) {
        m_waiting.push_back({Waiting::BeginMacro, text, nullptr});
        ++m_openMacros;
        return;
    }
    QUndoStack::beginMacro(text);
    // Who listens may have dropped it.
    if (count() > 0)
        ++m_openMacros;
}

void UndoStack::endMacro()
{
    if (m_openMacros == 0)
        return;
    --m_openMacros;
    if (m_running > 0)
        m_waiting.push_back({Waiting::EndMacro, QString(), nullptr});
    else
        QUndoStack::endMacro();
}

bool UndoStack::isMacroOpen() const
{
    return m_openMacros > 0;
}

void UndoStack::undo()
{
    if (m_running == 0)
        run([this] { QUndoStack::undo(); });
}

void UndoStack::redo()
{
    if (m_running == 0)
        run([this] { QUndoStack::redo(); });
}

void UndoStack::setIndex(int index)
{
    if (m_running > 0)
        return;
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
    m_waiting.clear();
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
    {
        const Running running(m_running);
        run();
        catchUp();
    }
    if (m_isDropPending)
        drop();
}

/// Adds to the stack what was pushed while a command ran. Who listens may push more.
void UndoStack::catchUp()
{
    while (!m_waiting.empty() && !m_isDropPending) {
        Waiting next = std::move(m_waiting.front());
        m_waiting.pop_front();
        switch (next.kind) {
        case Waiting::Push:
            QUndoStack::push(new DoneCommand(std::move(next.command), index()));
            break;
        case Waiting::BeginMacro:
            QUndoStack::beginMacro(next.text);
            break;
        case Waiting::EndMacro:
            QUndoStack::endMacro();
            break;
        }
    }
}

/// QUndoStack undoes and redoes no command that is obsolete.
void UndoStack::retireCommands()
{
    for (int i = 0; i < count(); ++i)
        const_cast<QUndoCommand *>(command(i))->setObsolete(true);
}
