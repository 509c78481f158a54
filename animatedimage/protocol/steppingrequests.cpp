#include "animatedimage/core/framelist.h"
#include "animatedimage/object/playback.h"
#include "animatedimage/protocol/requests.h"
#include "host/framework.h"
#include "host/notificationcodes.h"

void CAnimatedImage::Requests::showNext() const
{
    stopAndStep(1);
}

void CAnimatedImage::Requests::showPrevious() const
{
    stopAndStep(-1);
}

void CAnimatedImage::Requests::stopAndStep(int step) const
{
    if (!Playback{object}.stop() || object.m_portraits.isEmpty())
        return;
    (void)showFrameAndNotify(
        FrameList::stepped(object.m_runningIndex, step, object.m_portraits.size()));
}

void CAnimatedImage::Requests::showAt() const
{
    qint32 index = 0;
    const Playback playback{object};
    if (!playback.stop() || !RequestStream::read(stream, index) || !object.isFrame(index) ||
        !playback.showFrame(index)) {
        return;
    }
    const bool isAlive = !object.isBackgroundType() ||
                         object.outlives([this] { GetFramework()->refreshObject(&object); });
    if (isAlive)
        object.notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

void CAnimatedImage::Requests::showNamed() const
{
    QString name;
    if (!Playback{object}.stop() || !RequestStream::read(stream, name))
        return;
    if (const auto index = FrameList::indexOf(object.m_portraits, name))
        (void)showFrameAndNotify(*index);
}

bool CAnimatedImage::Requests::playOrStop() const
{
    bool play = false;
    return !RequestStream::read(stream, play) ||
           object.outlives([this, play] { object.playImage(play); });
}

/// Shows a frame and notifies the host, as the buttons of the panel do.
bool CAnimatedImage::Requests::showFrameAndNotify(int index) const
{
    return Playback{object}.showFrame(index) && object.notifyShownContent();
}
