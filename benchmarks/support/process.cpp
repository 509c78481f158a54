#include "benchmarks/support/process.h"

#include <QtCore/QProcess>

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace
{

double seconds(const timeval &time)
{
    return double(time.tv_sec) + double(time.tv_usec) * 1e-6;
}

/// In the child: becomes the program, with nothing to read and nowhere to print.
[[noreturn]] void run(const QStringList &command)
{
    std::vector<QByteArray> texts;
    texts.reserve(size_t(command.size()));
    std::vector<char *> arguments;
    arguments.reserve(size_t(command.size()) + 1);
    for (const QString &part : command)
        texts.push_back(part.toLocal8Bit());
    for (QByteArray &text : texts)
        arguments.push_back(text.data());
    arguments.push_back(nullptr);
    const int nothing = ::open("/dev/null", O_RDWR);
    for (const int stream : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO})
        ::dup2(nothing, stream);
    ::execvp(arguments.front(), arguments.data());
    ::_exit(127);
}

} // namespace

namespace Process
{

double cpuSeconds(const QStringList &command)
{
    const pid_t child = ::fork();
    if (child == 0)
        run(command);
    int status = 0;
    rusage usage{};
    if (child < 0 || ::wait4(child, &status, 0, &usage) != child || !WIFEXITED(status) ||
        WEXITSTATUS(status) != 0) {
        qFatal("%s failed", qPrintable(command.join(QLatin1Char(' '))));
    }
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

Comparison::Cost cpuTime(const QStringList &command)
{
    return [command] { return cpuSeconds(command); };
}

QStringList flipbook(const QStringList &arguments)
{
    return QStringList(QStringLiteral(FLIPBOOK_PROGRAM)) + arguments;
}

QByteArray output(const QStringList &command)
{
    QProcess process;
    process.start(command.first(), command.mid(1));
    if (!process.waitForFinished(-1) || process.exitCode() != 0)
        qFatal("%s failed", qPrintable(command.join(QLatin1Char(' '))));
    return process.readAllStandardOutput();
}

} // namespace Process
