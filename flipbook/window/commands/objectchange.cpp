#include "flipbook/window/commands/objectchange.h"

#include "flipbook/window/commands/statecommand.h"
#include "flipbook/window/session.h"

void changeObjects(Session &session, const QString &text, const QList<CBaseObject *> &objects,
                   const std::function<void(CBaseObject &object)> &change)
{
    QVector<StateCommand::Change> changes;
    for (CBaseObject *object : objects) {
        const FilmState before(*object);
        change(*object);
        const FilmState after(*object);
        if (after != before)
            changes.append({object, before, after});
    }
    if (!changes.isEmpty())
        session.push(std::make_unique<StateCommand>(text, session.plugin(), changes));
}
