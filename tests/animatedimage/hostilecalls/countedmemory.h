#pragma once

#include <QtCore/qglobal.h>

/// How much memory this process takes: every `new`, and every malloc() of Qt and of the plug-in,
/// counts, whether it is used or not. Programs with sanitizers have allocators of their own and
/// cannot tell.
namespace CountedMemory
{

bool isPossible();

/// Begins to count.
void start();

/// The most bytes that were taken at one time since start(), beyond those of before.
qint64 most();

} // namespace CountedMemory
