#pragma once

#include <QtCore/QString>

/// @p one if @p count is 1, otherwise @p many with the count in the place of %1. Chinese has one
/// form for all numbers, so translations need no plural rules.
inline QString counted(int count, const QString &one, const QString &many)
{
    return count == 1 ? one : many.arg(count);
}
