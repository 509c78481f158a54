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
    if (countdown <= 0 || --countdown > 0)
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
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *memory, std::size_t size);

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return failsNow() ? nullptr : __libc_malloc(size);
}

__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size)
{
    return failsNow() ? nullptr : __libc_calloc(count, size);
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size)
{
    return failsNow() ? nullptr : __libc_realloc(memory, size);
}
}

#endif
