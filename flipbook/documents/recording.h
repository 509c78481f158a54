#pragma once

#include <QtGui/QImage>

#include <functional>

class Document;
class Page;

/// Presents @p document and hands every picture of a film of its page @p page to @p take: @p fps
/// pictures a second, @p count in all, the first of the moment in which every object shows its
/// first frame. The objects play by the recorder's clock of 40 ms, so a film is the same on every
/// run. The document is back in its editing mode afterwards.
void record(Document &document, Page &page, int fps, int count,
            const std::function<void(const QImage &picture)> &take);
