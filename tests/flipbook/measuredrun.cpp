#include "tests/flipbook/measuredrun.h"

#include <QtCore/QTemporaryFile>

#include <fcntl.h>
#include <malloc.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

constexpr rlim_t maxSeconds = 60;

[[noreturn]] void become(const QByteArray &folder, std::vector<char *> &words, int out, int err)
{
    const rlimit limit{maxSeconds, maxSeconds};
    if (::chdir(folder.constData()) == 0 && ::setrlimit(RLIMIT_CPU, &limit) == 0 &&
        ::dup2(out, STDOUT_FILENO) >= 0 && ::dup2(err, STDERR_FILENO) >= 0) {
        ::unsetenv("DISPLAY");
        ::execv(words.front(), words.data());
    }
    ::_exit(127);
}

QString contentOf(QTemporaryFile &file)
{
    file.seek(0);
    return QString::fromUtf8(file.readAll());
}

double seconds(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) / 1e6;
}

} // namespace

MeasuredRun measuredFlipbook(const QString &folder, const QStringList &arguments)
{
    QTemporaryFile out;
    QTemporaryFile err;
    MeasuredRun run;
    if (!out.open() || !err.open())
        return run;
    QVector<QByteArray> bytes(1, QByteArrayLiteral(FLIPBOOK_PROGRAM));
    for (const QString &argument : arguments)
        bytes.append(argument.toLocal8Bit());
    std::vector<char *> words;
    for (QByteArray &word : bytes)
        words.push_back(word.data());
    words.push_back(nullptr);

    // The peak of a process begins with the memory of the one that forked it.
    ::malloc_trim(0);
    const pid_t child = ::fork();
    if (child == 0)
        become(folder.toLocal8Bit(), words, out.handle(), err.handle());
    int status = 0;
    rusage usage = {};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child)
        return run;
    if (WIFEXITED(status))
        run.status = WEXITSTATUS(status);
    run.out = contentOf(out);
    run.err = contentOf(err);
    constexpr qint64 unit = 1024;
    run.peakBytes = usage.ru_maxrss * unit;
    run.cpuSeconds = seconds(usage.ru_utime) + seconds(usage.ru_stime);
    return run;
}
