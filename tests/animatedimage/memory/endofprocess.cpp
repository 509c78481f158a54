#include "tests/animatedimage/memory/endofprocess.h"

#include "tests/animatedimage/memory/failingallocations.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>
#include <fcntl.h>
#include <initializer_list>
#include <linux/futex.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace
{

EndOfProcess::Statuses statuses = {};
int reportTo = -1;

bool contains(const char *text, std::initializer_list<const char *> parts)
{
    for (const char *part : parts) {
        if (std::strstr(text, part))
            return true;
    }
    return false;
}

/// The name of an exported function, or of its library.
void write(const char *verb, const Dl_info &place)
{
    int isFailure = 0;
    char *name = place.dli_sname
                     ? abi::__cxa_demangle(place.dli_sname, nullptr, nullptr, &isFailure)
                     : nullptr;
    const char *library = std::strrchr(place.dli_fname, '/');
    ::dprintf(reportTo, "\n    %s: %s, %s", verb, library ? library + 1 : place.dli_fname,
              name              ? name
              : place.dli_sname ? place.dli_sname
                                : "a function without a name");
}

/// Of Qt, or the function of the C library that aborts where it cannot prepare a thread.
bool isOfLibrary(const Dl_info &place)
{
    return contains(place.dli_fname, {"libQt5", "/plugins/imageformats/"}) ||
           (place.dli_sname && std::strcmp(place.dli_sname, "pthread_create") == 0);
}

/// The functions on the stack, innermost first, without those of this file.
std::vector<Dl_info> stack()
{
    constexpr int maxDepth = 64;
    std::array<void *, maxDepth> addresses = {};
    const int depth = ::backtrace(addresses.data(), maxDepth);
    Dl_info own = {};
    ::dladdr(reinterpret_cast<void *>(&EndOfProcess::watch), &own);
    std::vector<Dl_info> places;
    for (int i = 0; i < depth; ++i) {
        Dl_info place = {};
        if (::dladdr(addresses.at(std::size_t(i)), &place) == 0)
            continue;
        if (!places.empty() || place.dli_fbase != own.dli_fbase)
            places.push_back(place);
    }
    return places;
}

/// Ends the process because of the innermost function on the stack that is not of a library which
/// only does what it is told. Writes the functions of a library that lead there, or all.
[[noreturn]] void end(const char *verb, int status, int statusInLibrary)
{
    FailingAllocations::stop();
    const std::vector<Dl_info> places = stack();
    const auto culprit = std::find_if_not(places.begin(), places.end(), [](const Dl_info &place) {
        return contains(place.dli_fname, {"libc.so", "libstdc++", "libgcc"}) && !isOfLibrary(place);
    });
    const bool isTheirs = culprit != places.end() && isOfLibrary(*culprit);
    for (auto place = isTheirs ? culprit : places.begin(); place != places.end(); ++place) {
        write(verb, *place);
        if (isTheirs && !isOfLibrary(*place))
            break;
    }
    ::_exit(isTheirs ? statusInLibrary : status);
}

void endAtSignal(int signal)
{
    end(signal == SIGABRT ? "aborted in" : "ended in", statuses.ended, statuses.endedInLibrary);
}

} // namespace

void EndOfProcess::prepare()
{
    void *address = nullptr;
    ::backtrace(&address, 1);
}

void EndOfProcess::watch(const Statuses &wanted, int report)
{
    constexpr unsigned maxSeconds = 30;
    statuses = wanted;
    reportTo = report;
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_CORE, &none);
    // Instead of those of QtTest, which start a debugger.
    struct sigaction action = {};
    action.sa_handler = endAtSignal;
    for (const int fatal : {SIGSEGV, SIGBUS, SIGABRT, SIGFPE, SIGALRM})
        ::sigaction(fatal, &action, nullptr);
    ::alarm(maxSeconds);
    ::close(STDOUT_FILENO);
    ::close(STDERR_FILENO);
}

/// Whether nobody else could end a wait. Takes no memory.
static bool hasOneThread()
{
    std::array<char, 1024> text = {};
    const int file = ::open("/proc/self/stat", O_RDONLY | O_CLOEXEC);
    const bool isRead = ::read(file, text.data(), text.size() - 1) > 0;
    ::close(file);
    // The number of threads is the 18th field after the name, which is in brackets.
    const char *field = isRead ? std::strrchr(text.data(), ')') : nullptr;
    for (int i = 0; field && i < 18; ++i)
        field = std::strchr(field + 1, ' ');
    return field && std::strtol(field, nullptr, 10) == 1;
}

/// The function of the C library by which Qt and the C++ library wait for locks.
extern "C" __attribute__((visibility("default"))) long syscall(long number, ...) noexcept
{
    using Function = long (*)(long, ...);
    static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "syscall"));
    std::array<long, 6> values = {};
    std::va_list list;
    va_start(list, number);
    for (long &value : values)
        value = va_arg(list, long);
    va_end(list);
    const bool isWait = number == SYS_futex && (values.at(1) & FUTEX_CMD_MASK) == FUTEX_WAIT;
    if (isWait && reportTo >= 0 && values.at(3) == 0) {
        const bool isEndless = hasOneThread();
        timespec time = {2, 0};
        if (!isEndless)
            values.at(3) = reinterpret_cast<long>(&time);
        if (isEndless ||
            (next(number, values[0], values[1], values[2], values[3]) < 0 && errno == ETIMEDOUT))
            end("waits in", statuses.waits, statuses.waitsInLibrary);
        return 0;
    }
    return next(number, values[0], values[1], values[2], values[3], values[4], values[5]);
}
