#include "tests/animatedimage/reentrancy/aftermath.h"

#include "framework/framework.h"
#include "tests/support/usability.h"

#include <QtCore/QCoreApplication>

namespace
{

QString flawOfTheObject(Scene &scene)
{
    if (scene.page())
        scene.page()->rendered(0.1);
    return scene.isAlive() ? Usability::flaw(*scene.object(), scene.stage.document) : QString();
}

} // namespace

QString flawAfter(Scene &scene)
{
    UndoStack &stack = *Framework::instance().undoStack();
    if (scene.heardTooLate() > 0)
        return QStringLiteral("the host is told of an object that is gone");
    if (GetFramework()->isUndoMacroOpen())
        return QStringLiteral("a macro is still open");
    if (stack.index() > stack.count())
        return QStringLiteral("the undo stack is damaged");
    if (scene.page())
        scene.page()->rendered(0.1);
    QCoreApplication::sendPostedEvents();
    const QString flaw = flawOfTheObject(scene);
    if (!flaw.isEmpty())
        return flaw;
    stack.setIndex(0);
    stack.setIndex(stack.count());
    const QString flawAfterUndo = flawOfTheObject(scene);
    Framework::instance().dropUndoCommands();
    return flawAfterUndo;
}
