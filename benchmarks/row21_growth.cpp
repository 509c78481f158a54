// How work grows with the film: ten times the frames, compared with ten times the work or, for what
// does not depend on the number of frames, with the same work.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"
#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

#include <QtWidgets/QUndoStack>

#include <benchmark/benchmark.h>

namespace
{

/// Makes the cost of a piece of work on a film of so many frames.
using Work = Comparison::Cost (*)(int frames);

Comparison::Cost import(int frames)
{
    return Comparison::cpuTime([frames] { const Scene scene(Films::tiny(frames)); });
}

std::shared_ptr<Scene> sceneOf(int frames)
{
    return std::make_shared<Scene>(Films::tiny(frames));
}

QByteArray saved(const Scene &scene)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    scene.image->save(stream);
    return bytes;
}

Comparison::Cost save(int frames)
{
    return Comparison::cpuTime(
        [scene = sceneOf(frames)] { benchmark::DoNotOptimize(saved(*scene).size()); });
}

Comparison::Cost load(int frames)
{
    return Comparison::cpuTime([bytes = saved(*sceneOf(frames))] {
        const Scene scene;
        QDataStream stream(bytes);
        scene.image->load(stream);
    });
}

Comparison::Cost insertion(int frames)
{
    const auto scene = sceneOf(frames);
    Request().get(scene->image, SpecialPropertyId::Thumbnails);
    return [scene] {
        const Comparison::CpuClock clock;
        Request(Request::packed(qint32(5))).get(scene->image, SpecialPropertyId::InsertBlankFrame);
        return clock.seconds();
    };
}

Comparison::Cost deletion(int frames)
{
    return [scene = sceneOf(frames)] {
        const Comparison::CpuClock clock;
        Request(Request::packed(qint32(50))).set(scene->image, SpecialPropertyId::DeleteFrame);
        return clock.seconds();
    };
}

/// The replacement of all frames by one, undone and redone.
Comparison::Cost undoing(int frames)
{
    return [frames] {
        const auto scene = sceneOf(frames);
        QUndoStack &stack = *Framework::instance().undoStack();
        const Comparison::CpuClock clock;
        Request(Request::packed(QStringLiteral("no such file")))
            .get(scene->image, SpecialPropertyId::ReplaceAllFrames);
        stack.undo();
        stack.redo();
        stack.undo();
        return clock.seconds();
    };
}

Comparison::Cost tick(int frames)
{
    const auto scene = sceneOf(frames);
    scene->image->playImage(true);
    return Comparison::cpuTime([scene] { scene->tick(); });
}

Comparison::Cost step(int frames)
{
    return Comparison::cpuTime([scene = sceneOf(frames)] {
        Request().set(scene->image, SpecialPropertyId::ShowNextFrame);
    });
}

Comparison::Cost shape(int frames)
{
    return Comparison::cpuTime([scene = sceneOf(frames)] {
        benchmark::DoNotOptimize(scene->image->shape().elementCount());
    });
}

Comparison::Cost resizing(int frames)
{
    return Comparison::cpuTime([scene = sceneOf(frames), side = 10.0]() mutable {
        side = side > 100.0 ? 10.0 : side + 1.0;
        scene->image->setSize(QSizeF(side, side), false, true);
    });
}

std::string plain(int number)
{
    return std::to_string(number);
}

bool addLinear(const char *name, Work work, int frames)
{
    return Comparison::add({std::string("21-growth/") + name + "/" + plain(10 * frames),
                            "10 times the work for " + plain(frames), 1.1, 5},
                           [work, frames] {
                               const Comparison::Cost large = work(10 * frames);
                               const Comparison::Cost small = work(frames);
                               return Comparison::Sides{large, [small] { return 10.0 * small(); }};
                           });
}

bool addConstant(const char *name, Work work)
{
    return Comparison::add(
        {std::string("21-growth/") + name + "/100000", "the same for a film of 1000", 1.1, 15},
        [work] {
            return Comparison::Sides{work(100000), work(1000)};
        });
}

bool addLinear(const char *name, Work work)
{
    return addLinear(name, work, 1000) && addLinear(name, work, 10000);
}

const bool added = addLinear("import", import) && addLinear("save", save) &&
                   addLinear("load", load) && addLinear("insertion", insertion, 1000) &&
                   addLinear("deletion", deletion) && addLinear("replacing-undone", undoing) &&
                   addConstant("tick", tick) && addConstant("step", step) &&
                   addConstant("shape", shape) && addConstant("set-size", resizing);

} // namespace
