#pragma once

class QIODevice;

/// What a PNG file tells before it is decoded. The PNG library takes memory for a whole chunk
/// before it reads it, and expands the texts before it comes to the pixels.
namespace PngFile
{

/// Whether each chunk of the file at the position of @p device is present, up to the last one,
/// whose check sum may be missing, and whether the compressed pixels are as long as deflate needs
/// for as many as the header claims. Then the position is as before. Otherwise it is where the PNG
/// library would give up: at the end, or after the pixels.
///
/// True, with nothing read, for bytes that do not begin as a PNG file does, which the library
/// refuses at once, and for a sequential device, which cannot be looked through.
bool isComplete(QIODevice &device);

} // namespace PngFile
