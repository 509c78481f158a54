#pragma once

#include "tests/animatedimage/hostilecalls/payloads.h"

#include <QtCore/QSet>
#include <QtCore/QStringList>

/// Tells from the bytes of a request, without Qt's streams, what it may do.
namespace RequestJudge
{

enum class Verdict {
    ReadsOnly, ///< changes nothing, whatever comes with it
    Refused,   ///< changes nothing, since what comes with it is not right
    Accepted,  ///< may change something
    Unknown,   ///< not decided here: a damaged picture, or a stream of another kind
};

/// What a verdict depends on.
struct Object {
    QStringList names;      ///< of all frames
    QSet<qint64> addresses; ///< of the live animated images
};

Verdict verdict(int id, bool isGet, const Payload &payload, const Object &object);

/// Whether playback is stopped before anything is read.
bool stopsFirst(int id, bool isGet);

/// What the call returns.
bool result(int id, bool isGet);

} // namespace RequestJudge
