#pragma once

#include "flipbook/editing/repeatplan.h"
#include "flipbook/object/plugin.h"

class Page;

/// The most frames that repeating may lead to.
constexpr qint64 MaxRepeatedFrames = 20000;

/// Gives the film of @p object, which is on @p page, the rhythm of @p plan: each frame is
/// repeated as the plan says, and the interval is that of the plan. Repeats share the pixels of
/// their frame and have their own names. Frames that the plan does not reach stay single.
/// Returns the object that takes the place of @p object.
/// @throw Failure, with @p subject, when there would be more than MaxRepeatedFrames frames.
CBaseObject *repeatFrames(const Plugin &plugin, Page &page, CBaseObject &object,
                          const RepeatPlan &plan, const QString &subject);
