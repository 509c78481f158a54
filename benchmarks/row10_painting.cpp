// Painting a frame with alpha that came from a PNG file, after the first time.

#include "benchmarks/support/comparison.h"
#include "benchmarks/support/drawings.h"
#include "benchmarks/support/scene.h"

#include <QtGui/QPainter>

namespace
{

const QSize pixels(320, 240);

void setHints(QPainter &painter)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
}

bool addCase(const char *name, double scale)
{
    return Comparison::add(
        {std::string("10-painting/") + name, "drawImage, premultiplied", 1.1, 21}, [scale] {
            const auto scene = std::make_shared<Scene>();
            const QImage picture = Drawings::blob(pixels);
            scene->image->loadFromImage(&picture);
            const QImage premultiplied =
                picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
            const QRectF rect(QPointF(0, 0), QSizeF(pixels));
            const QImage paper = canvas(QSizeF(pixels * scale).toSize());
            return Comparison::Sides{
                Comparison::cpuTime([scene, scale, into = paper]() mutable {
                    QPainter painter(&into);
                    painter.scale(scale, scale);
                    scene->image->OnQPainterDraw(&painter);
                }),
                Comparison::cpuTime([premultiplied, rect, scale, into = paper]() mutable {
                    QPainter painter(&into);
                    painter.scale(scale, scale);
                    setHints(painter);
                    painter.drawImage(rect, premultiplied, rect);
                })};
        });
}

const bool added = addCase("1x", 1.0) && addCase("2x", 2.0) && addCase("0.5x", 0.5);

} // namespace
