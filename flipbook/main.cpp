#include "flipbook/cli/commandline.h"
#include "flipbook/cli/console.h"
#include "flipbook/window/display.h"
#include "flipbook/window/windowmain.h"

#include <QtCore/QFileInfo>
#include <QtWidgets/QApplication>

#include <algorithm>
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

/// Whether an argument is an option; a file may begin with a dash, too.
bool isOption(const QString &argument)
{
    return argument.startsWith(QLatin1Char('-')) && !QFileInfo::exists(argument);
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

} // namespace

int main(int argc, char *argv[])
{
    preferUtf8();
    keepFreedMemory();
    Console::setVerbose(false);
    QStringList arguments;
    for (int i = 1; i < argc; ++i)
        arguments << QString::fromLocal8Bit(argv[i]);
    const bool isWindow = wantsWindow(arguments) && hasDisplay();
    // The command line needs no display, and works the same where there is one.
    if (!isWindow)
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // The application sees its name alone: Qt would take its own options out of the arguments.
    char name[] = "flipbook";
    char *names[] = {name, nullptr};
    int nameCount = 1;
    if (!isWindow && mayRunWithoutApplication(arguments)) {
        const QCoreApplication application(nameCount, names);
        if (const auto status = runWithoutApplication(arguments))
            return *status;
    }
    if (isWindow)
        preferSharpWindows();
    const QApplication application(nameCount, names);
    return isWindow ? runWindow(arguments) : runCommandLine(arguments);
}
