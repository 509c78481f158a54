#include "animatedimage/core/playbacksteps.h"
#include "animatedimage/object/animatedimage.h"
#include "animatedimage/protocol/requests.h"
#include "host/attributeids.h"
#include "host/notificationcodes.h"

#include <QtCore/QPointer>

bool CAnimatedImage::SetAttribute(int id, QDataStream &stream, bool flag)
{
    if (CGDRootObject::SetAttribute(id, stream, flag)) {
        if (id == AttributeId::EnterAlternateMode)
            saveEditingState();
        else if (id == AttributeId::LeaveAlternateMode)
            restoreEditingState();
        return true;
    }

    bool first = false;
    bool second = false;
    switch (id) {
    case AttributeId::StartSteppedPlayback:
        if (Requests::read(stream, first, second))
            startSteppedPlayback(second);
        return true;
    case AttributeId::EnableTimer:
        if (Requests::read(stream, first))
            setTimerEnabled(first);
        return true;
    case AttributeId::SteppedTick:
        steppedTick();
        return true;
    default:
        return false;
    }
}

/// Remembers what editing shows, and works out what a presentation will show of a background.
void CAnimatedImage::saveEditingState()
{
    m_bgRect = visibleRect();
    m_savedIndex = m_runningIndex;
    m_savedFrameSizes.clear();
    for (const CAnimatedPortrait &frame : qAsConst(m_portraits))
        m_savedFrameSizes.append(frame.size);
    if (isBackgroundType()) {
        m_bgPos = QPointF(0.0, 0.0);
        generateBGImage(m_savedIndex);
    } else {
        m_bgImage = QImage();
    }
    m_savedRunning = m_isRunning;
}

void CAnimatedImage::restoreEditingState()
{
    m_handleSize = getHandleSize();
    const QPointer<CAnimatedImage> self(this);
    if (isFrame(m_savedIndex)) {
        // Sizes of frames that came or went meanwhile cannot be told apart: all stay.
        if (m_savedFrameSizes.size() == m_portraits.size()) {
            for (int i = 0; i < m_portraits.size(); ++i)
                m_portraits[i].size = m_savedFrameSizes.at(i);
        }
        m_runningIndex = m_savedIndex;
        measureOnce(m_savedIndex);
        if (isBackgroundType())
            generateBGImage(m_savedIndex);
        notifyObjPropertyChanged(PropertyChange::GeometryRestored, QString());
    }
    if (self)
        playImage(m_savedRunning);
}

void CAnimatedImage::setTimerEnabled(bool enabled)
{
    m_playEnabled = enabled;
    if (!enabled) {
        m_wasRunning = m_isRunning;
        return;
    }
    if (m_wasRunning)
        restartPlayback();
}

/// Begins again at the first frame.
void CAnimatedImage::restartPlayback()
{
    const QPointer<CAnimatedImage> self(this);
    playImage(false);
    if (self)
        playImage(true);
}

void CAnimatedImage::startSteppedPlayback(bool resume)
{
    const QPointer<CAnimatedImage> self(this);
    if (resume) {
        if (!m_wasRunning)
            return;
        stop();
        if (self)
            m_isRunning = true;
        return;
    }
    if (m_playEnabled) {
        if (m_isRunning)
            restartPlayback();
        return;
    }
    stop();
    if (!self)
        return;
    m_isRunning = true;
    setCurrentIndex(0);
    if (!self)
        return;
    m_elapsedMs = 0;
    notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

void CAnimatedImage::steppedTick()
{
    const QPointer<CAnimatedImage> self(this);
    if (m_isRunning && m_shiftInterval > 0 && !m_portraits.isEmpty()) {
        const PlaybackSteps::HostStep step = PlaybackSteps::afterHostTick(
            m_elapsedMs, m_shiftInterval, m_portraits.size(), m_loopsDone, m_loopCount);
        m_elapsedMs = step.elapsedMs;
        m_loopsDone = step.loopsDone;
        if (step.finished)
            m_isRunning = false;
        showStep(step.index);
    }
    if (self)
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}
