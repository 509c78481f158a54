#include "flipbook/window/commands/settingcommand.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/window/commands/commandids.h"

SettingCommand::SettingCommand(const QString &text, const Plugin &plugin, CBaseObject &object,
                               const QString &id, const QString &before, const QString &after)
    : m_plugin(plugin)
    , m_object(&object)
    , m_id(id)
    , m_before(before)
    , m_after(after)
    , m_loopCountBefore(AnimatedObject(object).loopCount())
{
    setText(text);
}

void SettingCommand::redo()
{
    if (m_object)
        AnimatedObject(*m_object).answerPanel(m_id, m_after);
}

void SettingCommand::undo()
{
    if (!m_object)
        return;
    AnimatedObject(*m_object).answerPanel(m_id, m_before);
    restoreLoopCount();
}

/// The panel knows only whether a film loops: another count comes back with the object's state.
void SettingCommand::restoreLoopCount()
{
    AnimatedObject animated(*m_object);
    if (animated.loopCount() == m_loopCountBefore)
        return;
    const bool isPlaying = animated.isPlaying();
    FilmState state(*m_object);
    state.setLoopCount(m_loopCountBefore);
    state.giveTo(m_plugin, *m_object);
    animated.setPlaying(isPlaying);
}

int SettingCommand::id() const
{
    return CommandId::Setting;
}

bool SettingCommand::mergeWith(const QUndoCommand *next)
{
    const auto *other = static_cast<const SettingCommand *>(next);
    if (other->m_object != m_object || other->m_id != m_id)
        return false;
    m_after = other->m_after;
    setObsolete(m_after == m_before);
    return true;
}
