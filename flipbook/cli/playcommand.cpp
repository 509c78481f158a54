#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/cli/sheetoptions.h"
#include "flipbook/object/framewatcher.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>

namespace
{

constexpr int MaxLoops = 1000000;

QString passesText(int passes)
{
    return passes == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(passes);
}

void printAt(qint64 ms, const QString &what)
{
    Console::print(QStringLiteral("%1 ms  %2").arg(ms, 7).arg(what));
}

QString frameText(AnimatedObject object, int index)
{
    return QStringLiteral("frame %1 of %2  %3")
        .arg(index + 1)
        .arg(object.frameCount())
        .arg(object.frameName(index));
}

/// A single frame would be shown forever, again and again.
void showStill(AnimatedObject object)
{
    printAt(0, frameText(object, 0));
    printAt(0, QStringLiteral("stopped: there is only one frame"));
}

void play(AnimatedObject object, int loops)
{
    QElapsedTimer clock;
    QEventLoop loop;
    FrameWatcher watcher(object, loops);
    QObject::connect(&watcher, &FrameWatcher::frameShown, &loop,
                     [&](int index) { printAt(clock.elapsed(), frameText(object, index)); });
    QObject::connect(&watcher, &FrameWatcher::stopped, &loop, [&](int passes) {
        printAt(clock.elapsed(), QStringLiteral("stopped after playing ") + passesText(passes));
        loop.quit();
    });
    clock.start();
    watcher.start();
    loop.exec();
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const int loops = Arguments::count(line, QStringLiteral("loops"), MaxLoops, 0);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    if (opened.isDocument)
        throw Failure{path, QStringLiteral("is a document, not a GIF, a frame folder or a "
                                           "picture")};
    const AnimatedObject object(*opened.objects().constFirst());
    if (object.frameCount() == 1) {
        showStill(object);
        return;
    }
    if (object.intervalMs() <= 0)
        throw Failure{
            path,
            QStringLiteral("cannot be played: its interval is %1 ms").arg(object.intervalMs())};
    play(object, loops);
}

} // namespace

Command playCommand()
{
    return withSheetOptions(
        {QStringLiteral("play"),
         QStringLiteral("FILE [--loops N]"),
         QStringLiteral("Play the frames in real time, with a line for each frame shown."),
         {{QStringLiteral("loops"),
           QStringLiteral("Play N times (default: as often as the file says; Ctrl-C ends an "
                          "animation that plays forever)."),
           QStringLiteral("N")}},
         run});
}
