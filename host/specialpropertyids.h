#pragma once

/// Identifiers of the operations of an animated image that the host reaches through
/// CGDRootObject::GetSpecialProperty() and SetSpecialProperty(). Each identifier names one
/// operation for reading and one for writing, which need not be related.
/// Request and answer share one buffer; the integrator's guide has the full table.
namespace SpecialPropertyId
{

constexpr int ShowNextFrame = 5001;     ///< set: stop, then show the next frame
constexpr int ShowPreviousFrame = 5002; ///< set: stop, then show the previous frame
constexpr int ShowFrameAt = 5003;       ///< set: stop, then show the frame at an index
constexpr int ShowFrameNamed = 5004;    ///< set: stop, then show the frame of a name
constexpr int FrameName = 5005;         ///< get: name at an index; set: rename
constexpr int Thumbnails = 5006;        ///< get: all names and reduced pictures
constexpr int FrameImage = 5007;        ///< get: full picture at an index; set: replace it
constexpr int AnimatedType = 5008;      ///< get and set: normal or background type
constexpr int DeleteFrame = 5009;       ///< set: delete the frame at an index
constexpr int InsertBlankFrame = 5010;  ///< get: insert a transparent frame after an index
constexpr int DuplicateFrame = 5011;    ///< get: insert a copy of one frame after another
constexpr int RunningIndex = 5012;      ///< get: index of the frame shown
constexpr int Running = 5013;           ///< get: whether it plays; set: play or stop
constexpr int InsertImageFile = 5014;   ///< get: insert a picture file after an index
constexpr int MoveFrame = 5015;         ///< set: move a frame from one index to another
constexpr int CopyFromObject = 5016;    ///< set: take over the state of another animated image
constexpr int ShiftInterval = 5017;     ///< get: milliseconds between frames
constexpr int LoopCount = 5018;         ///< get: repetitions after the first pass, -1 is forever
constexpr int IndexAndCount = 5019;     ///< get: index of the frame shown and number of frames
constexpr int ReplaceAllFrames = 5020;  ///< get: replace all frames by one picture file, undoable
constexpr int RunningFrameName = 5021;  ///< get: name of the frame shown

} // namespace SpecialPropertyId
