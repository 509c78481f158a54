// The tile of a background, rebuilt and painted.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/scene.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"

#include <QtGui/QPainter>

namespace
{

const QSize pixels(320, 240);
const QSize size(200, 150);

std::shared_ptr<Scene> background()
{
    const auto scene = std::make_shared<Scene>();
    const QImage picture = Drawings::blob(pixels);
    scene->image->loadFromImage(&picture);
    scene->image->setSize(size, false, false);
    Request(Request::packed(qint32(CAnimatedImage::BackgroundType), false))
        .set(scene->image, SpecialPropertyId::AnimatedType);
    scene->document.enterAlternateMode();
    return scene;
}

/// What a tile is, step by step: the frame scaled, and painted four times.
QImage plainTile(const QImage &frame)
{
    QImage tile(2 * size.width(), 2 * size.height(), QImage::Format_ARGB32);
    tile.fill(QColor(255, 255, 255, 0));
    const QImage scaled = frame.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&tile);
    for (const int y : {0, size.height()}) {
        for (const int x : {0, size.width()})
            painter.drawImage(x, y, scaled);
    }
    return tile;
}

Comparison::Sides rebuilt()
{
    const auto scene = background();
    return {Comparison::cpuTime([scene] { scene->image->generateBGImage(0); }),
            Comparison::cpuTime([picture = Drawings::blob(pixels)] { plainTile(picture); })};
}

Comparison::Sides painted()
{
    const auto scene = background();
    const QImage tile = plainTile(Drawings::blob(pixels));
    const QRectF part(QPointF(0, 0), size);
    return {Comparison::cpuTime([scene, into = canvas(size)]() mutable {
                QPainter painter(&into);
                scene->image->OnQPainterDraw(&painter);
            }),
            Comparison::cpuTime([tile, part, into = canvas(size)]() mutable {
                QPainter painter(&into);
                painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                                       QPainter::SmoothPixmapTransform);
                painter.drawImage(part, tile, part);
            })};
}

bool addRow()
{
    return Comparison::add({"11-background/rebuilt", "scaling and four drawImage", 0.6, 21},
                           rebuilt) &&
           Comparison::add({"11-background/painted", "one drawImage", 1.05, 21}, painted);
}

const bool added = addRow();

} // namespace
