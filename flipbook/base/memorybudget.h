#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QSize>
#include <QtCore/QString>

#include <optional>

/// How much memory pictures may take when they are decoded, and how such amounts are written.
namespace MemoryBudget
{

constexpr qint64 Default = qint64(2) << 30;

/// Name, record and bookkeeping of one frame, without its picture: what a film of ten million dots
/// takes for each.
constexpr qint64 BytesPerFrame = 1024;

/// Reads an amount such as "64M": a whole number of bytes greater than zero, or of KiB, MiB or GiB
/// with the suffix K, M or G in either case. Nothing for any other text, and for more than an
/// address can count.
std::optional<qint64> parse(const QString &text);

/// An amount for a person to read, such as "1.5 MiB"; bytes below 1 KiB are written in full.
QString text(qint64 bytes);

/// The bytes that a film of @p frames frames of @p size pixels takes while it is decoded, at four
/// bytes a pixel, with @p workingPictures more that the decoder holds. Saturates rather than
/// overflows.
qint64 neededForFilm(const QSize &size, qint64 frames, int workingPictures);

/// The part of that which the film still takes when it is decoded.
qint64 keptForFilm(const QSize &size, qint64 frames);

/// The bytes of the tiled picture that a background of @p size keeps.
qint64 keptForTile(const QSizeF &size);

/// What making such a picture also takes, while the one before is still there.
qint64 forTileAtWork(const QSizeF &size);

/// The bytes that the JSON @p text takes when it is read, with itself.
qint64 neededForJson(const QByteArray &text);

/// The least that JSON of @p size bytes may take, before it is read.
qint64 leastForJson(qint64 size);

} // namespace MemoryBudget
