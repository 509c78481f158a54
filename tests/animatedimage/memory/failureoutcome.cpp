#include "tests/animatedimage/memory/failureoutcome.h"

#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/animatedimage/memory/endofprocess.h"
#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/support/request.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <array>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>

namespace FailureOutcome
{

namespace
{

Outcome outcomeOf(const Operation &operation, int number)
{
    Stage stage(frames());
    const std::function<void()> call = operation(stage);
    FailingAllocations::failAt(number);
    try {
        call();
    } catch (...) {
        FailingAllocations::stop();
        return Thrown;
    }
    if (!FailingAllocations::stop())
        return NotReached;
    return isUsable(stage) ? Fine : Unusable;
}

/// Ends this process. The counts of what was run are written by what std::exit() calls.
[[noreturn]] void end(int status)
{
#ifdef MEASURES_COVERAGE
    std::exit(status);
#else
    ::_exit(status);
#endif
}

/// The outcome in a process of its own, and what that process writes about its end.
Outcome outcomeApart(const Operation &operation, int number, QString &place)
{
    std::array<int, 2> ends = {-1, -1};
    if (::pipe(ends.data()) != 0)
        return Ended;
    const pid_t child = ::fork();
    if (child == 0) {
        EndOfProcess::Statuses statuses = {Ended, EndedInLibrary, Waits, WaitsInLibrary};
        EndOfProcess::watch(statuses, ends.at(1));
        end(outcomeOf(operation, number));
    }
    ::close(ends.at(1));
    QFile report;
    if (report.open(ends.at(0), QIODevice::ReadOnly, QFileDevice::AutoCloseHandle))
        place = QString::fromLocal8Bit(report.readAll());
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return Ended;
    return Outcome(WEXITSTATUS(status));
}

} // namespace

Operation plain(const std::function<void(Stage &)> &call)
{
    return [call](Stage &stage) { return [&stage, call] { call(stage); }; };
}

QList<QImage> frames()
{
    return solidFrames({{8, 6}, {6, 8}, {8, 8}});
}

bool isUsable(Stage &stage)
{
    QImage canvas(20, 20, QImage::Format_ARGB32_Premultiplied);
    canvas.fill(Qt::white);
    QPainter painter(&canvas);
    stage->OnQPainterDraw(&painter);
    stage->shape();
    stage->playImage(true);
    stage.probe.tick();
    stage->playImage(false);
    QByteArray state;
    QDataStream stream(&state, QIODevice::WriteOnly);
    QJsonObject json;
    if (!stage->save(stream) || !stage->saveJson(json))
        return false;
    QDataStream saved(state);
    CAnimatedImage(2, true, nullptr).load(saved);
    Request thumbnails;
    thumbnails.get(stage.image, SpecialPropertyId::Thumbnails);
    stage.release();
    // What is on the undo stack finds no object.
    Framework::instance().undoStack()->undo();
    Framework::instance().dropUndoCommands();
    return true;
}

Outcomes of(const Operation &operation)
{
    constexpr int maxNumber = 5000;
    const bool isWhole = qgetenv("ALLOCATION_FAILURES") == "all";
    Outcomes outcomes;
    for (int number = 1; number <= maxNumber; number += isWhole ? 1 : 1 + number / 10) {
        QString place;
        const Outcome outcome = outcomeApart(operation, number, place);
        if (outcome == NotReached)
            break;
        outcomes.numbers[outcome].append(number);
        if (!place.isEmpty() && !outcomes.places.contains(place))
            outcomes.places.append(place);
    }
    return outcomes;
}

void check(const Operation &operation)
{
    Outcomes outcomes = of(operation);
    qInfo("%d fine, %d ended in a library, %d wait in a library%s", outcomes.numbers[Fine].size(),
          outcomes.numbers[EndedInLibrary].size(), outcomes.numbers[WaitsInLibrary].size(),
          qPrintable(outcomes.places.join(QString())));
    QStringList findings;
    for (const auto &[outcome, verb] :
         {std::pair(Thrown, "throws"), std::pair(Unusable, "is unusable"), std::pair(Ended, "ends"),
          std::pair(Waits, "waits")}) {
        for (const int number : outcomes.numbers.value(outcome))
            findings.append(QStringLiteral("%1 after %2").arg(QLatin1String(verb)).arg(number));
    }
    QCOMPARE(findings.join(QLatin1String(", ")), QString());
}

} // namespace FailureOutcome
