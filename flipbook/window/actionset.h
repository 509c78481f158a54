#pragma once

#include <QtCore/QMap>
#include <QtCore/QObject>
#include <QtGui/QIcon>
#include <QtGui/QKeySequence>

class QAction;
class QWidget;

/// The actions of a window by their ids. Whoever can do something adds an action for it; menus,
/// tool bars and the sheet of shortcuts take from here what is there.
class ActionSet : public QObject
{
    Q_OBJECT

public:
    /// Actions are added to @p window, so that their shortcuts work everywhere in it.
    explicit ActionSet(QWidget &window);

    struct Look {
        QString id;   ///< also the object name
        QString text; ///< with its mnemonic, in sentence case
        QString icon; ///< a name of the freedesktop list; may be empty
        QList<QKeySequence> keys;
        QString toolTip; ///< empty: the text
    };

    QAction *add(const Look &look);
    /// An action that was made elsewhere.
    void add(const QString &id, QAction *action);

    /// Null for an id that nobody has added.
    QAction *action(const QString &id) const { return m_actions.value(id); }
    /// In the order of their ids.
    QList<QAction *> all() const { return m_actions.values(); }

private:
    void describe(QAction *action, const QString &toolTip);

    QWidget &m_window;
    QMap<QString, QAction *> m_actions;
};

/// The keys of a standard action as the platform has them.
QList<QKeySequence> standardKeys(QKeySequence::StandardKey key);
