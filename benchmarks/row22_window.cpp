// How soon the window answers: the time that passes from a key press or a drag step until the page
// was painted anew, and from the selection of an animation until the first thumbnails are seen.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/windowscene.h"

#include <memory>

namespace
{

/// Of one picture of a screen that shows 60 in a second.
constexpr double pictureSeconds = 0.016;
constexpr double stripSeconds = 0.1;
constexpr int steps = 61;

Comparison::Sides sides(const Comparison::Cost &ours, double limit)
{
    return {ours, [limit] { return limit; }};
}

bool addKey(const char *name, Qt::Key key)
{
    return Comparison::add({std::string("22-window/") + name, "16 ms", 1.0, steps}, [key] {
        const auto scene = std::make_shared<WindowScene>();
        return sides(
            [scene, key] {
                return WindowScene::secondsToPaint(scene->page(), [&] { scene->press(key); });
            },
            pictureSeconds);
    });
}

/// Drags from @p from, one unit to the right and down at each step.
bool addDrag(const char *name, QPointF (WindowScene::*from)() const)
{
    return Comparison::add({std::string("22-window/") + name, "16 ms", 1.0, steps}, [from] {
        const auto scene = std::make_shared<WindowScene>();
        QPointF place = (scene.get()->*from)();
        scene->mouse(QEvent::MouseButtonPress, place);
        // Far enough not to count as a click.
        place += QPointF(30, 30);
        scene->mouse(QEvent::MouseMove, place);
        if (!scene->isDragging())
            qFatal("nothing is dragged");
        return sides(
            [scene, place]() mutable {
                place += QPointF(1, 1);
                return WindowScene::secondsToPaint(scene->page(),
                                                   [&] { scene->mouse(QEvent::MouseMove, place); });
            },
            pictureSeconds);
    });
}

bool addStrip()
{
    return Comparison::add({"22-window/strip", "100 ms", 1.0, steps}, [] {
        const auto scene = std::make_shared<WindowScene>();
        return sides(
            [scene] {
                scene->select(false);
                return WindowScene::secondsToPaint(scene->strip(), [&] { scene->select(true); });
            },
            stripSeconds);
    });
}

const bool added = addKey("key-nudge", Qt::Key_Right) && addKey("key-step", Qt::Key_Period) &&
                   addDrag("drag-move", &WindowScene::middleOfFilm) &&
                   addDrag("drag-resize", &WindowScene::cornerOfFilm) && addStrip();

} // namespace
