// A tick that shows a frame of 1,000 rectangles, painted into a picture.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/films.h"
#include "benchmarks/support/scene.h"

#include <QtGui/QMovie>
#include <QtGui/QPainter>
#include <QtWidgets/QGraphicsPixmapItem>
#include <QtWidgets/QLabel>

namespace
{

const QSize size(256, 256);

void render(QGraphicsScene &scene, QImage &into)
{
    QPainter painter(&into);
    scene.render(&painter, into.rect(), into.rect());
}

Comparison::Cost ourTick(const QString &film)
{
    const auto scene = std::make_shared<Scene>(film);
    scene->image->playImage(true);
    return Comparison::cpuTime([scene, into = canvas(size)]() mutable {
        scene->tick();
        render(*scene->page, into);
    });
}

/// A label whose movie keeps its frames, all of which were shown before.
Comparison::Cost labelTick(const QString &film, int count)
{
    const auto label = std::make_shared<QLabel>();
    const auto movie = std::make_shared<QMovie>(film);
    movie->setCacheMode(QMovie::CacheAll);
    label->resize(size);
    label->setMovie(movie.get());
    for (int i = 0; i < count; ++i)
        movie->jumpToFrame(i);
    return Comparison::cpuTime([label, movie, count, i = 0, into = canvas(size)]() mutable {
        i = (i + 1) % count;
        movie->jumpToFrame(i);
        QPainter painter(&into);
        label->render(&painter);
    });
}

/// An item of a scene that is given the next of its pixmaps.
Comparison::Cost itemTick(const QString &film, int count)
{
    QMovie movie(film);
    QVector<QPixmap> frames;
    for (int i = 0; i < count; ++i) {
        movie.jumpToFrame(i);
        frames.append(movie.currentPixmap());
    }
    const auto scene = std::make_shared<QGraphicsScene>();
    scene->setItemIndexMethod(QGraphicsScene::NoIndex);
    scene->setSceneRect(QRectF(QPointF(0, 0), size));
    QGraphicsPixmapItem *item = scene->addPixmap(frames.first());
    item->setTransformationMode(Qt::SmoothTransformation);
    return Comparison::cpuTime([scene, item, frames, i = 0, into = canvas(size)]() mutable {
        i = (i + 1) % frames.size();
        item->setPixmap(frames.at(i));
        render(*scene, into);
    });
}

bool addFilm(int count)
{
    const std::string name = "01-tick/" + std::to_string(count) + "-frames";
    return Comparison::add({name + "/label", "QLabel, warm cached QMovie", 1.15, 21},
                           [count] {
                               const QString film = Films::rectangles(count);
                               return Comparison::Sides{ourTick(film), labelTick(film, count)};
                           }) &&
           Comparison::add({name + "/item", "QGraphicsPixmapItem", 1.15, 21}, [count] {
               const QString film = Films::rectangles(count);
               return Comparison::Sides{ourTick(film), itemTick(film, count)};
           });
}

const bool added = addFilm(2) && addFilm(12) && addFilm(60) && addFilm(500);

} // namespace
