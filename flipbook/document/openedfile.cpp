#include "flipbook/document/openedfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/import/sourcefile.h"
#include "framework/page.h"

QList<CBaseObject *> OpenedFile::objects() const
{
    QList<CBaseObject *> objects;
    for (const Page *page : document->pages())
        objects += page->objects();
    return objects;
}

OpenedFile openFile(const Plugin &plugin, const QString &path, Reading &reading)
{
    OpenedFile opened;
    Source source = reading.open(path);
    if (kindOf(source, path) == SourceKind::Document) {
        if (reading.sheetCut())
            throw Failure{path, QStringLiteral("only a still picture can be cut into frames, "
                                               "not a document")};
        LoadedDocument loaded = loadDocument(plugin, std::move(source.file), path, reading);
        opened.document = std::move(loaded.document);
        opened.warnings = loaded.warnings;
        opened.isDocument = true;
        return opened;
    }
    ImportedMedia media = importMedia(plugin, source, path, reading);
    opened.document = std::make_unique<Document>();
    opened.document->addPage(media.object->getClientRect())->addObject(media.object.release());
    opened.warnings = media.warnings;
    opened.format = media.format;
    opened.gif = media.gif;
    opened.privateFolder = std::move(media.privateFolder);
    opened.times = media.times;
    return opened;
}
