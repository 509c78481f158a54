#include "host/framework.h"
#include "tests/animatedimage/walks/modelobject.h"
#include "tests/animatedimage/walks/walkfiles.h"

namespace
{

QString translated(const char *id, const char *fallback)
{
    return GetFramework()->translated(QString::fromLatin1(id), QString::fromLatin1(fallback));
}

/// A frame as the buffer of a command keeps it: unmeasured.
ModelFrame recorded(const ModelFrame &frame)
{
    PicturePool &pool = PicturePool::instance();
    ModelFrame record(frame.name, pool.plain(pool.streamed(frame.picture)));
    record.size = frame.size;
    return record;
}

} // namespace

void ModelHost::push(const ModelEdit &edit, const QString &text)
{
    if (isMacroOpen) {
        commands.last().edits.append(edit);
        return;
    }
    commands.resize(doneCommands);
    commands.append({text, {edit}});
    ++doneCommands;
}

void ModelHost::openMacro(const QString &text)
{
    commands.resize(doneCommands);
    commands.append({text, {}});
    isMacroOpen = true;
}

void ModelHost::closeMacro()
{
    isMacroOpen = false;
    ++doneCommands;
}

void ModelHost::dropCommands()
{
    commands.clear();
    doneCommands = 0;
    isMacroOpen = false;
}

void ModelObject::replaceAllFrames(const QString &path)
{
    const ModelFrame frame(freeName(WalkFiles::baseName(path), true),
                           WalkFiles::instance().pictureAt(path));
    ModelEdit edit;
    edit.kind = ModelEdit::Frames;
    edit.serial = serial;
    edit.framesAfter.append(recorded(frame));
    for (const ModelFrame &old : qAsConst(frames))
        edit.framesBefore.append(recorded(old));
    host->push(edit, translated("IDS_KT_PORTRAIT_REPLACE", "Replace Portrait"));
    apply(edit, true);
}

void ModelObject::setFrames(const QList<ModelFrame> &list)
{
    frames = list;
    if (!host->makes(Mistake::UndoKeepsTheIndex))
        index = 0;
    updateRegion(0, true);
    if (isBackground())
        generateTile(0);
    changed(1002);
    host->events.append(QStringLiteral("notified 309 0 0 -1"));
}

void ModelObject::changeType(int newType)
{
    constexpr int backgroundLayer = 2;
    constexpr int normalLayer = 0;
    if (page == ModelHost::NoPage)
        return;
    const bool moves = newType != type && (newType == 1 || newType == 0);
    const int layer = newType == 1 ? backgroundLayer : normalLayer;
    if (moves)
        host->events.append(QStringLiteral("page %1 was asked for layer %2 for object %3")
                                .arg(page)
                                .arg(layer)
                                .arg(serial));
    const bool opens = !host->isMacroOpen;
    const char *const macro = "IDS_KT_UNDOREDO_NAME_ANNIMATED_TYPE";
    if (opens) {
        host->events.append(QStringLiteral("opened the macro ") + QString::fromLatin1(macro));
        host->openMacro(translated(macro, macro));
    }
    ModelEdit edit;
    edit.serial = serial;
    if (moves) {
        host->events.append(
            QStringLiteral("page %1 moved object %2 to layer %3").arg(page).arg(serial).arg(layer));
        edit.kind = ModelEdit::Layer;
        edit.page = page;
        edit.after = newType;
        if (host->layerOf(serial, page) != newType) {
            host->move(edit, true);
            host->push(edit, QString());
        }
    }
    edit.kind = ModelEdit::Type;
    edit.before = type;
    edit.after = newType;
    host->push(edit, QString());
    apply(edit, true);
    if (opens) {
        host->events.append(QStringLiteral("closed the macro"));
        host->closeMacro();
    }
}

/// The old type still holds while it stops.
void ModelObject::applyType(int newType)
{
    if (newType == 1)
        stop();
    type = newType;
    notifyType();
}

void ModelObject::apply(const ModelEdit &edit, bool redo)
{
    const int value = redo ? edit.after : edit.before;
    switch (edit.kind) {
    case ModelEdit::Frames:
        setFrames(redo ? edit.framesAfter : edit.framesBefore);
        break;
    case ModelEdit::Type:
        applyType(value);
        break;
    case ModelEdit::Interval:
        setShiftInterval(value);
        break;
    case ModelEdit::KeepRatio:
        keepRatio = value != 0;
        break;
    case ModelEdit::LoopCount:
        loopCount = value;
        break;
    case ModelEdit::Layer:
    case ModelEdit::Nothing:
        break;
    }
}
