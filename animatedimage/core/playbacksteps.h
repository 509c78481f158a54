#pragma once

/// The arithmetic of playback, without an object or a clock.
namespace PlaybackSteps
{

/// The length of one tick of playback that the host steps, in milliseconds.
constexpr int HostTickMs = 40;

/// What a tick of the frame timer leads to.
struct Step {
    int index;     ///< the frame to show; -1 when playback ends without frames
    int loopsDone; ///< passes completed since play started
    bool finished; ///< the loops are used up: stop, and rest on @c index
};

/// The step from the frame @p index of @p frameCount frames, after @p loopsDone passes of
/// @p loopCount + 1 (-1: of endlessly many).
Step afterTick(int index, int frameCount, int loopsDone, int loopCount);

/// What a tick of the host's clock leads to.
struct HostStep {
    int index;
    int elapsedMs; ///< time counted since the pass began
    int loopsDone;
    bool finished;
};

/// The step of HostTickMs from @p elapsedMs, with @p intervalMs for each of @p frameCount frames,
/// both positive. A pass that ends shows the first frame, whatever time is left over.
HostStep afterHostTick(int elapsedMs, int intervalMs, int frameCount, int loopsDone, int loopCount);

} // namespace PlaybackSteps
