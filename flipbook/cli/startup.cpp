#include "flipbook/cli/startup.h"

#include "flipbook/cli/console.h"

#include <clocale>
#include <cstring>
#include <langinfo.h>
#include <malloc.h>

namespace
{

// In the plain "C" locale Qt could name no file with letters outside ASCII.
void preferUtf8()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(nl_langinfo(CODESET), "UTF-8") == 0)
        return;
    qputenv("LC_ALL", "C.UTF-8");
}

/// Pictures are taken and given back one after the other. Without this, the system would clear the
/// memory of each before it is used again.
void keepFreedMemory()
{
    constexpr int largestKept = 8 << 20;
    constexpr int mostKept = 32 << 20;
    mallopt(M_MMAP_THRESHOLD, largestKept);
    mallopt(M_TRIM_THRESHOLD, mostKept);
}

} // namespace

QStringList Startup::prepare(int argc, char *argv[])
{
    preferUtf8();
    keepFreedMemory();
    Console::setVerbose(false);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    return arguments;
}
