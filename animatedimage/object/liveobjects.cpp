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
    // Never destroyed: a host's static objects may release theirs after everything else.
    static auto *const all = new Objects;
    return *all;
}

qint64 address(const CAnimatedImage *object)
{
    return reinterpret_cast<qint64>(static_cast<const CGDRootObject *>(object));
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

bool holds(const CAnimatedImage *object)
{
    return objects().contains(address(object));
}

CAnimatedImage *at(qint64 address)
{
    return objects().value(address, nullptr);
}

} // namespace LiveObjects
