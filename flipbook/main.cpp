#include "flipbook/cli/command.h"
#include "flipbook/cli/commandline.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/display.h"
#include "flipbook/cli/startup.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <unistd.h>

namespace
{

/// Whether an argument is an option; a file may begin with a dash, too.
bool isOption(const QString &argument)
{
    return argument.startsWith(QLatin1Char('-')) && !QFileInfo::exists(argument);
}

/// Whether the arguments ask for the window: there are none, or files alone.
bool wantsWindow(const QStringList &arguments)
{
    return arguments.isEmpty() ||
           (namesFiles(arguments) && std::none_of(arguments.begin(), arguments.end(), isOption));
}

/// Whether a window can be shown. A display that cannot be reached is told.
bool hasDisplay()
{
    const Display::State state = Display::state();
    if (state == Display::State::Unreachable)
        Console::warn(
            QString(),
            QStringLiteral("cannot connect to the display \"%1\"; continuing without a window")
                .arg(Display::name()));
    return state == Display::State::Reachable;
}

/// Becomes the program of the window, in the folder of this one. Most commands take less time than
/// loading the libraries of a window. Returns only if that program cannot be started.
int becomeWindow(char *argv[])
{
    const QString folder = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalPath();
    const QString program = folder + QStringLiteral("/flipbook-window");
    execv(QFile::encodeName(program).constData(), argv);
    Console::fail(program, QStringLiteral("cannot be started: ") + qt_error_string(errno));
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char *argv[])
{
    const QStringList arguments = Startup::prepare(argc, argv);
    if (wantsWindow(arguments) && hasDisplay())
        return becomeWindow(argv);
    if (const QString damaged = Startup::damagedArgument(argc, argv); !damaged.isEmpty()) {
        Console::fail(damaged, QStringLiteral("is not valid UTF-8"));
        return Failed;
    }
    // The command line needs no display, and works the same where there is one.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    // The application sees its name alone: Qt would take its own options out of the arguments.
    char name[] = "flipbook";
    char *names[] = {name, nullptr};
    int nameCount = 1;
    if (mayRunWithoutApplication(arguments)) {
        const QCoreApplication application(nameCount, names);
        if (const auto status = runWithoutApplication(arguments))
            return *status;
    }
    const QApplication application(nameCount, names);
    return runCommandLine(arguments);
}
