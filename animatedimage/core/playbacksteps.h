#pragma once

/// The arithmetic of playback, without an object or a clock.
namespace PlaybackSteps
{

/// A loop count that never ends.
constexpr int LoopForever = -1;
/// The length of one tick of playback that the host steps, in milliseconds.
constexpr int HostTickMs = 40;

/// What is played.
struct Animation {
    int frameCount;
    int loopCount;  ///< passes after the first; LoopForever never ends
    int intervalMs; ///< of each frame
};

/// How far playback has come.
struct Progress {
    int loopsDone; ///< passes completed since play started
    int elapsedMs; ///< time counted by the host's ticks since the pass began
};

/// What a tick leads to.
struct Step {
    int index; ///< the frame to show; -1 when playback ends without frames
    Progress progress;
    bool finished; ///< the loops are used up: stop, and rest on @c index
};

/// The step from the frame @p index at a tick of the frame timer. Time is not counted by it.
Step afterTick(int index, const Progress &progress, const Animation &animation);

/// The step at a tick of the host's clock. Count and interval of @p animation must be positive. A
/// pass that ends shows the first frame, independent of the time that remains.
Step afterHostTick(const Progress &progress, const Animation &animation);

} // namespace PlaybackSteps
