#pragma once

#include <QtCore/QtGlobal>

#include <functional>

/// Hears how far long work is: how many things are done, and how many there are. What it throws
/// ends the work. An empty one may be given where nobody listens.
using Steps = std::function<void(qint64 done, qint64 all)>;

/// Tells @p steps, if it is not empty.
inline void tellStep(const Steps &steps, qint64 done, qint64 all)
{
    if (steps)
        steps(done, all);
}
