#pragma once

#include "flipbook/object/plugin.h"

namespace Scratch
{

/// The size of the picture that all costumes of @p object are drawn on, in pixels, or more: frames
/// may be as large as they were saved, and as playback makes them.
QSizeF largestCostume(const Plugin &plugin, CBaseObject &object);

} // namespace Scratch
