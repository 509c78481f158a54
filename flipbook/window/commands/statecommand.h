#pragma once

#include "flipbook/object/filmstate.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

/// Gives objects another state, beside their pictures, as one step. When the command is pushed the
/// objects have that state already.
class StateCommand : public CNmUndoCmd
{
public:
    struct Change {
        QPointer<CBaseObject> object;
        FilmState before;
        FilmState after;
    };

    /// @p plugin must outlive the command.
    StateCommand(const QString &text, const Plugin &plugin, const QVector<Change> &changes);

    void undo() override;
    void redo() override;

private:
    const Plugin &m_plugin;
    QVector<Change> m_changes;
    bool m_isDone = true;
};
