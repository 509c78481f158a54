#pragma once

#include <QtCore/QByteArray>

/// The checksum of @p bytes that zip archives keep with each file.
quint32 crc32(const QByteArray &bytes);
