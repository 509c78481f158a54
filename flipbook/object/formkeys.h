#pragma once

#include <QtCore/QString>

/// The names of members of the JSON form of an animated image.
namespace FormKey
{

inline const QLatin1String ImageList("ImageList");
inline const QLatin1String GifFileName("GifFileName");
inline const QLatin1String IsRunning("IsRunning");
inline const QLatin1String OtherParams("OtherParams");

// Settings, which are also members of a folder's config.json.
inline const QLatin1String ShiftInterval("ShiftInterval");
inline const QLatin1String LockScale("LockScale");
inline const QLatin1String ImageMirror("ImageMirror");
inline const QLatin1String ImageFlip("ImageFlip");
inline const QLatin1String LoopCount("LoopCount");

// An element of the image list of a folder.
inline const QLatin1String FileName("filename");
/// The name of the frame. Objects ignore it; flipbook gives it to the frame when it imports.
inline const QLatin1String Name("name");

// Members of OtherParams.
inline const QLatin1String ObjectName("object_name");
inline const QLatin1String FrameNames("animatedImageNames");
inline const QLatin1String FrameSizes("animatedImageSizes");
inline const QLatin1String RunningIndex("animatedRunningIndex");

} // namespace FormKey
