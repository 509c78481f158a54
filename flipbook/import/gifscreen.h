#pragma once

#include "flipbook/base/steps.h"
#include "flipbook/import/gifdescriptors.h"
#include "flipbook/object/animatedobject.h"

/// Pictures of GIFs that leave their screen unset (see GifDescriptors::leavesScreenUnset), decoded
/// so that what no frame covers is transparent, and nothing of the decoder's memory is seen.
namespace GifScreen
{

/// Gives every frame that @p object has just read from the GIF at @p copy, a private copy, its
/// picture again, and tells @p steps. Does nothing for other GIFs. @throw Failure when the copy
/// cannot be opened.
void clear(AnimatedObject object, const QString &copy, const GifDescriptors &gif,
           const Steps &steps = {});

/// The first frame of the GIF in @p bytes; null when it cannot be decoded.
QImage firstFrame(const QByteArray &bytes, const GifDescriptors &gif);

} // namespace GifScreen
