#include "flipbook/window/windowmain.h"

#include "flipbook/base/failure.h"
#include "flipbook/cli/console.h"
#include "flipbook/window/language.h"
#include "flipbook/window/mainwindow.h"

#include <QtWidgets/QApplication>

void preferSharpWindows()
{
    QApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
    QApplication::setHighDpiScaleFactorRoundingPolicy(
        Qt::HighDpiScaleFactorRoundingPolicy::PassThrough);
}

int runWindow(const QStringList &files)
{
    QApplication::setApplicationName(QStringLiteral("flipbook"));
    QApplication::setApplicationDisplayName(QStringLiteral("Flipbook"));
    QApplication::setDesktopFileName(QStringLiteral("flipbook"));
    Language::install(QLocale());
    try {
        const Plugin plugin;
        MainWindow window(plugin);
        window.show();
        window.openFiles(files);
        return QApplication::exec();
    } catch (const Failure &failure) {
        Console::fail(failure.subject, failure.reason);
        return 1;
    }
}
