#include "tests/animatedimage/walks/modelobject.h"

#include <QtGui/QPainter>

#include <algorithm>
#include <cmath>

namespace
{

/// Half away from zero.
int rounded(double number)
{
    return int(std::lround(number));
}

/// The remainder that begins at 0, for an offset of either sign.
double wrapped(double offset, int length)
{
    double rest = std::fmod(offset, length);
    while (rest < 0.0)
        rest += length;
    return rest;
}

} // namespace

void ModelObject::generateTile(int i)
{
    tile = ModelTile();
    if (!isFrame(i))
        return;
    if (!frames[i].isMeasured)
        updateRegion(i, false);
    tile.width = rounded(size.width());
    tile.height = rounded(size.height());
    tile.picture = frames[i].picture;
    if (tile.isEmpty())
        tile = ModelTile();
    else if (host->makes(Mistake::TileIsOneUnitWide))
        tile.width = 1;
}

/// The part of the object that is on the page, in the object's own coordinates. Without a page:
/// all of it.
void ModelObject::cropToPage()
{
    if (page == ModelHost::NoPage) {
        bgRect = QRectF(0.0, 0.0, size.width(), size.height());
        return;
    }
    const QRectF onPage = ModelHost::pageRect(page);
    const double left = std::max(pos.x(), onPage.x());
    const double top = std::max(pos.y(), onPage.y());
    double width = std::min(pos.x() + size.width(), onPage.x() + onPage.width()) - left;
    double height = std::min(pos.y() + size.height(), onPage.y() + onPage.height()) - top;
    if (width <= 0.0 || height <= 0.0) {
        width = 0.0;
        height = 0.0;
    }
    const double x = pos.x() < 0.0 ? -pos.x() : 0.0;
    double y = pos.y() < 0.0 ? -pos.y() : 0.0;
    if (host->makes(Mistake::CropForgetsTheTop))
        y = 0.0;
    bgRect = QRectF(x, y, width, height);
}

void ModelObject::regenerateTile()
{
    cropToPage();
    generateTile(index);
}

QImage ModelObject::tilePixels() const
{
    if (tile.isEmpty())
        return {};
    const QImage &picture = PicturePool::instance().image(tile.picture);
    const QImage one =
        picture.scaled(tile.width, tile.height, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QImage all(2 * tile.width, 2 * tile.height, QImage::Format_ARGB32);
    all.fill(qRgba(255, 255, 255, 0));
    QPainter painter(&all);
    for (int i = 0; i < 4; ++i)
        painter.drawImage(QPoint(i % 2 * tile.width, i / 2 * tile.height), one);
    return all;
}

void ModelObject::paint(QImage &canvas, const QPointF &step)
{
    QPainter painter(&canvas);
    painter.translate(step);
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    if (frames.isEmpty())
        return;
    if (document == DocumentOf::Nobody)
        refreshDocument();
    if (isPresentedBackground()) {
        if (tile.isEmpty())
            return;
        const QRectF source(wrapped(bgRect.x() - bgPos.x(), tile.width),
                            wrapped(bgRect.y() - bgPos.y(), tile.height), bgRect.width(),
                            bgRect.height());
        painter.drawImage(bgRect, tilePixels(), source);
        return;
    }
    if (!isFrame(index))
        return;
    const QImage &picture = PicturePool::instance().image(frames[index].picture);
    painter.drawImage(QRectF(0.0, 0.0, size.width(), size.height()), picture,
                      QRectF(0.0, 0.0, picture.width(), picture.height()));
}
