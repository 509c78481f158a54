#include "framework/numbertext.h"

#include <QtCore/QLocale>

#include <cmath>
#include <limits>

QString numberText(double value)
{
    if (std::isnan(value))
        return QStringLiteral("nan");
    if (std::isinf(value))
        return value > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
    if (value == 0.0 && std::signbit(value))
        return QStringLiteral("-0");
    return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

std::optional<double> parseNumberText(const QString &text)
{
    bool ok = true;
    double parsed = 0.0;
    if (text == QLatin1String("nan"))
        parsed = std::numeric_limits<double>::quiet_NaN();
    else if (text == QLatin1String("inf"))
        parsed = std::numeric_limits<double>::infinity();
    else if (text == QLatin1String("-inf"))
        parsed = -std::numeric_limits<double>::infinity();
    else
        parsed = text.toDouble(&ok);
    // Other spellings of the same number are not ours.
    if (!ok || numberText(parsed) != text)
        return std::nullopt;
    return parsed;
}
