#pragma once

#include <QtCore/QJsonValue>
#include <QtCore/QVariant>

class QDataStream;

/// Named parameters in the two saved forms. Only values of these types are kept: bool, int, uint,
/// qlonglong, double, QString, QStringList, QPointF, QSizeF, QRectF, QByteArray. A closed set,
/// because a document may be hostile, and Qt's own reader creates any type that is requested.
namespace VariantCodec
{

bool canSave(const QVariant &value);

/// Writes a value that canSave().
void write(QDataStream &stream, const QVariant &value);
/// An invalid value for an unknown type or one that is truncated.
QVariant read(QDataStream &stream);

/// A value that canSave() as an object of one member, type name and content: {"int": 3}.
QJsonValue toJson(const QVariant &value);
/// Takes plain values of other writers as well: booleans, numbers, texts, arrays of texts. An
/// invalid value for everything else.
QVariant fromJson(const QJsonValue &json);

} // namespace VariantCodec
