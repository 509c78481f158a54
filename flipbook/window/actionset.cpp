#include "flipbook/window/actionset.h"

#include "flipbook/window/icons/icons.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QWidget>

ActionSet::ActionSet(QWidget &window)
    : QObject(&window)
    , m_window(window)
{
}

QAction *ActionSet::add(const Look &look)
{
    auto *action = new QAction(look.text, &m_window);
    if (!look.icon.isEmpty())
        action->setIcon(Icons::icon(look.icon));
    action->setShortcuts(look.keys);
    describe(action, look.toolTip);
    add(look.id, action);
    return action;
}

void ActionSet::add(const QString &id, QAction *action)
{
    action->setObjectName(id);
    m_window.addAction(action);
    m_actions.insert(id, action);
}

/// Tool tips name the shortcut, which tool bars do not show otherwise.
void ActionSet::describe(QAction *action, const QString &toolTip)
{
    QString text = toolTip.isEmpty() ? action->text() : toolTip;
    text.remove(QLatin1Char('&')).remove(QChar(0x2026));
    action->setStatusTip(text);
    const QString keys = action->shortcut().toString(QKeySequence::NativeText);
    action->setToolTip(keys.isEmpty() ? text : QStringLiteral("%1 (%2)").arg(text, keys));
}

QList<QKeySequence> standardKeys(QKeySequence::StandardKey key)
{
    return QKeySequence::keyBindings(key);
}
