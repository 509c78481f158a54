#include "flipbook/window/undocontroller.h"

#include "flipbook/window/actionset.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QAction>

UndoController::UndoController(Session &session, ActionSet &actions)
    : QObject(&actions)
    , m_session(session)
    , m_undo(actions.add({QStringLiteral("undo"),
                          tr("&Undo"),
                          QStringLiteral("edit-undo"),
                          {QKeySequence(Qt::CTRL | Qt::Key_Z)},
                          QString()}))
    , m_redo(actions.add(
          {QStringLiteral("redo"),
           tr("&Redo"),
           QStringLiteral("edit-redo"),
           {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)},
           QString()}))
{
    QUndoStack &stack = session.undoStack();
    connect(m_undo, &QAction::triggered, &stack, &QUndoStack::undo);
    connect(m_redo, &QAction::triggered, &stack, &QUndoStack::redo);
    connect(&stack, &QUndoStack::indexChanged, this, &UndoController::update);
    connect(&stack, &QUndoStack::canUndoChanged, this, &UndoController::update);
    connect(&stack, &QUndoStack::canRedoChanged, this, &UndoController::update);
    connect(&session, &Session::draggingChanged, this, &UndoController::update);
    update();
}

void UndoController::update()
{
    const QUndoStack &stack = m_session.undoStack();
    const auto set = [this](QAction &action, bool can, const QString &bare, const QString &full,
                            const QString &step) {
        const QString text = can && !step.isEmpty() ? full.arg(step) : bare;
        action.setEnabled(can && !m_session.isDragging());
        action.setText(text);
        QString plain = text;
        plain.remove(QLatin1Char('&'));
        action.setStatusTip(plain);
        action.setToolTip(QStringLiteral("%1 (%2)").arg(
            plain, action.shortcut().toString(QKeySequence::NativeText)));
    };
    set(*m_undo, stack.canUndo(), tr("&Undo"), tr("&Undo %1"), stack.undoText());
    set(*m_redo, stack.canRedo(), tr("&Redo"), tr("&Redo %1"), stack.redoText());
}
