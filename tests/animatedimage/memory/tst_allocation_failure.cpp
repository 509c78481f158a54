#include "animatedimage/protocol/entrypoints.h"
#include "host/specialpropertyids.h"
#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <csignal>
#include <cstring>
#include <dlfcn.h>
#include <functional>
#include <sys/resource.h>
#include <sys/wait.h>
#include <ucontext.h>
#include <unistd.h>

/// One allocation fails while the host calls an operation, each in turn and each in a process of
/// its own. No exception reaches the host, and the object can still be used.
///
/// Operations that encode or decode pictures are not among them: an exception leaves Qt's own lock
/// on its picture formats closed, and the next picture waits for it without end.
class TestAllocationFailure : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingIsThrown_data();
    void nothingIsThrown();
};

namespace
{

/// Prepares what the call needs, which must not fail, and returns the call.
using Operation = std::function<std::function<void()>(Stage &)>;

enum class Outcome {
    Fine,
    NotReached,
    Thrown,
    Unusable,
    Ended,
    EndedInQt, ///< a function of Qt has not checked whether it got memory
};

QList<QImage> frames()
{
    return solidFrames({{8, 6}, {6, 8}, {8, 8}});
}

/// What needs no preparation.
Operation plain(const std::function<void(Stage &)> &call)
{
    return [call](Stage &stage) { return [&stage, call] { call(stage); }; };
}

Operation paint()
{
    return [](Stage &stage) {
        auto canvas = std::make_shared<QImage>(20, 20, QImage::Format_ARGB32_Premultiplied);
        auto painter = std::make_shared<QPainter>(canvas.get());
        return [&stage, canvas, painter] { stage->OnQPainterDraw(painter.get()); };
    };
}

bool isUsable(Stage &stage)
{
    QImage canvas(20, 20, QImage::Format_ARGB32_Premultiplied);
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
    Request thumbnails;
    thumbnails.get(stage.image, SpecialPropertyId::Thumbnails);
    stage.release();
    return true;
}

Outcome outcomeOf(const Operation &operation, int number)
{
    Stage stage(frames());
    const std::function<void()> call = operation(stage);
    FailingAllocations::failAt(number);
    try {
        call();
    } catch (...) {
        FailingAllocations::stop();
        return Outcome::Thrown;
    }
    if (!FailingAllocations::stop())
        return Outcome::NotReached;
    return isUsable(stage) ? Outcome::Fine : Outcome::Unusable;
}

/// Ends a process that has used memory which was not allocated.
void endProcess(int /*signal*/, siginfo_t * /*info*/, void *context)
{
    const auto *state = static_cast<const ucontext_t *>(context);
    Dl_info place = {};
    void *address = nullptr;
    std::memcpy(static_cast<void *>(&address), &state->uc_mcontext.gregs[REG_RIP], sizeof address);
    const bool isQt = ::dladdr(address, &place) != 0 && std::strstr(place.dli_fname, "libQt5");
    ::_exit(int(isQt ? Outcome::EndedInQt : Outcome::Ended));
}

/// The outcome in a process of its own.
Outcome outcomeApart(const Operation &operation, int number)
{
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr unsigned maxSeconds = 5;
        const rlimit none{0, 0};
        ::setrlimit(RLIMIT_CORE, &none);
        // Instead of those of QtTest, which start a debugger.
        struct sigaction action = {};
        action.sa_sigaction = endProcess;
        action.sa_flags = SA_SIGINFO;
        for (const int fatal : {SIGSEGV, SIGBUS})
            ::sigaction(fatal, &action, nullptr);
        ::signal(SIGABRT, SIG_DFL);
        ::alarm(maxSeconds);
        ::close(STDOUT_FILENO);
        ::close(STDERR_FILENO);
        ::_exit(int(outcomeOf(operation, number)));
    }
    int status = 0;
    if (child < 0 || ::waitpid(child, &status, 0) != child || !WIFEXITED(status))
        return Outcome::Ended;
    return Outcome(WEXITSTATUS(status));
}

} // namespace

Q_DECLARE_METATYPE(Operation)

void TestAllocationFailure::initTestCase()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
    // Qt makes some things once, and does not recover if it fails.
    Stage stage(frames());
    QVERIFY(isUsable(stage));
}

void TestAllocationFailure::nothingIsThrown_data()
{
    QTest::addColumn<Operation>("operation");
    const auto row = [](const char *name, const Operation &operation) {
        QTest::newRow(name) << operation;
    };
    const QString name = QStringLiteral("object_name");
    const QImage image = frames().constFirst();

    row("createObject", plain([](Stage &) {
            if (CBaseObject *object = createObject_animatedImage(0, 1, true))
                object->Release();
        }));
    row("playImage", plain([](Stage &stage) { stage->playImage(true); }));
    row("a tick", [](Stage &stage) {
        stage->playImage(true);
        return [&stage] { stage.probe.tick(); };
    });
    row("setCurrentIndex", plain([](Stage &stage) { stage->setCurrentIndex(1); }));
    row("setShiftInterval", plain([](Stage &stage) { stage->setShiftInterval(50); }));
    row("setSize", plain([](Stage &stage) { stage->setSize({50, 40}, true, true); }));
    row("setCenterPos", plain([](Stage &stage) {
            stage->setCenterPos({50, 40}, {20, 30}, 45, true);
        }));
    row("setPos", plain([](Stage &stage) { stage->setPos({5, 4}, true); }));
    row("setMirror", plain([](Stage &stage) { stage->setMirror(true, true); }));
    row("setFlip", plain([](Stage &stage) { stage->setFlip(true, true); }));
    row("OnQPainterDraw", paint());
    row("shape", plain([](Stage &stage) { stage->shape(); }));
    row("generateBGImage", plain([](Stage &stage) { stage->generateBGImage(1); }));
    row("regenBGImage", plain([](Stage &stage) { stage->regenBGImage(); }));
    row("updateRegion", plain([](Stage &stage) { stage->updateRegion(true); }));
    row("generatePortraitName", [name](Stage &stage) {
        return [&stage, name] { stage->generatePortraitName(name, true); };
    });
    row("GetAllThumbnail", plain([](Stage &stage) {
            ThumbnailList list;
            animatedImage_GetAllThumbnail(stage.image, false, list);
        }));
    row("loadFromImage", plain([image](Stage &stage) { stage->loadFromImage(&image); }));
    row("GetSettingJson", plain([](Stage &stage) {
            QString json;
            stage->GetSettingJson(json);
        }));
    row("setOtherParams", [name](Stage &stage) {
        const QVariant value(name);
        return [&stage, name, value] { stage->setOtherParams(name, value); };
    });
}

void TestAllocationFailure::nothingIsThrown()
{
    QFETCH(Operation, operation);
    constexpr int maxNumber = 5000;
    QMap<Outcome, QVector<int>> numbers;
    // Every one at first, and then fewer: the later ones are in loops.
    for (int number = 1; number < maxNumber; number += 1 + number / 20) {
        const Outcome outcome = outcomeApart(operation, number);
        if (outcome == Outcome::NotReached)
            break;
        numbers[outcome].append(number);
    }
    qInfo("%d fine, %d ended in Qt", numbers[Outcome::Fine].size(),
          numbers[Outcome::EndedInQt].size());
    QCOMPARE(numbers[Outcome::Thrown], QVector<int>());
    QCOMPARE(numbers[Outcome::Unusable], QVector<int>());
    QCOMPARE(numbers[Outcome::Ended], QVector<int>());
}

QTEST_MAIN(TestAllocationFailure)
#include "tst_allocation_failure.moc"
