#include "tests/animatedimage/hostilecalls/countedmemory.h"

#include <cstdlib>
#include <malloc.h>

namespace
{

// The tests have one thread that allocates.
qint64 taken = 0;
qint64 mostTaken = 0;

[[maybe_unused]] void *counted(void *memory)
{
    taken += qint64(::malloc_usable_size(memory));
    mostTaken = qMax(mostTaken, taken);
    return memory;
}

[[maybe_unused]] void returned(void *memory)
{
    taken -= qint64(::malloc_usable_size(memory));
}

} // namespace

void CountedMemory::start()
{
    taken = 0;
    mostTaken = 0;
}

qint64 CountedMemory::most()
{
    return mostTaken;
}

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)

bool CountedMemory::isPossible()
{
    return false;
}

#else

bool CountedMemory::isPossible()
{
    return true;
}

// The names under which the C library keeps its own functions.
extern "C" {
void *libraryMalloc(std::size_t size) __asm__("__libc_malloc");
void *libraryCalloc(std::size_t count, std::size_t size) __asm__("__libc_calloc");
void *libraryRealloc(void *memory, std::size_t size) __asm__("__libc_realloc");
void libraryFree(void *memory) __asm__("__libc_free");

__attribute__((visibility("default"))) void *malloc(std::size_t size)
{
    return counted(libraryMalloc(size));
}

__attribute__((visibility("default"))) void *calloc(std::size_t count, std::size_t size)
{
    return counted(libraryCalloc(count, size));
}

__attribute__((visibility("default"))) void *realloc(void *memory, std::size_t size)
{
    returned(memory);
    void *moved = libraryRealloc(memory, size);
    return counted(moved || size == 0 ? moved : memory);
}

__attribute__((visibility("default"))) void free(void *memory)
{
    returned(memory);
    libraryFree(memory);
}
}

#endif
