#include "flipbook/cli/startup.h"

#include "flipbook/cli/argumenttext.h"
#include "flipbook/cli/console.h"

#include <clocale>
#include <cstring>
#include <fcntl.h>
#include <langinfo.h>
#include <malloc.h>
#include <unistd.h>

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

/// Without this, a file that is opened could become standard output or the place of messages.
void keepStandardFiles()
{
    for (const int handle : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(handle, F_GETFD) >= 0)
            continue;
        // It gets the lowest number that is free. Reading and writing fail, as without it.
        const int flags = handle == STDIN_FILENO ? O_WRONLY : O_RDONLY;
        if (::open("/dev/null", flags) != handle)
            return;
    }
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

/// Each date of an entry in an archive is converted. Without TZ, the C library asks the system each
/// time whether /etc/localtime has changed; with its name in TZ, it reads the file once.
void readTimeZoneOnce()
{
    if (!qEnvironmentVariableIsSet("TZ"))
        qputenv("TZ", ":/etc/localtime");
}

} // namespace

QStringList Startup::prepare(int argc, char *argv[])
{
    keepStandardFiles();
    preferUtf8();
    keepFreedMemory();
    readTimeZoneOnce();
    Console::setVerbose(false);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << ArgumentText::of(argv[i]).text;
    return arguments;
}

QString Startup::damagedArgument(int argc, char *argv[])
{
    for (int i = 1; i < argc; ++i) {
        const ArgumentText argument = ArgumentText::of(argv[i]);
        if (!argument.isValid)
            return argument.text;
    }
    return QString();
}
