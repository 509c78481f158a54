#pragma once

#include <QtCore/QString>

/// The names of members of JSON objects that the object reads and writes.
namespace JsonKey
{

// The JSON form; those of the settings are also members of a folder's config.json.
inline const QLatin1String isGif("IsGif");
inline const QLatin1String imageList("ImageList");
inline const QLatin1String gifFileName("GifFileName");
inline const QLatin1String shiftInterval("ShiftInterval");
inline const QLatin1String lockScale("LockScale");
inline const QLatin1String imageMirror("ImageMirror");
inline const QLatin1String imageFlip("ImageFlip");
inline const QLatin1String loopCount("LoopCount");
inline const QLatin1String useGifInterval("UseGifInterval");
inline const QLatin1String isRunning("IsRunning");

// An element of the image list of a folder.
inline const QLatin1String fileName("filename");

// The named parameters that both saved forms carry in the base's part.
inline const QLatin1String frameNames("animatedImageNames");
inline const QLatin1String frameSizes("animatedImageSizes");
inline const QLatin1String animatedType("animatedType");
inline const QLatin1String visibleRect("animatedBGRect");
inline const QLatin1String runningIndex("animatedRunningIndex");

// The user's name for the object, a named parameter of the base.
inline const QLatin1String objectName("object_name");

} // namespace JsonKey

/// The ids of the controls of the settings panel.
namespace SettingId
{

inline const QLatin1String play("idImagePlay");
inline const QLatin1String shiftInterval("idShiftInterval");
inline const QLatin1String loopCount("idLoopCount");
inline const QLatin1String animatedType("idAnimatedType");

} // namespace SettingId
