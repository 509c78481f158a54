#pragma once

#include <QtCore/QtGlobal>

#include <limits>

/// Arithmetic on amounts, none of which is negative, that ends at the largest one.
namespace Saturating
{

inline qint64 sum(qint64 a, qint64 b)
{
    qint64 result = 0;
    return __builtin_add_overflow(a, b, &result) ? std::numeric_limits<qint64>::max() : result;
}

inline qint64 product(qint64 a, qint64 b)
{
    qint64 result = 0;
    return __builtin_mul_overflow(a, b, &result) ? std::numeric_limits<qint64>::max() : result;
}

} // namespace Saturating
