#include "tests/animatedimage/walks/modelobject.h"

void ModelObject::measure(ModelFrame &frame) const
{
    PicturePool &pool = PicturePool::instance();
    frame.isMeasured = true;
    frame.regionSize = pool.regionSize(frame.picture);
    frame.rects = pool.rects(frame.picture);
    for (QRect &rect : frame.rects) {
        const int left = frame.regionSize.width() - 1 - rect.right();
        const int top = frame.regionSize.height() - 1 - rect.bottom();
        if (isMirrored)
            rect.moveLeft(left);
        if (isFlipped) {
            if (host->makes(Mistake::FlipMovesSideways))
                rect.moveLeft(rect.left() + 1);
            rect.moveTop(top);
        }
    }
}

void ModelObject::updateRegion(int i, bool recompute)
{
    if (!isFrame(i))
        return;
    ModelFrame &frame = frames[i];
    if (recompute || !frame.isMeasured)
        measure(frame);
    frame.hasPath = true;
    frame.pathSize = size;
}

void ModelObject::updateRegions(bool recompute)
{
    for (int i = 0; i < frames.size(); ++i)
        updateRegion(i, recompute);
}

namespace
{

/// The nearest number of single precision. It goes through memory, because GCC 12 drops the
/// rounding where it works on two numbers at once.
float narrowed(double number)
{
    const volatile float single = float(number);
    return single;
}

QPainterPath hitPath(const ModelFrame &frame)
{
    QPainterPath path;
    path.setFillRule(Qt::WindingFill);
    const float sx = narrowed(frame.pathSize.width() / frame.regionSize.width());
    const float sy = narrowed(frame.pathSize.height() / frame.regionSize.height());
    for (const QRect &rect : frame.rects) {
        const float x = float(rect.left()) * sx;
        const float y = float(rect.top()) * sy;
        const float width = float(rect.width()) * sx;
        const float height = float(rect.height()) * sy;
        path.addRect(double(x), double(y), double(width), double(height));
    }
    return path;
}

void addDisc(QPainterPath &path, double x, double y, double radius)
{
    path.addEllipse(QRectF(x - radius, y - radius, 2.0 * radius, 2.0 * radius));
}

} // namespace

QPainterPath ModelObject::shape() const
{
    QPainterPath path;
    if (!hasShape)
        return path;
    if (isFrame(index) && frames[index].hasPath)
        path = hitPath(frames[index]);
    if (host->isAlternate(document))
        return path;
    const double radius = 2.0 + handleSize;
    for (int row = 0; row < 3; ++row) {
        for (int column = 0; column < 3; ++column) {
            if (row != 1 || column != 1)
                addDisc(path, size.width() * column * 0.5, size.height() * row * 0.5, radius);
        }
    }
    addDisc(path, double(narrowed(0.5 * size.width())), double(narrowed(0.0 - 2.0 * handleSize)),
            radius);
    return path;
}
