// Loaded before the C library of a program, this lets one call of the system fail, or ends the
// program there. Only calls that concern files are counted, not those to pipes and devices.
//
// FAULT_CALL    the name of the function, such as fsync
// FAULT_NUMBER  which of its calls fails, from 1
// FAULT_ERROR   the errno that it fails with; 0 kills the process before the call
// FAULT_REPORT  a file that is made when the call is reached

#include <cerrno>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

int number(const char *variable)
{
    const char *text = std::getenv(variable);
    return text ? int(std::strtol(text, nullptr, 10)) : 0;
}

/// Whether this call of @p function is the one that fails.
bool fails(const char *function)
{
    static int seen = 0;
    const char *wanted = std::getenv("FAULT_CALL");
    if (!wanted || std::strcmp(wanted, function) != 0 || ++seen != number("FAULT_NUMBER"))
        return false;
    ::open(std::getenv("FAULT_REPORT"), O_WRONLY | O_CREAT, 0666);
    const int error = number("FAULT_ERROR");
    if (error == 0)
        ::raise(SIGKILL);
    errno = error;
    return true;
}

/// Whether a file is open for writing as @p descriptor.
bool isWritten(int descriptor)
{
    struct stat status = {};
    const int flags = ::fcntl(descriptor, F_GETFL);
    return flags >= 0 && (flags & O_ACCMODE) != O_RDONLY && ::fstat(descriptor, &status) == 0 &&
           S_ISREG(status.st_mode);
}

template<typename Function>
Function *next(const char *name)
{
    return reinterpret_cast<Function *>(::dlsym(RTLD_NEXT, name));
}

} // namespace

extern "C" {

__attribute__((visibility("default"))) ssize_t write(int file, const void *bytes, size_t count)
{
    static auto *const real = next<ssize_t(int, const void *, size_t)>("write");
    return isWritten(file) && fails("write") ? -1 : real(file, bytes, count);
}

__attribute__((visibility("default"))) int fsync(int file)
{
    static auto *const real = next<int(int)>("fsync");
    return fails("fsync") ? -1 : real(file);
}

__attribute__((visibility("default"))) int close(int file)
{
    static auto *const real = next<int(int)>("close");
    if (!isWritten(file) || !fails("close"))
        return real(file);
    const int error = errno;
    real(file);
    errno = error;
    return -1;
}

__attribute__((visibility("default"))) int rename(const char *from, const char *to)
{
    static auto *const real = next<int(const char *, const char *)>("rename");
    return fails("rename") ? -1 : real(from, to);
}

__attribute__((visibility("default"))) int renameat2(int fromFolder, const char *from, int toFolder,
                                                     const char *to, unsigned flags)
{
    static auto *const real =
        next<int(int, const char *, int, const char *, unsigned)>("renameat2");
    return fails("rename") ? -1 : real(fromFolder, from, toFolder, to, flags);
}

__attribute__((visibility("default"))) int linkat(int fromFolder, const char *from, int toFolder,
                                                  const char *to, int flags)
{
    static auto *const real = next<int(int, const char *, int, const char *, int)>("linkat");
    return fails("linkat") ? -1 : real(fromFolder, from, toFolder, to, flags);
}

__attribute__((visibility("default"))) int mkdir(const char *path, mode_t mode)
{
    static auto *const real = next<int(const char *, mode_t)>("mkdir");
    return fails("mkdir") ? -1 : real(path, mode);
}

} // extern "C"
