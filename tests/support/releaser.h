#pragma once

#include "framework/framework.h"
#include "tests/support/stage.h"

/// Releases the object of a stage when the host hears something for the nth time, counted from 1.
class Releaser : public QObject
{
public:
    Releaser(Stage &stage, int nth)
        : m_stage(stage)
        , m_left(nth)
    {
        const Notifier *notifier = Framework::instance().notifier();
        connect(notifier, &Notifier::propertyChanged, this, [this] { hear(); });
        connect(notifier, &Notifier::posted, this, [this] { hear(); });
    }

private:
    void hear()
    {
        if (--m_left == 0)
            m_stage.release();
    }

    Stage &m_stage;
    int m_left;
};
