#pragma once

#include "framework/objecthandles.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>
#include <QtCore/QVector>

class CBaseObject;

/// One object that is given another place, size or angle.
struct GeometryChange {
    QPointer<CBaseObject> object;
    ObjectGeometry before;
    ObjectGeometry after;
};

/// Objects are moved, resized or turned, as one step.
class GeometryCommand : public CNmUndoCmd
{
public:
    /// Steps that carry on the one before become part of it, such as arrow keys pressed in a row.
    enum class Merging { Never, WithTheLast };

    GeometryCommand(const QString &text, const QVector<GeometryChange> &changes,
                    Merging merging = Merging::Never);

    void undo() override;
    void redo() override;
    int id() const override;
    bool mergeWith(const QUndoCommand *next) override;

private:
    QVector<GeometryChange> m_changes;
    Merging m_merging;
};
