#pragma once

#include "flipbook/import/decodedfilm.h"

class QFile;
class Reading;

/// Whether a file that begins with @p start may be the description of a sprite sheet: JSON.
bool mayBeSheetJson(const QByteArray &start);

/// Reads the film that the JSON in @p file, which the user named as @p path, describes: "frames",
/// an array or an object, whose elements have a "frame" with "x", "y", "w" and "h", and perhaps
/// "duration" in milliseconds, "filename", and "rotated", "spriteSourceSize" and "sourceSize" for
/// frames that were turned or trimmed. Frames of an object are in the natural order of their names.
/// The picture is "image" in "meta", a file in the folder of the JSON. What is kept of the frames
/// is counted in @p reading.
/// @throw Failure when it is no such JSON, a frame is outside of the picture, the picture cannot be
/// read or is outside of the folder, or there is too little memory.
DecodedFilm readSheetJson(QFile &file, const QString &path, Reading &reading);
