#include "flipbook/document/documentfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/document/documentjson.h"
#include "flipbook/document/documentpictures.h"
#include "flipbook/import/gifsource.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>

namespace
{

const QLatin1String IsGif("IsGif");
const QLatin1String GifFileName("GifFileName");

class DocumentLoader
{
public:
    DocumentLoader(const Plugin &plugin, const QString &path, qint64 maxMemory);

    LoadedDocument load();

private:
    void checkGifReference(ObjectForm &form, const QString &where);
    void nameUndecoded();
    void addPage(const PageForm &form);
    void addObject(Page &page, const ObjectForm &form);

    const Plugin &m_plugin;
    QString m_path;
    qint64 m_maxMemory;
    LoadedDocument m_loaded;
};

DocumentLoader::DocumentLoader(const Plugin &plugin, const QString &path, qint64 maxMemory)
    : m_plugin(plugin)
    , m_path(path)
    , m_maxMemory(maxMemory)
{
    m_loaded.document = std::make_unique<Document>();
    m_loaded.document->setKeepsImagesInline(false);
    m_loaded.document->setBaseFolder(QFileInfo(path).absolutePath());
}

LoadedDocument DocumentLoader::load()
{
    const DocumentArchive archive(m_path);
    QVector<PageForm> pages = pagesOfJson(archive.json(), m_path);
    int pageNumber = 0;
    for (PageForm &page : pages) {
        ++pageNumber;
        int objectNumber = 0;
        for (ObjectForm &object : page.objects) {
            ++objectNumber;
            checkGifReference(
                object, QStringLiteral("object %1 of page %2").arg(objectNumber).arg(pageNumber));
        }
    }
    m_loaded.warnings +=
        readPictures(archive, pages, m_maxMemory, m_path, m_loaded.document->imageStore());
    for (const PageForm &page : qAsConst(pages))
        addPage(page);
    nameUndecoded();
    return std::move(m_loaded);
}

// The object would open whatever the reference leads to: look at it first, and take it away when
// it is nothing that may be opened.
void DocumentLoader::checkGifReference(ObjectForm &form, const QString &where)
{
    if (!form.state.value(IsGif).toBool())
        return;
    QString file;
    m_loaded.document->jsonFileReference(form.state, file, GifFileName, false);
    try {
        if (file.isEmpty())
            throw Failure{file, QStringLiteral("no usable path")};
        const GifSource source = examineGif(file, m_maxMemory);
        m_maxMemory -= MemoryBudget::neededFor(source.descriptors, source.descriptors.frames);
        for (const QString &warning : source.warnings)
            m_loaded.warnings << QStringLiteral("%1: %2").arg(file, warning);
    } catch (const Failure &failure) {
        m_loaded.warnings << QStringLiteral("%1 has no frames: the GIF that it refers to, '%2': %3")
                                 .arg(where, form.state.value(GifFileName).toString(),
                                      failure.reason);
        form.state[GifFileName] = QString();
    }
}

// Pictures that arrived as they were written, but are no pictures.
void DocumentLoader::nameUndecoded()
{
    const QStringList missing = m_loaded.document->missingPictures();
    for (const QString &digest : missing) {
        if (m_loaded.document->imageStore().contains(digest))
            m_loaded.warnings << QStringLiteral("the picture '%1' cannot be decoded; frames that "
                                                "show it are empty")
                                     .arg(digest);
    }
}

void DocumentLoader::addPage(const PageForm &form)
{
    Page *page = m_loaded.document->addPage(form.rect);
    for (const ObjectForm &object : form.objects)
        addObject(*page, object);
}

void DocumentLoader::addObject(Page &page, const ObjectForm &form)
{
    CBaseObject *object = m_plugin.createObject().release();
    page.addObject(object, form.isBackground ? Page::Layer::Background : Page::Layer::Normal);
    QJsonObject state = form.state;
    object->loadJson(state);
}

} // namespace

LoadedDocument loadDocument(const Plugin &plugin, const QString &path, qint64 maxMemory)
{
    return DocumentLoader(plugin, path, maxMemory).load();
}

void saveDocument(Document &document, const QString &path)
{
    document.setKeepsImagesInline(false);
    // Pictures that no object shows any more are left out.
    ImageStore &store = document.imageStore();
    store.clear();
    const QByteArray json = documentJson(document);
    QMap<QString, QByteArray> pictures;
    const QList<QString> digests = store.digests();
    for (const QString &digest : digests)
        pictures.insert(digest, store.png(digest));
    DocumentArchive::write(path, json, pictures);
}
