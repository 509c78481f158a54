#include "animatedimage/object/playback.h"

#include "animatedimage/core/framelist.h"
#include "animatedimage/core/jsonkeys.h"
#include "host/framework.h"
#include "host/notificationcodes.h"

#include <QtCore/QDebug>
#include <QtCore/QJsonDocument>
#include <QtCore/QTimer>

#include <new>

namespace
{

/// The rotation type of an object that turns freely; any other keeps its direction.
constexpr int TurnsFreely = 2;

void postSetting(const QString &id, const QJsonValue &value)
{
    const QJsonObject setting{{QStringLiteral("id"), id}, {QStringLiteral("value"), value}};
    const QJsonObject message{{QStringLiteral("settings"), QJsonArray{setting}}};
    const QByteArray text = QJsonDocument(message).toJson();
    GetFramework()->notifier()->post(MessageId::SettingValues, 0,
                                     QString::fromLatin1(text.constData()), -1);
}

} // namespace

void CAnimatedImage::playImage(bool run)
try {
    if (run != m_isRunning) {
        if (run)
            m_loopsDone = 0;
        else
            m_shiftTimer->stop();
        if (!outlives([this] { setCurrentIndex(0); }))
            return;
        if (run)
            Playback{*this}.restartTimer();
        m_isRunning = run;
        if (!notifyShownContent())
            return;
    }
    notifyPlayStatus();
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::onShiftTimeout()
try {
    if (!m_playEnabled || !m_isRunning)
        return;
    const Playback playback{*this};
    const PlaybackSteps::Step step =
        PlaybackSteps::afterTick(m_runningIndex, playback.progress(), playback.animation());
    m_loopsDone = step.progress.loopsDone;
    // Stopping rewinds to the first frame; showing the step afterwards rests on the last one.
    if (step.finished && !outlives([this] { playImage(false); }))
        return;
    if (playback.showFrame(step.index))
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::setCurrentIndex(int index)
try {
    const Playback playback{*this};
    if (isBackgroundType()) {
        m_runningIndex = index;
        (void)playback.refreshShownFrame();
        return;
    }
    if (m_portraits.isEmpty())
        return;
    const int shown = FrameList::clamped(index, m_portraits.size());
    if (shown == m_runningIndex)
        return;

    const int previous = m_runningIndex;
    m_runningIndex = shown;
    if (isFrame(previous))
        m_scale.give(m_portraits, previous, m_rect.size());

    const QSizeF size = m_scale.sizeOf(m_portraits.at(shown));
    const QPointF center = GetGraphicsItemPtr()->mapToScene(getClientRect().center());
    // Only an object that turns freely keeps its angle from frame to frame. The direction of any
    // other is asked for and not used.
    double angle = 0.0;
    if (getKTRotateType() == TurnsFreely)
        angle = getRotate();
    else
        getKTRotateDegree();

    if (!outlives([&] { setCenterPos(center, size, angle, true); }))
        return;
    if (playback.refreshShownFrame())
        notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::setShiftInterval(int ms)
try {
    m_shiftInterval = ms;
    Playback{*this}.restartTimer();
} catch (const std::bad_alloc &) {
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
try {
    const QString running = m_isRunning ? QStringLiteral("true") : QStringLiteral("false");
    qDebug("notifyPlayStatus = %s", qPrintable(running));
    postSetting(SettingId::Play, running);
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::notifyAnimatedType()
try {
    postSetting(SettingId::AnimatedType, m_animatedType);
} catch (const std::bad_alloc &) {
}

void CAnimatedImage::Playback::restartTimer() const
{
    object.m_shiftTimer->stop();
    if (object.m_shiftInterval > 0)
        object.m_shiftTimer->start(object.m_shiftInterval);
}

bool CAnimatedImage::Playback::stop() const
{
    return !object.m_isRunning || object.outlives([this] { object.playImage(false); });
}

bool CAnimatedImage::Playback::restart() const
{
    return object.outlives([this] { object.playImage(false); }) &&
           object.outlives([this] { object.playImage(true); });
}

bool CAnimatedImage::Playback::showFrame(int index) const
{
    if (object.m_portraits.isEmpty())
        return true;
    if (!object.isBackgroundType())
        return object.outlives([this, index] { object.setCurrentIndex(index); });
    object.m_runningIndex = index;
    object.generateBGImage(index);
    return true;
}

bool CAnimatedImage::Playback::refreshShownFrame() const
{
    object.updateRegion(object.m_runningIndex, false);
    if (!object.outlives(
            [this] { object.updateAfterObjRectChanged(object.GetGraphicsItemPtr(), true); }))
        return false;
    if (object.m_hasLayerEffects)
        object.clearLayerEffectCache(ClearLayerEffectCacheReason::ContentChanged);
    return true;
}

PlaybackSteps::Animation CAnimatedImage::Playback::animation() const
{
    return {object.m_portraits.size(), object.m_loopCount, object.m_shiftInterval};
}

PlaybackSteps::Progress CAnimatedImage::Playback::progress() const
{
    return {object.m_loopsDone, object.m_elapsedMs};
}
