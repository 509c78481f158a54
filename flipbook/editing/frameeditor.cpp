#include "flipbook/editing/frameeditor.h"

#include "flipbook/object/objectprotocol.h"
#include "host/specialpropertyids.h"

#include <QtGui/QImage>

namespace Id = SpecialPropertyId;

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

/// The index that a frame is inserted after, so that it becomes number @p place. What is to become
/// the first frame is inserted after it, and then moved.
qint32 FrameEditor::indexBefore(int place) const
{
    return place == 1 && m_object.frameCount() > 0 ? 0 : place - 2;
}

void FrameEditor::settle(int place, int countBefore)
{
    if (place == 1 && countBefore > 0)
        ObjectProtocol::tell(m_object.base(), Id::MoveFrame, qint32(1), qint32(0));
}

/// Makes a change after which another frame may be at the index that is shown. The object itself
/// resizes only when it steps there, and would take the next step in the wrong proportion.
template<typename Change>
void FrameEditor::keepScale(const Change &change)
{
    CBaseObject &object = m_object.base();
    const QSize before = object.getImageSize();
    change();
    // The object does not announce that another frame is shown now.
    object.update();
    const QSize after = object.getImageSize();
    if (before.isEmpty() || after.isEmpty() || after == before)
        return;
    const QSizeF size = object.getSize();
    constexpr bool keepCenter = true;
    object.setSize(QSizeF(size.width() * after.width() / before.width(),
                          size.height() * after.height() / before.height()),
                   keepCenter, false);
}

void FrameEditor::insertBlank(int place)
{
    checkPlace(place);
    keepScale([this, place] {
        const int count = m_object.frameCount();
        ObjectProtocol::perform(m_object.base(), Id::InsertBlankFrame, indexBefore(place));
        settle(place, count);
    });
}

void FrameEditor::duplicate(int from, int place)
{
    checkPlace(place);
    const qint32 original = existing(from);
    keepScale([this, original, place] {
        const int count = m_object.frameCount();
        ObjectProtocol::perform(m_object.base(), Id::DuplicateFrame, original, indexBefore(place));
        settle(place, count);
    });
}

bool FrameEditor::insertFile(int place, const QString &path, const QString &name)
{
    checkPlace(place);
    keepScale([this, place, &path] {
        const int count = m_object.frameCount();
        ObjectProtocol::perform(m_object.base(), Id::InsertImageFile, indexBefore(place), path);
        settle(place, count);
    });
    // The object inserts an empty frame for what it cannot decode.
    if (!m_object.frameImage(place - 1).isNull()) {
        // The object takes a name that ends in "_" and a number for that of one frame of many.
        rename(place, name);
        return true;
    }
    const int shown = m_object.shownIndex();
    remove(place);
    m_object.showFrame(shown);
    return false;
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
    keepScale([this, index] { ObjectProtocol::tell(m_object.base(), Id::DeleteFrame, index); });
}

void FrameEditor::removeRange(int first, int last)
{
    existing(first);
    existing(last);
    if (first < last && last - first + 1 == m_object.frameCount())
        throw EditRefused{QStringLiteral("a film needs a frame; not all can be deleted")};
    for (int number = last; number >= first; --number)
        remove(number);
}

void FrameEditor::move(int from, int to)
{
    const qint32 source = existing(from);
    const qint32 target = existing(to);
    keepScale([this, source, target] {
        ObjectProtocol::tell(m_object.base(), Id::MoveFrame, source, target);
    });
}

void FrameEditor::replacePicture(int number, const QImage &picture)
{
    m_object.setFrameImage(existing(number), picture);
}

void FrameEditor::replaceAll(const QString &path, const QString &name)
{
    ObjectProtocol::perform(m_object.base(), Id::ReplaceAllFrames, path);
    rename(1, name);
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
