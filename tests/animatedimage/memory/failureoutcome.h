#pragma once

#include "tests/support/stage.h"

#include <QtCore/QMap>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <functional>

/// What comes of an operation in which one allocation fails, each in turn and each in a process of
/// its own.
namespace FailureOutcome
{

/// Prepares what the call needs, which must not fail, and returns the call.
using Operation = std::function<std::function<void()>(Stage &)>;

/// What needs no preparation.
Operation plain(const std::function<void(Stage &)> &call);

enum Outcome {
    Fine,
    NotReached,
    Thrown,
    Unusable,
    Ended,
    EndedInLibrary, ///< a function of Qt or of the C library has not checked whether it got memory
    Waits,
    WaitsInLibrary, ///< an exception has left a lock of Qt closed
};

/// The numbers of the allocations, counted from 1, by outcome.
struct Outcomes {
    QMap<Outcome, QVector<int>> numbers;
    /// The functions in which processes ended or waited, innermost first.
    QStringList places;
};

/// Whether it can be painted, played, saved and listed, and released in the end.
bool isUsable(Stage &stage);

QList<QImage> frames();

/// All allocations up to the 5,000th when ALLOCATION_FAILURES=all is in the environment; otherwise
/// every one at first, and then fewer: the later ones are in loops.
Outcomes of(const Operation &operation);

/// Fails the running test unless each process was fine or failed in a library. Prints how many
/// there were.
void check(const Operation &operation);

} // namespace FailureOutcome

Q_DECLARE_METATYPE(FailureOutcome::Operation)
