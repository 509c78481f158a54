#pragma once

#include "animatedimage/core/animatedportrait.h"

#include <QtCore/QList>

/// The pictures of Scratch 3 costumes: every frame centred on one common canvas. Pure functions.
namespace CostumeCanvas
{

/// Pixels of a costume to one unit of a frame's display size.
constexpr int Resolution = 2;

/// The largest width and the largest height of the display sizes of @p frames, which may come
/// from different frames; (-1, -1) without frames.
QSizeF largestSize(const QList<CAnimatedPortrait> &frames);

/// @p frame in the middle of a transparent canvas for frames up to @p largest, in
/// Format_ARGB32. The picture keeps its own proportions within the frame's display size. A canvas
/// of no size is null.
QImage drawn(const CAnimatedPortrait &frame, const QSizeF &largest);

} // namespace CostumeCanvas
