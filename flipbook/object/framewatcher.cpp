#include "flipbook/object/framewatcher.h"

#include "framework/framework.h"
#include "host/notificationcodes.h"

#include <QtCore/QTimer>

FrameWatcher::FrameWatcher(AnimatedObject object, int passes)
    : m_object(object)
    , m_wantedPasses(passes)
{
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, this,
            [this](CBaseObject *changed, int id) {
                if (changed == &m_object.base() && id == PropertyChange::ShownContent)
                    noteChange();
            });
}

void FrameWatcher::start()
{
    beginPass();
    m_object.setPlaying(true);
}

// The host interface knows "forever" and "once": the last of several passes is played as the only
// one.
void FrameWatcher::beginPass()
{
    if (m_wantedPasses > 0)
        m_object.setLoopsForever(m_passesDone + 1 < m_wantedPasses);
}

void FrameWatcher::noteChange()
{
    if (m_lookPending)
        return;
    m_lookPending = true;
    // Within a step the object may show other frames for a moment: look when it has come to rest.
    QTimer::singleShot(0, this, &FrameWatcher::look);
}

void FrameWatcher::look()
{
    m_lookPending = false;
    if (!m_object.isPlaying()) {
        Q_EMIT stopped(m_passesDone + 1);
        return;
    }
    const int index = m_object.shownIndex();
    if (index == 0 && m_lastIndex >= 0) {
        ++m_passesDone;
        beginPass();
    }
    m_lastIndex = index;
    Q_EMIT frameShown(index);
}
