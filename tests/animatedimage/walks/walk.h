#pragma once

#include "tests/animatedimage/walks/actor.h"

/// Random walks: steps that are done with two objects and with their model, which are compared
/// after each.
namespace Walks
{

/// The steps of a walk up to the first that differs, and what differs; empty when nothing does.
struct Failure {
    QVector<Step> steps;
    QString difference;

    bool isEmpty() const { return difference.isEmpty(); }
    /// The steps and the difference as lines of text.
    QString words() const;
};

/// Chooses the steps of the walk of this seed, and does them. @p mistake is made by the model.
Failure walk(Actor &actor, quint32 seed, Mistake mistake = Mistake::None);

/// The failure again with as few of its steps as still lead to one.
Failure shortened(Actor &actor, const Failure &failure, Mistake mistake = Mistake::None);

} // namespace Walks
