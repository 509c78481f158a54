#pragma once

#include <QtCore/QString>

#include <optional>

/// The shortest decimal text that gives exactly @p value back, in any locale; "nan", "inf" and
/// "-inf" for values that are not finite, "-0" for negative zero.
QString numberText(double value);

/// The number whose numberText() is @p text, if there is one.
std::optional<double> parseNumberText(const QString &text);
