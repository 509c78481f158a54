#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/object/plugin.h"
#include "framework/page.h"
#include "fuzz/fuzzing.h"

#include <QtGui/QPainter>

namespace
{

/// What a view does with a page.
void look(Page &page)
{
    QImage canvas(8, 8, QImage::Format_ARGB32);
    QPainter painter(&canvas);
    page.render(&painter, canvas.rect(), page.pageRect());
    page.objectAt(page.pageRect().center());
}

/// A page is looked at while it is edited and while it is presented.
void look(Document &document)
{
    for (Page *page : document.pages())
        look(*page);
    document.enterAlternateMode();
    for (Page *page : document.pages())
        look(*page);
    document.leaveAlternateMode();
}

} // namespace

/// A document file: it is read whole or refused, and what was read can be painted.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    static const Plugin plugin;
    const QString path = Fuzzing::file(data, size, QStringLiteral(".flipbook"));
    try {
        Reading reading(Fuzzing::MaxMemory, false);
        const LoadedDocument loaded = loadDocument(plugin, path, reading);
        Fuzzing::require(loaded.document != nullptr, "neither a document nor a failure");
        look(*loaded.document);
    } catch (const Failure &) {
        return 0;
    }
    return 0;
}
