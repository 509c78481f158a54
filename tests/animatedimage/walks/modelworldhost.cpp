#include "tests/animatedimage/walks/importsource.h"
#include "tests/animatedimage/walks/modelworld.h"
#include "tests/animatedimage/walks/walkfiles.h"

namespace
{

QString settingText(int id)
{
    return QStringLiteral("change of setting %1").arg(id);
}

/// How many bytes of the tail of a stream form follow its pictures.
constexpr int bytesAfterPictures = 4 + 1 + 1 + 1 + 4 + 1 + 1;

} // namespace

ModelObject *ModelWorld::withSerial(int serial)
{
    for (ModelObject &object : objects) {
        if (object.serial == serial)
            return &object;
    }
    return nullptr;
}

void ModelWorld::undo()
{
    if (host.doneCommands == 0)
        return;
    ModelCommand command = host.commands.at(--host.doneCommands);
    for (int i = command.edits.size() - 1; i >= 0; --i)
        apply(command.edits[i], false);
}

void ModelWorld::redo()
{
    if (host.doneCommands == host.commands.size())
        return;
    for (ModelEdit &edit : host.commands[host.doneCommands++].edits)
        apply(edit, true);
}

/// The edit of an object that is gone does nothing.
void ModelWorld::apply(ModelEdit &edit, bool redo)
{
    ModelObject *object = withSerial(edit.serial);
    if (edit.kind == ModelEdit::Layer)
        host.move(edit, redo);
    else if (object)
        object->apply(edit, redo);
}

void ModelWorld::pushChange(const Step &step, const ModelObject &object)
{
    ModelEdit edit;
    edit.kind = step.id == 0   ? ModelEdit::Interval
                : step.id == 1 ? ModelEdit::KeepRatio
                : step.id == 2 ? ModelEdit::LoopCount
                               : ModelEdit::Nothing;
    edit.serial = object.serial;
    edit.before = step.number;
    edit.after = step.second;
    host.push(edit, settingText(step.id));
    objects[size_t(step.object)].apply(edit, true);
}

void ModelWorld::sendAttributes(int page, int id)
{
    for (ModelObject &object : objects) {
        if (object.page == page)
            object.setAttribute(id, {}, 0);
    }
}

void ModelWorld::replace(int slot, bool dropCommands)
{
    ModelObject &object = objects[size_t(slot)];
    const int page = object.page;
    if (dropCommands)
        host.dropCommands();
    host.removeFromPages(object.serial);
    object = ModelObject(&host, m_nextSerial++);
    object.page = page;
    if (page != ModelHost::NoPage)
        host.addToPage(object.serial, page);
}

/// What comes back of a form that was written whole, where bytes or members are missing, or its
/// frames come from a GIF instead.
void ModelWorld::readBack(const Step &step, SavedForm &form, QStringList &missingKeys) const
{
    PicturePool &pool = PicturePool::instance();
    const bool isJson = step.op == Step::CopyByJson;
    form.gif = step.number < 0 ? nullptr : &WalkFiles::instance().sources().at(step.number);
    if (form.gif)
        form.pictures.clear();
    for (int &picture : form.pictures)
        picture = isJson || step.other ? pool.stored(picture) : pool.streamed(picture);
    if (step.missing > bytesAfterPictures || step.texts.contains(QLatin1String("ImageList")))
        form.pictures.clear();
    // The values after the pictures, from the last to the first.
    const int lost = step.missing;
    const auto isLost = [&](const char *key, int bytesBehind) {
        return isJson ? step.texts.contains(QLatin1String(key)) : lost > bytesBehind;
    };
    if (isLost("LoopCount", 2))
        form.loopCount = 0;
    if (isLost("ImageFlip", 6))
        form.flip = false;
    if (isLost("ImageMirror", 7))
        form.mirror = false;
    if (isLost("LockScale", 8))
        form.keepRatio = false;
    if (isLost("ShiftInterval", 9))
        form.interval = 0;
    missingKeys = step.texts;
}

Outcome ModelWorld::copy(const Step &step)
{
    Outcome outcome;
    const int target = 1 - step.object;
    objects[size_t(step.object)].save(outcome.form);
    SavedForm read = outcome.form;
    readBack(step, read, outcome.missingKeys);
    replace(target, step.flag);
    objects[size_t(target)].load(read);
    return outcome;
}

Outcome ModelWorld::applyToHost(const Step &step, ModelObject &object)
{
    switch (step.op) {
    case Step::Undo:
        undo();
        break;
    case Step::Redo:
        redo();
        break;
    case Step::OpenMacro:
        host.openMacro(QStringLiteral("a macro"));
        break;
    case Step::CloseMacro:
        host.closeMacro();
        break;
    case Step::PushChange:
        pushChange(step, object);
        break;
    case Step::Present:
        sendAttributes(step.number, 2804);
        host.modes[step.number] = step.second;
        break;
    case Step::Edit:
        host.modes[step.number] = 0;
        sendAttributes(step.number, 2805);
        break;
    case Step::SetMode:
        host.modes[step.number] = step.second;
        break;
    case Step::PutOnPage:
        object.page = step.number;
        host.addToPage(object.serial, step.number);
        break;
    case Step::TakeOffPage:
        object.page = ModelHost::NoPage;
        host.removeFromPages(object.serial);
        break;
    case Step::CopyByStream:
    case Step::CopyByJson:
        return copy(step);
    default:
        replace(step.object, step.flag);
        break;
    }
    return {};
}
