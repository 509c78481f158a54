#include "animatedimage/core/framelist.h"
#include "animatedimage/object/playback.h"
#include "animatedimage/protocol/requeststream.h"
#include "host/attributeids.h"
#include "host/notificationcodes.h"

#include <new>

/// What the attributes do.
struct CAnimatedImage::Attributes {
    /// Remembers what editing shows, and computes what a presentation will show of a background.
    void saveEditingState() const;
    void restoreEditingState() const;
    void setTimerEnabled(bool enabled) const;
    void startSteppedPlayback(bool resume) const;
    void steppedTick() const;

    CAnimatedImage &object;
};

bool CAnimatedImage::SetAttribute(int id, QDataStream &stream, bool flag)
try {
    const Attributes attributes{*this};
    if (CGDRootObject::SetAttribute(id, stream, flag)) {
        if (id == AttributeId::EnterAlternateMode)
            attributes.saveEditingState();
        else if (id == AttributeId::LeaveAlternateMode)
            attributes.restoreEditingState();
        return true;
    }

    bool first = false;
    bool second = false;
    switch (id) {
    case AttributeId::StartSteppedPlayback:
        if (RequestStream::read(stream, first, second))
            attributes.startSteppedPlayback(second);
        return true;
    case AttributeId::EnableTimer:
        if (RequestStream::read(stream, first))
            attributes.setTimerEnabled(first);
        return true;
    case AttributeId::SteppedTick:
        attributes.steppedTick();
        return true;
    default:
        return false;
    }
} catch (const std::bad_alloc &) {
    return false;
}

void CAnimatedImage::Attributes::saveEditingState() const
{
    object.m_bgRect = object.visibleRect();
    object.m_savedIndex = object.m_runningIndex;
    object.m_savedFrameSizes = FrameList::sizes(object.framesWithSizes());
    if (object.isBackgroundType()) {
        object.m_bgPos = QPointF(0.0, 0.0);
        object.generateBGImage(object.m_savedIndex);
    } else {
        object.m_bgImage = QImage();
    }
    object.m_savedRunning = object.m_isRunning;
}

void CAnimatedImage::Attributes::restoreEditingState() const
{
    object.m_handleSize = object.getHandleSize();
    const int index = object.m_savedIndex;
    if (object.isFrame(index)) {
        FrameList::restoreSizes(object.framesWithSizes(), object.m_savedFrameSizes);
        object.m_runningIndex = index;
        object.measureOnce(index);
        if (object.isBackgroundType())
            object.generateBGImage(index);
        const bool isAlive = object.outlives([this] {
            object.notifyObjPropertyChanged(PropertyChange::GeometryRestored, QString());
        });
        if (!isAlive)
            return;
    }
    object.playImage(object.m_savedRunning);
}

void CAnimatedImage::Attributes::setTimerEnabled(bool enabled) const
{
    object.m_playEnabled = enabled;
    if (!enabled)
        object.m_wasRunning = object.m_isRunning;
    else if (object.m_wasRunning)
        (void)Playback{object}.restart();
}

void CAnimatedImage::Attributes::startSteppedPlayback(bool resume) const
{
    const Playback playback{object};
    if (resume) {
        if (object.m_wasRunning && playback.stop())
            object.m_isRunning = true;
        return;
    }
    if (object.m_playEnabled) {
        if (object.m_isRunning)
            (void)playback.restart();
        return;
    }
    if (!playback.stop())
        return;
    object.m_isRunning = true;
    if (!object.outlives([this] { object.setCurrentIndex(0); }))
        return;
    object.m_elapsedMs = 0;
    object.notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

void CAnimatedImage::Attributes::steppedTick() const
{
    const Playback playback{object};
    const PlaybackSteps::Animation animation = playback.animation();
    if (object.m_isRunning && animation.intervalMs > 0 && animation.frameCount > 0) {
        const PlaybackSteps::Step step =
            PlaybackSteps::afterHostTick(playback.progress(), animation);
        object.m_elapsedMs = step.progress.elapsedMs;
        object.m_loopsDone = step.progress.loopsDone;
        if (step.finished)
            object.m_isRunning = false;
        if (!playback.showFrame(step.index))
            return;
    }
    object.notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}
