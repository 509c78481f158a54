#pragma once

#include <QtCore/QList>

class CBaseObject;
class Document;
class Page;

/// Presents a page on a clock of our own: while it lives, the document is in its alternate mode and
/// all animated images of the page play from their first frames, 40 ms a step.
class SteppedPlayback
{
public:
    static constexpr int StepMs = 40;

    /// Both must outlive the playback; @p page belongs to @p document.
    SteppedPlayback(Document &document, Page &page);
    ~SteppedPlayback();

    /// Moves on until @p milliseconds have passed since the start, rounded down to whole steps.
    void advanceTo(qint64 milliseconds);

private:
    Q_DISABLE_COPY(SteppedPlayback)

    Document &m_document;
    QList<CBaseObject *> m_objects;
    qint64 m_elapsedMs = 0;
};
