#include "flipbook/editing/operationvalue.h"

#include "flipbook/base/failure.h"
#include "flipbook/import/sourcefile.h"

#include <limits>

namespace OperationValue
{

int number(const QString &text, int least)
{
    bool isNumber = false;
    const int value = text.toInt(&isNumber);
    if (!isNumber || value < least)
        throw UsageError{QStringLiteral("'%1' is not a whole number from %2 to %3")
                             .arg(text, QString::number(least),
                                  QString::number(std::numeric_limits<int>::max()))};
    return value;
}

double real(const QString &text, double least, double most)
{
    bool isNumber = false;
    const double value = text.toDouble(&isNumber);
    // Written so that it also refuses NaN.
    if (!isNumber || !(value >= least && value <= most))
        throw UsageError{QStringLiteral("'%1' is not a number from %2 to %3")
                             .arg(text, QString::number(least), QString::number(most))};
    return value;
}

QPair<QString, QString> split(const QString &value, QChar separator)
{
    const int at = value.indexOf(separator);
    if (at < 0)
        throw UsageError{QStringLiteral("'%1' has no '%2'").arg(value, QString(separator))};
    return {value.left(at), value.mid(at + 1)};
}

QPair<int, int> range(const QString &value)
{
    // A dash at the start is a sign.
    if (value.indexOf(QLatin1Char('-'), 1) < 0) {
        const int only = number(value);
        return {only, only};
    }
    const auto [first, last] = split(value, QLatin1Char('-'));
    const QPair<int, int> ends(number(first), number(last));
    if (ends.first > ends.second)
        throw UsageError{QStringLiteral("'%1' ends before it begins").arg(value)};
    return ends;
}

QPointF place(const QString &value)
{
    const auto [x, y] = split(value, QLatin1Char(','));
    return {real(x, -Farthest, Farthest), real(y, -Farthest, Farthest)};
}

QSizeF size(const QString &value)
{
    const auto [width, height] = split(value, QLatin1Char('x'));
    return {real(width, ShortestSide, Farthest), real(height, ShortestSide, Farthest)};
}

QString fileName(const QString &value)
{
    if (value.isEmpty())
        throw UsageError{QStringLiteral("a file is missing")};
    return plainPath(value);
}

} // namespace OperationValue
