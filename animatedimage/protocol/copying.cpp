#include "animatedimage/object/liveobjects.h"
#include "animatedimage/object/savedform.h"
#include "animatedimage/protocol/requests.h"

bool CAnimatedImage::Requests::copyFromObject() const
{
    qint64 address = 0;
    if (!RequestStream::read(stream, address))
        return true;
    CAnimatedImage *other = LiveObjects::at(address);
    return !other || object.outlives([this, other] { takeOver(*other); });
}

/// Takes over the base's state and the settings of @p other, and appends its frames. @p other may
/// be this object: its frames are then appended once.
void CAnimatedImage::Requests::takeOver(CAnimatedImage &other) const
{
    object.m_regions.follow(object.m_portraits, other.m_regions);
    QByteArray state;
    QDataStream out(&state, QIODevice::WriteOnly);
    other.CBaseObject::save(out);
    QDataStream in(state);
    object.CBaseObject::load(in);

    const QList<CAnimatedPortrait> frames = other.framesWithSizes();
    QList<CAnimatedPortrait> &own = object.framesWithSizes();
    for (CAnimatedPortrait frame : frames) {
        frame.image = frame.image.copy();
        own.append(frame);
    }
    object.m_bgRect = other.m_bgRect;
    object.m_shiftInterval = other.m_shiftInterval;
    object.m_animatedType = other.m_animatedType;
    object.m_runningIndex = other.m_runningIndex;
    object.m_keepRatio = other.m_keepRatio;
    object.m_mirror = other.m_mirror;
    object.m_flip = other.m_flip;
    object.m_loopCount = other.m_loopCount;
    object.m_isRunning = other.m_isRunning;
    SavedForm{object}.finishTakingOver();
}
