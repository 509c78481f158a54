#pragma once

/// Makes one allocation of this process fail: every `new`, and every malloc() of Qt and of the
/// plug-in, counts. Programs with sanitizers have allocators of their own and cannot do this.
namespace FailingAllocations
{

bool isPossible();

/// The allocation @p number from now on, counted from 1, fails; those after it succeed.
void failAt(int number);

/// No allocation fails any more. Returns whether one has failed since failAt().
bool stop();

} // namespace FailingAllocations
