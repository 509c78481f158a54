#pragma once

#include "animatedimage/object/animatedimage.h"

class CBaseObject;
class QDataStream;

/// The functions that a host looks up by name. None reports an error or throws.
extern "C" {

/// A new animated image that belongs to the caller, who frees it with Release(); null without
/// memory. The first number
/// has no effect; @p objectId and @p editable are passed on to the base class.
ANIMATEDIMAGE_EXPORT CBaseObject *createObject_animatedImage(int unused, int objectId,
                                                             bool editable);

/// Accepts every default property and does nothing; always true.
ANIMATEDIMAGE_EXPORT bool animatedImage_SetDefaultSpecialProperty(int id, QDataStream &stream);

/// Appends name and picture of each frame of @p object to @p out: full pictures, or (@p fullSize
/// false) pictures fitted into 150 x 150 pixels. A null object, or one of another class, adds
/// nothing.
ANIMATEDIMAGE_EXPORT void animatedImage_GetAllThumbnail(CBaseObject *object, bool fullSize,
                                                        ThumbnailList &out);
}
