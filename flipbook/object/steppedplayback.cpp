#include "flipbook/object/steppedplayback.h"

#include "flipbook/object/animatedobject.h"
#include "framework/document.h"
#include "framework/page.h"

SteppedPlayback::SteppedPlayback(Document &document, Page &page)
    : m_document(document)
    , m_objects(page.objects())
{
    m_document.enterAlternateMode();
    for (CBaseObject *object : qAsConst(m_objects))
        AnimatedObject(*object).startStepping();
}

SteppedPlayback::~SteppedPlayback()
{
    for (CBaseObject *object : qAsConst(m_objects))
        AnimatedObject(*object).endStepping();
    m_document.leaveAlternateMode();
}

void SteppedPlayback::advanceTo(qint64 milliseconds)
{
    for (; m_elapsedMs + StepMs <= milliseconds; m_elapsedMs += StepMs) {
        for (CBaseObject *object : qAsConst(m_objects))
            AnimatedObject(*object).step();
    }
}
