#pragma once

#include "flipbook/document/documentjson.h"

#include <QtCore/QSizeF>

/// What the objects of a document will take in addition to their frames, worked out from their
/// saved form.
namespace FormMemory
{

/// The bytes of an object itself, measured and rounded up.
constexpr qint64 BytesPerObject = qint64(8) << 10;

/// The bytes of pages and objects themselves.
qint64 ofObjects(const QVector<PageForm> &pages);

/// The size of the object that @p state describes when it is a background; none for another one.
QSizeF backgroundSize(const QJsonObject &state);

} // namespace FormMemory
