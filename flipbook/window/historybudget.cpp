#include "flipbook/window/historybudget.h"

#include "flipbook/base/memorybudget.h"
#include "flipbook/object/plugin.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/session.h"
#include "framework/framework.h"
#include "host/baseobject.h"

#include <QtCore/QTimer>

HistoryBudget::HistoryBudget(Session &session, MessageBar &messages, QObject *parent)
    : QObject(parent)
    , m_session(session)
    , m_messages(messages)
    , m_bytes(MemoryBudget::Default)
{
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &HistoryBudget::update);
    connect(&session, &Session::pageShown, this, &HistoryBudget::update);
}

void HistoryBudget::setBytes(qint64 bytes)
{
    m_bytes = bytes;
}

/// Each object is counted while it is on the shown page, which it is when a step adds or changes
/// it.
void HistoryBudget::update()
{
    const Page *page = m_session.page();
    if (!page)
        return;
    const QList<CBaseObject *> objects = page->objects();
    for (CBaseObject *object : objects) {
        if (!m_objects.contains(object))
            count(*object);
    }
    // Not while the command is being pushed.
    if (keptBytes() > m_bytes)
        QTimer::singleShot(0, this, &HistoryBudget::clearHistory);
}

void HistoryBudget::count(CBaseObject &object)
{
    QVector<Picture> pictures;
    const Plugin::Frames frames = m_session.plugin().frames(object);
    for (const auto &frame : frames)
        pictures.append({frame.second.cacheKey(), frame.second.sizeInBytes()});
    m_objects.insert(&object, pictures);
    connect(&object, &QObject::destroyed, this, [this, gone = &object] { m_objects.remove(gone); });
}

qint64 HistoryBudget::keptBytes() const
{
    QHash<qint64, qint64> kept;
    for (auto object = m_objects.begin(); object != m_objects.end(); ++object) {
        for (const Picture &picture : *object)
            kept.insert(picture.key, picture.bytes);
    }
    for (auto object = m_objects.begin(); object != m_objects.end(); ++object) {
        if (!object.key()->scene())
            continue;
        for (const Picture &picture : *object)
            kept.remove(picture.key);
    }
    qint64 bytes = 0;
    for (const qint64 size : qAsConst(kept))
        bytes += size;
    return bytes;
}

void HistoryBudget::clearHistory()
{
    if (keptBytes() <= m_bytes)
        return;
    const bool wasDirty = m_session.isDirty();
    Framework::instance().dropUndoCommands();
    if (wasDirty)
        m_session.noteChanged();
    m_messages.tell(
        MessageBar::Kind::Warning,
        tr("The history was cleared because its pictures needed more than %1 of memory. "
           "The document has not changed.")
            .arg(MemoryBudget::text(m_bytes)));
}
