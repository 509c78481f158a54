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

/// Plays @p stage on its own timer up to the frame @p index.
inline void playTo(Stage &stage, int index)
{
    stage->playImage(true);
    while (stage.probe.runningIndex() != index)
        stage.probe.tick();
    stage.log.clear();
}

} // namespace Attributes

/// What the host hears, as a NotificationLog writes it down.
namespace Heard
{

inline const QString changed = QStringLiteral("changed 1002");
inline const QString moved = QStringLiteral("changed 104");
inline const QString restored = QStringLiteral("changed 105");
inline const QString postedTrue =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"true"}]} -1)");
inline const QString postedFalse =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"false"}]} -1)");
/// When the normal type shows another frame.
inline const QStringList anotherFrame{moved, moved, changed};
/// When it stops on a frame other than the first.
inline const QStringList stopped = anotherFrame + QStringList{changed, postedFalse};
/// When it starts from the first frame.
inline const QStringList started{changed, postedTrue};

} // namespace Heard
