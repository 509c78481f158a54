#include "animatedimage/core/playbacksteps.h"

#include <QtCore/qglobal.h>

#include <limits>

namespace PlaybackSteps
{

namespace
{

/// Saturates: an animation may loop for years.
int saturated(qint64 value)
{
    return int(qMin<qint64>(value, std::numeric_limits<int>::max()));
}

bool mayRepeat(int loopsDone, int loopCount)
{
    return loopCount == LoopForever || loopsDone <= loopCount;
}

/// The step at the end of a pass.
Step afterPass(const Progress &progress, const Animation &animation)
{
    if (mayRepeat(progress.loopsDone, animation.loopCount))
        return {0, progress, false};
    return {animation.frameCount - 1, progress, true};
}

} // namespace

Step afterTick(int index, const Progress &progress, const Animation &animation)
{
    if (index < animation.frameCount - 1)
        return {index + 1, progress, false};
    return afterPass({saturated(qint64(progress.loopsDone) + 1), progress.elapsedMs}, animation);
}

Step afterHostTick(const Progress &progress, const Animation &animation)
{
    const qint64 elapsed = qint64(progress.elapsedMs) + HostTickMs;
    const qint64 frame = elapsed / animation.intervalMs;
    if (frame < animation.frameCount)
        return {int(frame), {progress.loopsDone, saturated(elapsed)}, false};

    const qint64 passMs = qint64(animation.intervalMs) * animation.frameCount;
    const int passes = saturated(progress.loopsDone + elapsed / passMs);
    return afterPass({passes, int(elapsed % passMs)}, animation);
}

} // namespace PlaybackSteps
