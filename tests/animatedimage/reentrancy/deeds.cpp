#include "tests/animatedimage/reentrancy/deeds.h"

#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

#include <QtCore/QCoreApplication>

namespace
{

void deleteFrame(Scene &scene)
{
    if (!scene.isAlive())
        return;
    Request request(Request::packed(qint32(scene.stage.probe.runningIndex())));
    request.set(scene.object(), SpecialPropertyId::DeleteFrame);
}

void loadState(Scene &scene)
{
    if (!scene.isAlive())
        return;
    QDataStream stream(scene.files.state);
    scene.object()->load(stream);
}

void import(Scene &scene, const QString &path)
{
    if (scene.isAlive())
        scene.object()->loadFromFile(path);
}

void play(Scene &scene, bool run)
{
    if (scene.isAlive())
        scene.object()->playImage(run);
}

void undo(Scene &)
{
    // Qt warns of an undo while a macro is open; a host's button is disabled then.
    UndoStack *stack = Framework::instance().undoStack();
    if (stack->canUndo())
        stack->undo();
}

void redo(Scene &)
{
    UndoStack *stack = Framework::instance().undoStack();
    if (stack->canRedo())
        stack->redo();
}

void replaceAll(Scene &scene)
{
    if (!scene.isAlive())
        return;
    Request request(Request::packed(scene.files.picture));
    request.get(scene.object(), SpecialPropertyId::ReplaceAllFrames);
}

void changeType(Scene &scene)
{
    if (!scene.isAlive())
        return;
    const qint32 type = scene.stage.probe.animatedType() == 1 ? 0 : 1;
    Request request(Request::packed(type, true));
    request.set(scene.object(), SpecialPropertyId::AnimatedType);
}

void release(Scene &scene)
{
    if (scene.isAlive())
        scene.stage.release();
}

} // namespace

const QList<Deed> &deeds()
{
    static const QList<Deed> all{
        {"releases the object", release},
        {"deletes a frame", deleteFrame},
        {"loads another state", loadState},
        {"stops playback", [](Scene &scene) { play(scene, false); }},
        {"undoes", undo},
        {"closes the page",
         [](Scene &scene) {
             if (scene.page())
                 scene.stage.document.removePage(scene.page());
         }},
        {"imports a GIF", [](Scene &scene) { import(scene, scene.files.gif); }},
        {"imports no frames", [](Scene &scene) { import(scene, QStringLiteral("none.gif")); }},
        {"starts playback", [](Scene &scene) { play(scene, true); }},
        {"redoes", redo},
        {"replaces all frames", replaceAll},
        {"changes the type", changeType},
        {"releases the other object",
         [](Scene &scene) {
             if (scene.other())
                 scene.other()->Release();
         }},
        {"releases the object and undoes",
         [](Scene &scene) {
             release(scene);
             undo(scene);
             redo(scene);
         }},
        {"releases the object and lets events run",
         [](Scene &scene) {
             release(scene);
             QCoreApplication::sendPostedEvents();
         }},
    };
    return all;
}
