#pragma once

#include "flipbook/object/animatedobject.h"

#include <QtCore/QObject>

/// Follows an object that plays on its own timer, and reports each frame that it shows once,
/// although the object may announce it several times while it steps.
class FrameWatcher : public QObject
{
    Q_OBJECT

public:
    /// Plays @p passes times, or, when that is 0, as often as the object itself wants to.
    explicit FrameWatcher(AnimatedObject object, int passes = 0);

    /// Starts the object from its first frame.
    void start();

Q_SIGNALS:
    void frameShown(int index);
    /// The object has stopped by itself, @p passes times having shown all its frames.
    void stopped(int passes);

private:
    void noteChange();
    void look();
    void beginPass();

    AnimatedObject m_object;
    int m_wantedPasses;
    int m_passesDone = 0;
    int m_lastIndex = -1;
    bool m_lookPending = false;
};
