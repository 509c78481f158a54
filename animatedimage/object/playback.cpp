#include "animatedimage/core/playbacksteps.h"
#include "animatedimage/object/animatedimage.h"
#include "host/framework.h"
#include "host/notificationcodes.h"

#include <QtCore/QDebug>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>
#include <QtCore/QTimer>

void CAnimatedImage::playImage(bool run)
{
    const QPointer<CAnimatedImage> self(this);
    if (run != m_isRunning) {
        if (run)
            m_loopsDone = 0;
        else
            m_shiftTimer->stop();
        setCurrentIndex(0);
        if (!self)
            return;
        if (run)
            restartTimer();
        m_isRunning = run;
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
        if (!self)
            return;
    }
    notifyPlayStatus();
}

/// Ticks at the present interval from now on; an interval of nothing does not tick.
void CAnimatedImage::restartTimer()
{
    m_shiftTimer->stop();
    if (m_shiftInterval > 0)
        m_shiftTimer->start(m_shiftInterval);
}

void CAnimatedImage::onShiftTimeout()
{
    if (!m_playEnabled || !m_isRunning)
        return;
    const QPointer<CAnimatedImage> self(this);
    const PlaybackSteps::Step step =
        PlaybackSteps::afterTick(m_runningIndex, m_portraits.size(), m_loopsDone, m_loopCount);
    m_loopsDone = step.loopsDone;
    if (step.finished) {
        // Stopping rewinds to the first frame; showing the step afterwards rests on the last one.
        playImage(false);
        if (!self)
            return;
    }
    showStep(step.index);
    if (self)
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

/// Shows the frame of a step of playback: the background type redraws its tile instead of
/// resizing the object.
void CAnimatedImage::showStep(int index)
{
    if (m_portraits.isEmpty())
        return;
    if (isBackgroundType()) {
        m_runningIndex = index;
        generateBGImage(index);
    } else {
        setCurrentIndex(index);
    }
}

void CAnimatedImage::setCurrentIndex(int index)
{
    if (isBackgroundType()) {
        m_runningIndex = index;
        refreshShownFrame();
        return;
    }
    if (m_portraits.isEmpty())
        return;
    const int shown = qBound(0, index, m_portraits.size() - 1);
    if (shown == m_runningIndex)
        return;

    const int previous = m_runningIndex;
    m_runningIndex = shown;
    if (isFrame(previous))
        scaleFramesLike(previous);

    const QSizeF size = m_portraits.at(shown).size;
    const QPointF center = GetGraphicsItemPtr()->mapToScene(getClientRect().center());
    // Only an object that turns freely keeps its angle from frame to frame. The direction of any
    // other is asked for and not used.
    constexpr int turnsFreely = 2;
    double angle = 0.0;
    if (getKTRotateType() == turnsFreely)
        angle = getRotate();
    else
        getKTRotateDegree();

    const QPointer<CAnimatedImage> self(this);
    setCenterPos(center, size, angle, true);
    if (self)
        refreshShownFrame();
    if (self)
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
}

/// Gives every frame the scale that the user gave to the frame @p index by resizing the object.
void CAnimatedImage::scaleFramesLike(int index)
{
    const QSize pixels = m_portraits.at(index).image.size();
    if (pixels.isEmpty())
        return;
    const QSizeF object = m_rect.size();
    for (CAnimatedPortrait &frame : m_portraits) {
        frame.size = QSizeF(frame.image.width() * object.width() / pixels.width(),
                            frame.image.height() * object.height() / pixels.height());
    }
}

void CAnimatedImage::refreshShownFrame()
{
    const QPointer<CAnimatedImage> self(this);
    updateRegion(m_runningIndex, false);
    updateAfterObjRectChanged(GetGraphicsItemPtr(), true);
    if (self && m_hasLayerEffects)
        clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
}

void CAnimatedImage::setShiftInterval(int ms)
{
    m_shiftInterval = ms;
    restartTimer();
}

void CAnimatedImage::setKeepRatio(bool keepRatio)
{
    m_keepRatio = keepRatio;
}

void CAnimatedImage::setLoopCount(int count)
{
    m_loopCount = count;
}

void CAnimatedImage::notifyPlayStatus()
{
    const QString running = m_isRunning ? QStringLiteral("true") : QStringLiteral("false");
    qDebug("notifyPlayStatus = %s", qPrintable(running));
    postSetting(QStringLiteral("idImagePlay"), running);
}

void CAnimatedImage::notifyAnimatedType()
{
    postSetting(QStringLiteral("idAnimatedType"), m_animatedType);
}

void CAnimatedImage::postSetting(const QString &id, const QJsonValue &value)
{
    const QJsonObject setting{{QStringLiteral("id"), id}, {QStringLiteral("value"), value}};
    const QJsonObject message{{QStringLiteral("settings"), QJsonArray{setting}}};
    const QByteArray text = QJsonDocument(message).toJson();
    GetFramework()->notifier()->post(MessageId::SettingValues, 0,
                                     QString::fromLatin1(text.constData()), -1);
}
