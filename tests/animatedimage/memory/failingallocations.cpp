#include "tests/animatedimage/memory/failingallocations.h"

#include <cstdlib>
#include <new>

namespace
{

// Counts down to the allocation that fails; 0 or less: none does.
int countdown = 0;
bool hasFailed = false;

[[maybe_unused]] bool failsNow()
{
    if (countdown <= 0)
        return false;
    --countdown;
    if (countdown > 0)
        return false;
    hasFailed = true;
    return true;
}

} // namespace

void FailingAllocations::failAt(int number)
{
    hasFailed = false;
    countdown = number;
}

bool FailingAllocations::stop()
{
    countdown = 0;
    return hasFailed;
}

#if defined(__SANITIZE_ADDRESS__)

bool FailingAllocations::isPossible()
{
    return false;
}

#else

bool FailingAllocations::isPossible()
{
    return true;
}

// The names under which the C library keeps its own functions.
extern "C" {
void *libraryMalloc(std::size_t size) __asm__("__libc_malloc");
void *libraryCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void *libraryRealloc(void *memory, std::size_t size) __asm__("__libc_realloc");

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return failsNow() ? nullptr : libraryMalloc(size);
}

__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size)
{
    return failsNow() ? nullptr : libraryCalloc(count, size);
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size)
{
    return failsNow() ? nullptr : libraryRealloc(memory, size);
}
}

#endif
