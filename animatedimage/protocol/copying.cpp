#include "animatedimage/object/animatedimage.h"
#include "animatedimage/object/liveobjects.h"
#include "animatedimage/protocol/requests.h"

void CAnimatedImage::copyFrom(QDataStream &stream)
{
    qint64 address = 0;
    if (!Requests::read(stream, address))
        return;
    if (CAnimatedImage *other = LiveObjects::at(address))
        takeOver(*other);
}

/// Takes over the base's state and the settings of @p other, and appends its frames. @p other may
/// be this object: its frames are then appended once.
void CAnimatedImage::takeOver(CAnimatedImage &other)
{
    m_regions.merge(m_portraits, other.m_regions);
    QByteArray state;
    QDataStream out(&state, QIODevice::WriteOnly);
    other.CBaseObject::save(out);
    QDataStream in(state);
    CBaseObject::load(in);

    const QList<CAnimatedPortrait> frames = other.m_portraits;
    for (CAnimatedPortrait frame : frames) {
        frame.image = frame.image.copy();
        m_portraits.append(frame);
    }
    m_bgRect = other.m_bgRect;
    m_shiftInterval = other.m_shiftInterval;
    m_animatedType = other.m_animatedType;
    m_runningIndex = other.m_runningIndex;
    m_keepRatio = other.m_keepRatio;
    m_mirror = other.m_mirror;
    m_flip = other.m_flip;
    m_loopCount = other.m_loopCount;
    m_isRunning = other.m_isRunning;
    finishTakingOver();
}
