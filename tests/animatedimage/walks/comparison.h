#pragma once

#include "tests/animatedimage/walks/actor.h"

/// Holds the objects of a walk against their model.
namespace Comparison
{

/// Which values are compared that take longer than the others.
enum Depth { Quick, Thorough };

/// The first thing that is not as the model says, in words; nothing when all is.
QString firstDifference(const Step &step, const Outcome &expected, const Found &found,
                        const ModelWorld &model, Actor &actor, const QStringList &events,
                        Depth depth);

} // namespace Comparison
