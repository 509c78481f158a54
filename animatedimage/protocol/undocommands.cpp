#include "animatedimage/protocol/undocommands.h"

#include "animatedimage/object/animatedimage.h"
#include "animatedimage/object/liveobjects.h"

#include <QtCore/QDataStream>

#include <new>

CAnimatedUndoRedoCommand::CAnimatedUndoRedoCommand(std::function<void(QDataStream &)> &redo,
                                                   std::function<void(QDataStream &)> &undo,
                                                   QUndoCommand *parent)
    : CNmUndoCmd(parent)
    , m_redo(redo)
    , m_undo(undo)
{
}

CAnimatedUndoRedoCommand::~CAnimatedUndoRedoCommand() = default;

void CAnimatedUndoRedoCommand::undo()
try {
    QDataStream stream(m_data);
    if (m_undo)
        m_undo(stream);
} catch (const std::bad_alloc &) {
}

void CAnimatedUndoRedoCommand::redo()
try {
    QDataStream stream(m_data);
    if (m_redo)
        m_redo(stream);
} catch (const std::bad_alloc &) {
}

QByteArray *CAnimatedUndoRedoCommand::data_ptr()
{
    return &m_data;
}

CAnimatedImageChangeCommand::CAnimatedImageChangeCommand(CAnimatedImage *object,
                                                         ANIMATEDIMAGE_CHANGE_TYPE type,
                                                         QUndoCommand *parent)
    : CNmUndoCmd(parent)
    , m_type(type)
    , m_object(object)
{
}

CAnimatedImageChangeCommand::~CAnimatedImageChangeCommand() = default;

void CAnimatedImageChangeCommand::undo()
{
    apply(m_oldBool, m_oldInt);
}

void CAnimatedImageChangeCommand::redo()
{
    apply(m_newBool, m_newInt);
}

void CAnimatedImageChangeCommand::setBoolValue(bool oldValue, bool newValue)
{
    m_oldBool = oldValue;
    m_newBool = newValue;
}

void CAnimatedImageChangeCommand::setIntValue(int oldValue, int newValue)
{
    m_oldInt = oldValue;
    m_newInt = newValue;
}

void CAnimatedImageChangeCommand::apply(bool boolValue, int intValue)
{
    // An object that is being destroyed is an animated image no more.
    if (!m_object || !LiveObjects::holds(m_object))
        return;
    switch (m_type) {
    case CHANGE_SHIFT_INTERVAL:
        m_object->setShiftInterval(intValue);
        break;
    case CHANGE_KEEP_RATIO:
        m_object->setKeepRatio(boolValue);
        break;
    case CHANGE_LOOP_COUNT:
        m_object->setLoopCount(intValue);
        break;
    }
}
