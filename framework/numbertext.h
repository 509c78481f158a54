#pragma once

#include <QtCore/QString>

/// The shortest decimal text that gives exactly @p value back, in any locale; "nan", "inf" and
/// "-inf" for values that are not finite, "-0" for negative zero.
QString numberText(double value);

/// Reads a text that numberText() made. False, with @p value untouched, for any other.
bool parseNumberText(const QString &text, double &value);
