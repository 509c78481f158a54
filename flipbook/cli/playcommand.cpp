#include "flipbook/base/failure.h"
#include "flipbook/cli/arguments.h"
#include "flipbook/cli/command.h"
#include "flipbook/cli/console.h"
#include "flipbook/object/framewatcher.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>

namespace
{

constexpr int MostLoops = 1000000;

QString passesText(int passes)
{
    return passes == 1 ? QStringLiteral("once") : QStringLiteral("%1 times").arg(passes);
}

void play(AnimatedObject object, int loops)
{
    QElapsedTimer clock;
    QEventLoop loop;
    FrameWatcher watcher(object, loops);
    const int count = object.frameCount();
    QObject::connect(&watcher, &FrameWatcher::frameShown, &loop, [&](int index) {
        Console::print(QStringLiteral("%1 ms  frame %2 of %3  %4")
                           .arg(clock.elapsed(), 7)
                           .arg(index + 1)
                           .arg(count)
                           .arg(object.frameName(index)));
    });
    QObject::connect(&watcher, &FrameWatcher::stopped, &loop, [&](int passes) {
        Console::print(QStringLiteral("%1 ms  stopped after playing %2")
                           .arg(clock.elapsed(), 7)
                           .arg(passesText(passes)));
        loop.quit();
    });
    clock.start();
    watcher.start();
    loop.exec();
}

void run(const QCommandLineParser &line)
{
    const QString path = Arguments::onlyFile(line);
    const int loops = Arguments::count(line, QStringLiteral("loops"), MostLoops, 0);
    const Plugin plugin = openPlugin(line);
    Reading reading = Arguments::reading(line);
    const OpenedFile opened = openNamed(plugin, path, reading);
    if (opened.isDocument)
        throw Failure{path, QStringLiteral("is a document; a GIF, a frame folder or a picture is "
                                           "wanted here")};
    const AnimatedObject object(*opened.objects().constFirst());
    if (object.intervalMs() <= 0)
        throw Failure{
            path,
            QStringLiteral("cannot be played: its interval is %1 ms").arg(object.intervalMs())};
    play(object, loops);
}

} // namespace

Command playCommand()
{
    return {QStringLiteral("play"),
            QStringLiteral("FILE [--loops N]"),
            QStringLiteral("Play the frames in real time, with a line for each frame shown."),
            {{QStringLiteral("loops"),
              QStringLiteral("Play N times, whatever the file says (default: as the file says; "
                             "Ctrl-C ends what plays forever)."),
              QStringLiteral("N")}},
            run};
}
