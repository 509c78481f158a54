#include "tests/animatedimage/walks/modelobject.h"

void ModelObject::followSize()
{
    if (!isBackground())
        return;
    for (ModelFrame &frame : frames)
        frame.size = size;
}

void ModelObject::setSize(const QSizeF &newSize, bool keepCenter, bool notify)
{
    baseSetSize(newSize, keepCenter, notify);
    updateRegions(false);
    followSize();
}

void ModelObject::setCenterPos(const QPointF &center, const QSizeF &newSize, double angle,
                               bool update)
{
    baseSetCenterPos(center, newSize, angle);
    followSize();
    if (isBackground())
        regenerateTile();
    if (update) {
        updateRegions(false);
        updateAfterRectChanged();
    }
}

void ModelObject::setPos(const QPointF &newPos, bool notify)
{
    constexpr int movedByHand = 2;
    if (isPresentedBackground() && status != movedByHand) {
        bgPos = newPos;
        changed(1002);
        return;
    }
    baseSetPos(newPos, notify);
}

QPointF ModelObject::getPos() const
{
    return isPresentedBackground() ? bgPos : pos;
}

void ModelObject::followMirror()
{
    updateRegions(true);
    clearCache();
    changed(1002);
}

void ModelObject::setMirror(bool on, bool notify)
{
    isMirrored = on;
    if (notify)
        changed(104);
    followMirror();
}

void ModelObject::setFlip(bool on, bool notify)
{
    isFlipped = on;
    if (notify)
        changed(104);
    followMirror();
}

QSize ModelObject::imageSize() const
{
    return isFrame(index) ? PicturePool::instance().size(frames[index].picture) : QSize(0, 0);
}
