#include "flipbook/editing/frameeditor.h"

#include "flipbook/objectprotocol.h"
#include "host/gdpage.h"
#include "host/specialpropertyids.h"

#include <QtGui/QImage>

namespace Id = SpecialPropertyId;

namespace
{

/// Sends a request that answers through the getting half of the protocol, and lets the answer go.
template<typename... Input>
void request(CBaseObject &object, int id, const Input &...input)
{
    ObjectProtocol::ask<qint32>(object, id, input...);
}

} // namespace

FrameEditor::FrameEditor(CBaseObject &object)
    : m_object(object)
{
}

qint32 FrameEditor::existing(int number) const
{
    const int count = m_object.frameCount();
    if (number < 1 || number > count)
        throw EditRefused{
            QStringLiteral("there is no frame %1 (the last is %2)").arg(number).arg(count)};
    return number - 1;
}

void FrameEditor::checkPlace(int place) const
{
    const int count = m_object.frameCount();
    if (place < 1 || place > count + 1)
        throw EditRefused{
            QStringLiteral("a new frame can be number 1 to %1, not %2").arg(count + 1).arg(place)};
}

/// The index that a frame is inserted behind, so that it becomes number @p place. What is to become
/// the first frame is inserted behind it, and then moved.
qint32 FrameEditor::indexBefore(int place) const
{
    return place == 1 && m_object.frameCount() > 0 ? 0 : place - 2;
}

void FrameEditor::settle(int place, int countBefore)
{
    if (place == 1 && countBefore > 0)
        move(2, 1);
}

void FrameEditor::insertBlank(int place)
{
    checkPlace(place);
    const int count = m_object.frameCount();
    request(m_object.base(), Id::InsertBlankFrame, indexBefore(place));
    settle(place, count);
}

void FrameEditor::duplicate(int from, int place)
{
    checkPlace(place);
    const int count = m_object.frameCount();
    request(m_object.base(), Id::DuplicateFrame, existing(from), indexBefore(place));
    settle(place, count);
}

void FrameEditor::insertFile(int place, const QString &path)
{
    checkPlace(place);
    const int count = m_object.frameCount();
    request(m_object.base(), Id::InsertImageFile, indexBefore(place), path);
    settle(place, count);
}

void FrameEditor::rename(int number, const QString &name)
{
    ObjectProtocol::tell(m_object.base(), Id::FrameName, existing(number), name);
}

void FrameEditor::remove(int number)
{
    const qint32 index = existing(number);
    if (m_object.frameCount() == 1)
        throw EditRefused{QStringLiteral("the only frame cannot be deleted")};
    ObjectProtocol::tell(m_object.base(), Id::DeleteFrame, index);
}

void FrameEditor::move(int from, int to)
{
    ObjectProtocol::tell(m_object.base(), Id::MoveFrame, existing(from), existing(to));
}

void FrameEditor::replacePicture(int number, const QImage &picture)
{
    const bool unused = false;
    ObjectProtocol::tell(m_object.base(), Id::FrameImage, unused, existing(number), picture);
}

void FrameEditor::replaceAll(const QString &path)
{
    request(m_object.base(), Id::ReplaceAllFrames, path);
}

void FrameEditor::setInterval(int ms)
{
    if (ms < 1)
        throw EditRefused{QStringLiteral("an interval is at least 1 ms")};
    m_object.setInterval(ms);
}

void FrameEditor::setBackground(bool background)
{
    const bool undoable = true;
    ObjectProtocol::tell(m_object.base(), Id::AnimatedType, qint32(background ? 1 : 0), undoable);
}
