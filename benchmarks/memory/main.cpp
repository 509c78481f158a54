// Tells how many bytes an imported film takes on the heap: the program of row 4.
//
//   benchmark_memory FILM.gif rest|hit

#include "benchmarks/support/scene.h"

#include <QtWidgets/QApplication>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <malloc.h>

// The allocator of the C library, under names that are not reserved.
void *libraryMalloc(size_t size) __asm__("__libc_malloc");
void *libraryCalloc(size_t count, size_t size) __asm__("__libc_calloc");
void *libraryRealloc(void *memory, size_t size) __asm__("__libc_realloc");
void *libraryMemalign(size_t alignment, size_t size) __asm__("__libc_memalign");
void libraryFree(void *memory) __asm__("__libc_free");

namespace
{

std::atomic<qint64> taken{0};
std::atomic<qint64> most{0};

void *counted(void *memory)
{
    const qint64 now = taken += qint64(malloc_usable_size(memory));
    if (now > most)
        most = now;
    return memory;
}

} // namespace

// Every allocation of this process goes through these.
extern "C" {

void *malloc(size_t size)
{
    return counted(libraryMalloc(size));
}

void *calloc(size_t count, size_t size)
{
    return counted(libraryCalloc(count, size));
}

void *realloc(void *memory, size_t size)
{
    taken -= qint64(malloc_usable_size(memory));
    return counted(libraryRealloc(memory, size));
}

void *memalign(size_t alignment, size_t size)
{
    return counted(libraryMemalign(alignment, size));
}

void *aligned_alloc(size_t alignment, size_t size)
{
    return counted(libraryMemalign(alignment, size));
}

int posix_memalign(void **memory, size_t alignment, size_t size)
{
    *memory = counted(libraryMemalign(alignment, size));
    return *memory ? 0 : ENOMEM;
}

void free(void *memory)
{
    taken -= qint64(malloc_usable_size(memory));
    libraryFree(memory);
}
}

int main(int argc, char **argv)
{
    if (argc != 3)
        return 2;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_LOGGING_RULES", "default.debug=false");
    const QApplication application(argc, argv);
    const QString film = QString::fromLocal8Bit(argv[1]);
    {
        // What Qt allocates once does not count.
        const Scene first(film);
    }
    const qint64 before = taken;
    Scene scene(film);
    if (std::strcmp(argv[2], "hit") == 0) {
        scene.document.enterAlternateMode();
        most = taken.load();
        scene.image->playImage(true);
        const QSize size = scene.image->getImageSize();
        for (int i = 0; i < 60; ++i) {
            scene.tick();
            (void)scene.image->shape().contains(QPointF(size.width() / 2.0, size.height() / 2.0));
        }
        std::printf("%lld\n", qlonglong(most - before));
        return 0;
    }
    std::printf("%lld\n", qlonglong(taken - before));
    return 0;
}
