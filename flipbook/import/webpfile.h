#pragma once

#include "flipbook/base/steps.h"
#include "flipbook/import/decodedfilm.h"

#include <optional>

class MemoryAccount;

/// WebP files, decoded by libwebp: Qt reads them only where a plug-in is installed, and of an
/// animated one less than there is.
namespace WebpFile
{

/// The number of bytes that isAnimated() and sizeOf() need.
constexpr int StartLength = 64;

/// Whether a file that begins with @p start is a WebP file and says that it is animated.
bool isAnimated(const QByteArray &start);

/// The size in pixels of the picture, or of the canvas of a film; none if it cannot be told. A few
/// bytes more than @p start may be needed where a picture has no extended header.
std::optional<QSize> sizeOf(const QByteArray &start);

/// The picture in @p file, or the first frame of a film; null if it cannot be decoded.
/// Format_ARGB32. Needs three times the memory of the picture.
QImage readStill(const QByteArray &file);

/// Decodes the film in @p file, which the user named as @p path. Checks first that its frames fit
/// into @p memory, and counts there what is kept. Calls @p steps after each frame. Stops at the
/// first damaged or incomplete frame, with a warning.
/// @throw Failure if no frame is complete, or memory does not suffice.
DecodedFilm readFilm(const QByteArray &file, const QString &path, MemoryAccount &memory,
                     const Steps &steps = {});

} // namespace WebpFile
