#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/object/animatedobject.h"

#include <QtGui/QImage>

#include <functional>

/// Paints every frame of @p objects in order, each by its object and on a checkerboard, with its
/// name and its number below. @p progress is called with the number of frames painted so far; it
/// may be empty. Leaves every object stopped at the frame that it showed.
/// @throw Failure when there are no frames, or too many for one sheet that @p memory has room for.
QImage contactSheet(const QList<CBaseObject *> &objects, const MemoryAccount &memory,
                    const std::function<void(int)> &progress = {});
