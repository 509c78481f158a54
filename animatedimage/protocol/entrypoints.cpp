#include "animatedimage/protocol/entrypoints.h"

#include <new>

CBaseObject *createObject_animatedImage(int /*unused*/, int objectId, bool editable)
try {
    return new CAnimatedImage(objectId, editable, nullptr);
} catch (const std::bad_alloc &) {
    return nullptr;
}

bool animatedImage_SetDefaultSpecialProperty(int id, QDataStream &stream)
{
    return CAnimatedImage::SetDefaultSpecialProperty(id, stream);
}

void animatedImage_GetAllThumbnail(CBaseObject *object, bool fullSize, ThumbnailList &out)
{
    if (const auto *animated = dynamic_cast<CAnimatedImage *>(object))
        animated->GetAllThumbnail(fullSize, out);
}
