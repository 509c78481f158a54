#include "tests/animatedimage/walks/modelobject.h"

#include <QtGui/QTransform>

#include <cmath>

namespace
{

bool isPossible(const QPointF &place)
{
    return std::isfinite(place.x()) && std::isfinite(place.y());
}

bool isPossible(const QSizeF &size)
{
    return std::isfinite(size.width()) && std::isfinite(size.height()) && size.width() >= 0.0 &&
           size.height() >= 0.0;
}

} // namespace

ModelObject::ModelObject(ModelHost *itsHost, int itsSerial)
    : host(itsHost)
    , serial(itsSerial)
    , objectId(itsSerial)
    , handleSize(itsHost->handleSize)
{
}

void ModelObject::changed(int id)
{
    host->events.append(QStringLiteral("object %1 changed %2").arg(serial).arg(id));
}

/// What an object with layer effects does when its content changes.
void ModelObject::clearCache()
{
    if (shadow.isValid())
        host->events.append(QStringLiteral("object %1 cleared its cache, reason 2").arg(serial));
}

/// Qt compares the two places by and large.
void ModelObject::placeAt(const QPointF &newPos)
{
    pos = newPos;
    if (itemPos != newPos)
        itemPos = newPos;
}

void ModelObject::baseSetSize(const QSizeF &newSize, bool keepCenter, bool notify)
{
    QPointF place = pos;
    if (keepCenter)
        place = QPointF(pos.x() - (newSize.width() - size.width()) / 2,
                        pos.y() - (newSize.height() - size.height()) / 2);
    if (!isPossible(newSize) || !isPossible(place))
        return;
    size = newSize;
    placeAt(place);
    if (notify)
        changed(104);
}

void ModelObject::baseSetCenterPos(const QPointF &center, const QSizeF &newSize, double angle)
{
    const QPointF place(center.x() - newSize.width() / 2, center.y() - newSize.height() / 2);
    if (!isPossible(newSize) || !isPossible(place) || !std::isfinite(angle))
        return;
    size = newSize;
    placeAt(place);
    if (rotateType == 2)
        degree = angle;
}

void ModelObject::baseSetPos(const QPointF &newPos, bool notify)
{
    if (!isPossible(newPos))
        return;
    placeAt(newPos);
    if (notify)
        changed(104);
}

bool ModelObject::baseSetParam(const QString &key, const QVariant &value)
{
    const bool had = params.contains(key);
    if (!value.isValid()) {
        params.remove(key);
        return had;
    }
    const QVariant old = params.value(key);
    if (had && old.userType() == value.userType() && old == value)
        return false;
    params[key] = value;
    return true;
}

void ModelObject::updateAfterRectChanged()
{
    isRectStale = false;
    changed(104);
}

void ModelObject::setShadow(const QColor &color)
{
    shadow = color;
}

/// Everything that the base writes into a saved form.
void ModelObject::takeOverBase(const ModelObject &other)
{
    objectId = other.objectId;
    placeAt(other.pos);
    size = other.size;
    rotateType = other.rotateType;
    degree = other.degree;
    isMirrored = other.isMirrored;
    isFlipped = other.isFlipped;
    shadow = other.shadow;
    params = other.params;
}

/// The centre on the page: the object turns about it.
QPointF ModelObject::sceneCenter() const
{
    const QPointF center(size.width() * 0.5, size.height() * 0.5);
    if (rotation() == 0.0)
        return center + itemPos;
    QTransform turned;
    turned.translate(center.x(), center.y());
    turned.rotate(rotation());
    turned.translate(-center.x(), -center.y());
    turned *= QTransform::fromTranslate(itemPos.x(), itemPos.y());
    return turned.map(center);
}

void ModelObject::refreshDocument()
{
    if (page != ModelHost::NoPage)
        document = page == 0 ? DocumentOf::FirstPage : DocumentOf::SecondPage;
    else if (document == DocumentOf::Nobody)
        document = DocumentOf::Framework;
}
