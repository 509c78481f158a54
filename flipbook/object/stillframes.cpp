#include "flipbook/object/stillframes.h"

#include "flipbook/object/animatedobject.h"
#include "framework/document.h"
#include "framework/page.h"

StillFrames::StillFrames(const Document &document)
{
    const QList<Page *> &pages = document.pages();
    for (const Page *page : pages) {
        const QList<CBaseObject *> objects = page->objects();
        for (CBaseObject *object : objects) {
            const AnimatedObject animated(*object);
            if (!animated.isPlaying() && animated.frameCount() > 0)
                m_stills.append({object, animated.shownIndex()});
        }
    }
}

void StillFrames::restore() const
{
    for (const Still &still : m_stills) {
        if (still.object)
            AnimatedObject(*still.object).showFrame(still.shown);
    }
}
