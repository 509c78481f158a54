#pragma once

#include "animatedimage/object/animatedimage.h"

#include <QtCore/QTimer>

/// The tests' view into an animated image: its fields, and the slot that its timer drives.
class AnimatedImageProbe
{
public:
    explicit AnimatedImageProbe(CAnimatedImage &image)
        : m_image(image)
    {
    }

    IGdDocument *&belongDoc() { return m_image.m_belongDoc; }
    QTimer *timer() { return m_image.m_shiftTimer; }
    /// The frames, with their sizes, regions and hit paths computed.
    QList<CAnimatedPortrait> &frames()
    {
        m_image.m_scale.apply(m_image.m_portraits);
        m_image.m_regions.workOut(m_image.m_portraits);
        return m_image.m_portraits;
    }
    CAnimatedPortrait &frame(int index) { return frames()[index]; }
    /// The frames as they are: without regions and hit paths that nobody has asked for.
    const QList<CAnimatedPortrait> &storedFrames() { return m_image.m_portraits; }
    bool &isRunning() { return m_image.m_isRunning; }
    int &runningIndex() { return m_image.m_runningIndex; }
    int &loopsDone() { return m_image.m_loopsDone; }
    int &shiftInterval() { return m_image.m_shiftInterval; }
    bool &keepRatio() { return m_image.m_keepRatio; }
    bool &mirror() { return m_image.m_mirror; }
    bool &flip() { return m_image.m_flip; }
    int &loopCount() { return m_image.m_loopCount; }
    bool &playEnabled() { return m_image.m_playEnabled; }
    bool &wasRunning() { return m_image.m_wasRunning; }
    int &elapsedMs() { return m_image.m_elapsedMs; }
    int &animatedType() { return m_image.m_animatedType; }
    QRectF &bgRect() { return m_image.m_bgRect; }
    QImage &bgImage() { return m_image.m_bgImage; }
    QPointF &bgPos() { return m_image.m_bgPos; }
    bool &savedRunning() { return m_image.m_savedRunning; }
    int &savedIndex() { return m_image.m_savedIndex; }
    double &handleSize() { return m_image.m_handleSize; }
    QList<QSizeF> &savedFrameSizes() { return m_image.m_savedFrameSizes; }

    // State of the base class.
    QString &objName() { return m_image.m_objName; }
    QRectF &rect() { return m_image.m_rect; }
    bool &rectStale() { return m_image.m_rectStale; }
    bool &hasShape() { return m_image.m_hasShape; }
    bool &isMirrored() { return m_image.m_mirrored; }
    bool &isFlipped() { return m_image.m_flipped; }
    bool &hasLayerEffects() { return m_image.m_hasLayerEffects; }
    QMap<QString, QVariant> &otherParams() { return m_image.m_otherParams; }

    /// One tick of the frame timer, without waiting for it.
    void tick() { m_image.onShiftTimeout(); }
    void refreshBelongDoc() { m_image.getBelongDoc(); }

private:
    CAnimatedImage &m_image;
};
