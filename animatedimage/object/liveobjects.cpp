#include "animatedimage/object/liveobjects.h"
#include "animatedimage/object/animatedimage.h"

#include <QtCore/QHash>

namespace LiveObjects
{

namespace
{

using Objects = QHash<qint64, CAnimatedImage *>;

Objects &objects()
{
    static Objects all;
    return all;
}

qint64 address(CAnimatedImage *object)
{
    return reinterpret_cast<qint64>(static_cast<CGDRootObject *>(object));
}

} // namespace

void add(CAnimatedImage *object)
{
    objects().insert(address(object), object);
}

void remove(CAnimatedImage *object)
{
    objects().remove(address(object));
}

CAnimatedImage *at(qint64 address)
{
    return objects().value(address, nullptr);
}

} // namespace LiveObjects
