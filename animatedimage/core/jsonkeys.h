#pragma once

#include <QtCore/QString>

/// The names of members of JSON objects that the object reads and writes.
namespace JsonKey
{

// The JSON form; those of the settings are also members of a folder's config.json.
inline const QLatin1String IsGif("IsGif");
inline const QLatin1String ImageList("ImageList");
inline const QLatin1String GifFileName("GifFileName");
inline const QLatin1String ShiftInterval("ShiftInterval");
inline const QLatin1String LockScale("LockScale");
inline const QLatin1String ImageMirror("ImageMirror");
inline const QLatin1String ImageFlip("ImageFlip");
inline const QLatin1String LoopCount("LoopCount");
inline const QLatin1String UseGifInterval("UseGifInterval");
inline const QLatin1String IsRunning("IsRunning");

// An element of the image list of a folder.
inline const QLatin1String FileName("filename");

// The named parameters that both saved forms carry in the base's part.
inline const QLatin1String FrameNames("animatedImageNames");
inline const QLatin1String FrameSizes("animatedImageSizes");
inline const QLatin1String AnimatedType("animatedType");
inline const QLatin1String VisibleRect("animatedBGRect");
inline const QLatin1String RunningIndex("animatedRunningIndex");

// The user's name for the object, a named parameter of the base.
inline const QLatin1String ObjectName("object_name");

} // namespace JsonKey

/// The ids of the controls of the settings panel.
namespace SettingId
{

inline const QLatin1String Play("idImagePlay");
inline const QLatin1String ShiftInterval("idShiftInterval");
inline const QLatin1String LoopCount("idLoopCount");
inline const QLatin1String AnimatedType("idAnimatedType");

} // namespace SettingId
