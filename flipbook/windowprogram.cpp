#include "flipbook/cli/startup.h"
#include "flipbook/window/windowmain.h"

#include <QtWidgets/QApplication>

/// The program "flipbook-window": the window with the files that the arguments name. Flipbook
/// becomes it when there is a display.
int main(int argc, char *argv[])
{
    const QStringList files = Startup::prepare(argc, argv);
    preferSharpWindows();
    // The application sees a name alone: Qt would take its own options out of the arguments.
    char name[] = "flipbook";
    char *names[] = {name, nullptr};
    int nameCount = 1;
    const QApplication application(nameCount, names);
    return runWindow(files);
}
