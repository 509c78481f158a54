#pragma once

#include <QtCore/QPair>
#include <QtCore/QPointF>
#include <QtCore/QSizeF>
#include <QtCore/QString>

/// Reads the values of the options of "flipbook edit". Everything here throws UsageError for a
/// value that is not of the form.
namespace OperationValue
{

/// The farthest from the origin of the page that an object may be, and the longest side, in units
/// of the page.
constexpr double Farthest = 100000.0;
/// The shortest side of an object or page.
constexpr double ShortestSide = 1.0;

/// A whole number, no less than @p least.
int number(const QString &text, int least = 0);

/// A number from @p least to @p most.
double real(const QString &text, double least, double most);

/// The two parts of @p value around the first @p separator.
QPair<QString, QString> split(const QString &value, QChar separator);

/// "3" or "3-5".
QPair<int, int> range(const QString &value);

/// "X,Y", in units of the page.
QPointF place(const QString &value);

/// "WxH", in units of the page.
QSizeF size(const QString &value);

/// The name of a file.
QString fileName(const QString &value);

} // namespace OperationValue
