#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QString>

class QDataStream;

/// Reading and writing of streams that may be damaged or hostile. A reader never throws and
/// takes no memory ahead of the bytes that are there; a value that is truncated comes back as
/// nothing and sets the status QDataStream::ReadPastEnd.
namespace ByteStream
{

/// Bytes, preceded by their 32-bit length.
void writeBlock(QDataStream &stream, const QByteArray &block);
QByteArray readBlock(QDataStream &stream);

/// A text as a block of UTF-8.
void writeText(QDataStream &stream, const QString &text);
QString readText(QDataStream &stream);

/// The 64 bits of a double, independent of the precision of the stream.
void writeDouble(QDataStream &stream, double value);
double readDouble(QDataStream &stream);

void writeFlag(QDataStream &stream, bool flag);
bool readFlag(QDataStream &stream);

} // namespace ByteStream
