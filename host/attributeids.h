#pragma once

/// Attributes that a host sends to an object through CGDRootObject::SetAttribute().
namespace AttributeId
{

/// Start (or, after a suspension, resume) playback that the host steps itself.
/// Input: bool (unused), bool resume.
constexpr int StartSteppedPlayback = 2702;
/// Hand playback to the host (false) or back to the object's own timer (true). Input: bool.
constexpr int EnableTimer = 2704;
/// Advance stepped playback by one tick of 40 ms. No input.
constexpr int SteppedTick = 2705;
/// The document enters its alternate (presenting) mode: remember the editing state. No input.
constexpr int EnterAlternateMode = 2804;
/// The document leaves its alternate mode: put the editing state back. No input.
constexpr int LeaveAlternateMode = 2805;

} // namespace AttributeId
