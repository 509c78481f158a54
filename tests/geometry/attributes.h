#pragma once

#include "host/attributeids.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

/// The attributes that a host sends to an animated image, each with its input.
namespace Attributes
{

/// Whether the object handled the attribute @p id.
inline bool send(Stage &stage, int id, const QByteArray &input = {}, bool flag = false)
{
    QDataStream stream(input);
    return stage->SetAttribute(id, stream, flag);
}

/// Starts (or, with @p resume, resumes) playback that the host steps. The first of the two flags
/// of its input means nothing.
inline bool startStepped(Stage &stage, bool resume = false, bool unused = false)
{
    return send(stage, AttributeId::StartSteppedPlayback, Request::packed(unused, resume));
}

/// Gives playback to the object's own timer, or takes it away.
inline bool enableTimer(Stage &stage, bool enabled)
{
    return send(stage, AttributeId::EnableTimer, Request::packed(enabled));
}

/// 40 ms of the host's clock.
inline bool tick(Stage &stage)
{
    return send(stage, AttributeId::SteppedTick);
}

/// What a host does that plays an object itself, from the first frame on.
inline void playByHost(Stage &stage)
{
    enableTimer(stage, false);
    startStepped(stage);
}

} // namespace Attributes
