// Many objects that play on one page at 25 frames a second, compared with as many items of a scene
// that one timer gives their next pixmaps. Time passes as it does for a user: the cost is that of
// one frame of all objects, whatever number of frames the machine managed to show.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>
#include <QtGui/QMovie>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QGraphicsView>

namespace
{

constexpr int intervalMs = 40;
constexpr int columns = 40;
constexpr int spacing = 18;
constexpr int measuredMs = 800;
const QSize pixels(16, 16);

QString film()
{
    return Films::gif(QStringLiteral("small"), pixels, 8,
                      [](int i) { return Drawings::cartoon(pixels, 7 * i); });
}

QPointF placeOf(int i)
{
    const int row = i / columns;
    return {double(i % columns * spacing), double(row * spacing)};
}

std::shared_ptr<QGraphicsView> shownView(QGraphicsScene *scene)
{
    auto view = std::make_shared<QGraphicsView>(scene);
    view->resize(columns * spacing + 20, 480);
    view->show();
    return view;
}

/// What one frame costs: CPU time while the event loop runs, divided by the frames counted in it.
double costOfFrame(const int &frames)
{
    const int before = frames;
    // A loop of its own sleeps between events; processEvents() with a time limit would not.
    QEventLoop loop;
    QTimer::singleShot(measuredMs, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    const Comparison::CpuClock clock;
    loop.exec();
    return clock.seconds() / std::max(1, frames - before);
}

class PlayingObjects
{
public:
    explicit PlayingObjects(int count)
        : m_page(m_document.addPage(QRectF(0, 0, columns * spacing, 460)))
    {
        for (int i = 0; i < count; ++i) {
            auto *image = new CAnimatedImage(i, true, nullptr);
            m_page->addObject(image);
            image->loadFromFile(film());
            image->setPos(placeOf(i), false);
            m_objects.append(image);
        }
        m_view = shownView(m_page);
    }

    /// The cost of a frame of all objects. They play only meanwhile.
    double cost()
    {
        for (CAnimatedImage *image : qAsConst(m_objects)) {
            image->setShiftInterval(intervalMs);
            image->playImage(true);
        }
        // The first object counts the frames for all.
        int frames = 0;
        QTimer counter;
        QObject::connect(&counter, &QTimer::timeout, &counter, [&frames] { ++frames; });
        counter.start(intervalMs);
        const double cost = costOfFrame(frames);
        for (CAnimatedImage *image : qAsConst(m_objects))
            image->playImage(false);
        return cost;
    }

private:
    Document m_document;
    Page *m_page;
    QList<CAnimatedImage *> m_objects;
    std::shared_ptr<QGraphicsView> m_view;
};

class ChangingItems
{
public:
    explicit ChangingItems(int count)
    {
        QMovie movie(film());
        for (int i = 0; i < 8; ++i) {
            movie.jumpToFrame(i);
            m_frames.append(movie.currentPixmap());
        }
        m_scene.setItemIndexMethod(QGraphicsScene::NoIndex);
        m_scene.setSceneRect(0, 0, columns * spacing, 460);
        for (int i = 0; i < count; ++i) {
            m_items.append(m_scene.addPixmap(m_frames.first()));
            m_items.last()->setPos(placeOf(i));
        }
        m_view = shownView(&m_scene);
    }

    double cost()
    {
        int frames = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, &timer, [this, &frames] {
            ++frames;
            for (QGraphicsPixmapItem *item : qAsConst(m_items))
                item->setPixmap(m_frames.at(frames % m_frames.size()));
        });
        timer.start(intervalMs);
        return costOfFrame(frames);
    }

private:
    QVector<QPixmap> m_frames;
    QGraphicsScene m_scene;
    QList<QGraphicsPixmapItem *> m_items;
    std::shared_ptr<QGraphicsView> m_view;
};

Comparison::Sides besideItems()
{
    const auto objects = std::make_shared<PlayingObjects>(1000);
    const auto items = std::make_shared<ChangingItems>(1000);
    return {[objects] { return objects->cost(); }, [items] { return items->cost(); }};
}

Comparison::Sides besideFewer()
{
    const auto many = std::make_shared<PlayingObjects>(1000);
    const auto few = std::make_shared<PlayingObjects>(10);
    return {[many] { return many->cost() / 1000.0; }, [few] { return few->cost() / 10.0; }};
}

bool addRow()
{
    return Comparison::add(
               {"02-many-objects/1000", "1,000 QGraphicsPixmapItem, one timer", 1.25, 9},
               besideItems) &&
           Comparison::add({"02-many-objects/growth", "an object among 10", 1.1, 9}, besideFewer);
}

const bool added = addRow();

} // namespace
