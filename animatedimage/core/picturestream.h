#pragma once

#include <QtCore/QList>
#include <QtGui/QImage>

class QDataStream;

/// Reads pictures from streams that may be damaged or hostile. The layout, and what a failure does
/// to list and stream status, are those of Qt's own readers; unlike them these neither throw nor
/// set memory aside for what a stream only claims to hold. Writing is Qt's own.
namespace PictureStream
{

/// Whether a picture of @p size pixels, each of which takes @p bitsPerPixel in memory, may come
/// from so many bytes. One of up to 8 MiB in memory always may.
bool isJustified(const QSize &size, int bitsPerPixel, qint64 availableBytes);

/// Reads one picture, which may be null. False, with the stream's status no longer
/// QDataStream::Ok, when it is damaged, or when its size could not come from the bytes that are
/// present. In the stream versions 1 to 4 a null picture has no bytes: anything that is not the
/// beginning of a picture, the end included, is null there.
bool read(QDataStream &stream, QImage &image);

/// The same for a picture that may be the last thing in the buffer: one whose closing check sum is
/// cut off, which the reader of PNG files forgives, fails too.
bool readWhole(QDataStream &stream, QImage &image);

/// Reads a counted list of pictures. One that fails empties the list and ends the reading, and so
/// do more than 65536 null pictures that have no bytes. A status that was bad before is restored
/// afterwards.
QList<QImage> readList(QDataStream &stream);

/// @p image with the same bytes each time it is written. In a picture of one bit for each pixel the
/// bits after the end of a row are uninitialised, and a PNG file keeps them; here they are
/// 0. Every other picture is shared as it is.
QImage withoutStrayBits(const QImage &image);

} // namespace PictureStream
