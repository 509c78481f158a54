#include "flipbook/export/checkerboard.h"

#include <QtGui/QPainter>

namespace
{

constexpr int SquareSide = 8;
constexpr QRgb LightSquare = 0xffffffff;
constexpr QRgb DarkSquare = 0xffdcdcdc;

QImage tile()
{
    QImage image(2 * SquareSide, 2 * SquareSide, QImage::Format_RGB32);
    image.fill(LightSquare);
    QPainter painter(&image);
    const QColor dark = QColor::fromRgb(DarkSquare);
    painter.fillRect(SquareSide, 0, SquareSide, SquareSide, dark);
    painter.fillRect(0, SquareSide, SquareSide, SquareSide, dark);
    return image;
}

} // namespace

void paintCheckerboard(QPainter &painter, const QRectF &area)
{
    painter.save();
    painter.setBrushOrigin(area.topLeft());
    painter.fillRect(area, QBrush(tile()));
    painter.restore();
}
