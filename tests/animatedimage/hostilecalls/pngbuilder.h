#pragma once

#include <QtCore/QByteArray>

/// Writes PNG files piece by piece, right and wrong ones.
namespace PngBuilder
{

QByteArray signature();
/// A chunk with a right check sum. It claims @p length bytes, by default as many as it has.
QByteArray chunk(const char *type, const QByteArray &content, qint64 length = -1);
QByteArray header(quint32 width, quint32 height, int depth, int colorType, bool interlaced = false);
/// A text chunk that is compressed and has @p size characters, all the same.
QByteArray compressedText(int size);
/// The bytes as zlib packs them.
QByteArray deflated(const QByteArray &bytes);

} // namespace PngBuilder
