#pragma once

#include <QtCore/QString>

#include <optional>

struct GifDescriptors;

/// How much memory pictures may take when they are decoded, and how such amounts are written.
namespace MemoryBudget
{

constexpr qint64 Default = qint64(2) << 30;

/// Reads an amount such as "64M": a whole number of bytes greater than zero, or of KiB, MiB or GiB
/// with the suffix K, M or G in either case. Nothing for any other text, and for more than an
/// address can count.
std::optional<qint64> parse(const QString &text);

/// An amount for a person to read, such as "1.5 MiB"; bytes below 1 KiB are written in full.
QString text(qint64 bytes);

/// The bytes that @p frames pictures of the screen of @p gif take at four bytes a pixel, with
/// what the decoder holds beside them. Saturates rather than overflows.
qint64 neededFor(const GifDescriptors &gif, qint64 frames);

/// The part of that which the pictures go on taking when they are decoded.
qint64 keptOf(const GifDescriptors &gif, qint64 frames);

/// The bytes of one picture of @p width by @p height pixels while it is decoded and converted.
qint64 neededForPicture(qint64 width, qint64 height);

} // namespace MemoryBudget
