#include "animatedimage/core/playbacksteps.h"

#include <QtCore/qglobal.h>

#include <limits>

namespace PlaybackSteps
{

namespace
{

constexpr int LoopForever = -1;

// An endless film on a wall screen must not overflow its counter.
int saturated(qint64 value)
{
    return static_cast<int>(qMin<qint64>(value, std::numeric_limits<int>::max()));
}

bool mayRepeat(int loopsDone, int loopCount)
{
    return loopCount == LoopForever || loopsDone <= loopCount;
}

} // namespace

Step afterTick(int index, int frameCount, int loopsDone, int loopCount)
{
    if (index < frameCount - 1)
        return {index + 1, loopsDone, false};

    const int passes = saturated(qint64(loopsDone) + 1);
    if (mayRepeat(passes, loopCount))
        return {0, passes, false};
    return {frameCount - 1, passes, true};
}

HostStep afterHostTick(int elapsedMs, int intervalMs, int frameCount, int loopsDone, int loopCount)
{
    const qint64 elapsed = qint64(elapsedMs) + HostTickMs;
    const qint64 frame = elapsed / intervalMs;
    if (frame < frameCount)
        return {static_cast<int>(frame), saturated(elapsed), loopsDone, false};

    const qint64 passMs = qint64(intervalMs) * frameCount;
    const int passes = saturated(loopsDone + elapsed / passMs);
    const int rest = static_cast<int>(elapsed % passMs);
    if (mayRepeat(passes, loopCount))
        return {0, rest, passes, false};
    return {frameCount - 1, rest, passes, true};
}

} // namespace PlaybackSteps
