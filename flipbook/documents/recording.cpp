#include "flipbook/documents/recording.h"

#include "flipbook/animatedobject.h"
#include "framework/document.h"
#include "framework/page.h"

namespace
{

/// Presents a document for as long as it lives, with playback in the hands of the recorder.
class Presentation
{
public:
    Presentation(Document &document, const QList<CBaseObject *> &objects)
        : m_document(document)
        , m_objects(objects)
    {
        m_document.enterAlternateMode();
        for (CBaseObject *object : m_objects)
            AnimatedObject(*object).startStepping();
    }

    ~Presentation()
    {
        for (CBaseObject *object : m_objects)
            AnimatedObject(*object).stopStepping();
        m_document.leaveAlternateMode();
    }

    void step()
    {
        for (CBaseObject *object : m_objects)
            AnimatedObject(*object).step();
    }

private:
    Q_DISABLE_COPY(Presentation)

    Document &m_document;
    const QList<CBaseObject *> m_objects;
};

} // namespace

void record(Document &document, Page &page, int fps, int count,
            const std::function<void(const QImage &picture)> &take)
{
    constexpr qint64 stepMs = 40;
    Presentation presentation(document, page.objects());
    qint64 steps = 0;
    for (int i = 0; i < count; ++i) {
        for (const qint64 time = qint64(i) * 1000 / fps; (steps + 1) * stepMs <= time; ++steps)
            presentation.step();
        take(page.rendered());
    }
}
