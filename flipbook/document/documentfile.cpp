#include "flipbook/document/documentfile.h"

#include "flipbook/base/failure.h"
#include "flipbook/base/memorybudget.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/base/saturating.h"
#include "flipbook/document/documentarchive.h"
#include "flipbook/document/documentjson.h"
#include "flipbook/document/documentpictures.h"
#include "flipbook/document/formmemory.h"
#include "flipbook/import/gifscreen.h"
#include "flipbook/import/gifsource.h"
#include "flipbook/object/formkeys.h"
#include "framework/page.h"

#include <QtCore/QFileInfo>
#include <QtCore/QHash>

#include <new>
#include <optional>

namespace
{

const QLatin1String IsGif("IsGif");

class DocumentLoader
{
public:
    DocumentLoader(const Plugin &plugin, const QString &path, Reading &reading);

    LoadedDocument load(std::unique_ptr<QFile> file);

private:
    void countObjects(const QVector<PageForm> &pages);
    void followReference(ObjectForm &form, const QString &where);
    QString copyOf(const QString &reference);
    void nameUndecoded();
    void addPage(const PageForm &form);
    void addObject(Page &page, const ObjectForm &form);

    const Plugin &m_plugin;
    const QString m_path;
    Reading &m_reading;
    qint64 m_tileWork = 0;                  ///< what making the largest background also takes
    std::optional<PrivateFolder> m_private; ///< for copies of files that the document refers to
    QHash<QString, GifDescriptors> m_gifs;  ///< what copies say about themselves, by their path
    LoadedDocument m_loaded;
};

DocumentLoader::DocumentLoader(const Plugin &plugin, const QString &path, Reading &reading)
    : m_plugin(plugin)
    , m_path(path)
    , m_reading(reading)
{
    m_loaded.document = std::make_unique<Document>();
    m_loaded.document->setKeepsImagesInline(false);
    m_loaded.document->setBaseFolder(QFileInfo(path).absolutePath());
}

LoadedDocument DocumentLoader::load(std::unique_ptr<QFile> file)
{
    MemoryAccount &memory = m_reading.memory();
    const DocumentArchive archive(std::move(file), m_path, memory);
    const QByteArray json = archive.json();
    const qint64 jsonMemory = MemoryBudget::neededForJson(json);
    memory.require(jsonMemory, m_path, QStringLiteral("its document.json"));
    memory.take(jsonMemory);
    QVector<PageForm> pages = pagesOfJson(json, m_path);
    countObjects(pages);
    int pageNumber = 0;
    for (PageForm &page : pages) {
        ++pageNumber;
        int objectNumber = 0;
        for (ObjectForm &object : page.objects) {
            ++objectNumber;
            followReference(
                object, QStringLiteral("object %1 of page %2").arg(objectNumber).arg(pageNumber));
        }
    }
    m_loaded.warnings +=
        readPictures(archive, pages, memory, m_path, m_loaded.document->imageStore());
    memory.require(m_tileWork, m_path, QStringLiteral("a background"));
    for (const PageForm &page : qAsConst(pages))
        addPage(page);
    nameUndecoded();
    memory.giveBack(jsonMemory);
    return std::move(m_loaded);
}

void DocumentLoader::countObjects(const QVector<PageForm> &pages)
{
    MemoryAccount &memory = m_reading.memory();
    const qint64 objects = FormMemory::ofObjects(pages);
    memory.require(objects, m_path, QStringLiteral("its pages and objects"));
    memory.take(objects);
    for (const PageForm &page : pages) {
        for (const ObjectForm &object : page.objects) {
            const QSizeF size = FormMemory::backgroundSize(object.state);
            if (size.isEmpty())
                continue;
            const qint64 work = MemoryBudget::forTileAtWork(size);
            memory.require(
                Saturating::sum(MemoryBudget::keptForTile(size), work), m_path,
                QStringLiteral("a background of %1 x %2").arg(size.width()).arg(size.height()));
            memory.take(MemoryBudget::keptForTile(size));
            m_tileWork = qMax(m_tileWork, work);
        }
    }
}

// The object would open anything that the reference leads to: it gets a copy of what was checked,
// or no reference when that is nothing that can be read.
void DocumentLoader::followReference(ObjectForm &form, const QString &where)
{
    if (!form.state.value(IsGif).toBool())
        return;
    const QString reference = form.state.value(FormKey::GifFileName).toString();
    QString copy;
    try {
        copy = copyOf(reference);
    } catch (const OutsideFile &outside) {
        throw Failure{
            m_path,
            QStringLiteral("%1 refers to '%2', which %3").arg(where, reference, outside.reason)};
    } catch (const Failure &failure) {
        m_loaded.warnings << QStringLiteral("%1 has no frames: the GIF that it refers to, '%2': %3")
                                 .arg(where, reference, failure.reason);
    }
    form.state[FormKey::GifFileName] = copy;
}

QString DocumentLoader::copyOf(const QString &reference)
{
    if (reference.isEmpty())
        throw Failure{reference, QStringLiteral("no usable path")};
    const auto file = m_reading.openFrom(m_reading.openFolderOf(m_path), reference);
    if (!m_private)
        m_private.emplace();
    const GifSource source = copyGif(*file, reference, m_reading.memory(), *m_private);
    for (const QString &warning : source.warnings)
        m_loaded.warnings << QStringLiteral("%1: %2").arg(reference, warning);
    m_gifs.insert(source.copy, source.descriptors);
    return source.copy;
}

// Pictures that arrived as they were written, but are not pictures.
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
    if (!object->loadJson(state))
        throw std::bad_alloc();
    const QString copy = form.state.value(FormKey::GifFileName).toString();
    if (m_gifs.contains(copy))
        GifScreen::clear(AnimatedObject(*object), copy, m_gifs.value(copy));
}

} // namespace

LoadedDocument loadDocument(const Plugin &plugin, std::unique_ptr<QFile> file, const QString &path,
                            Reading &reading)
{
    return DocumentLoader(plugin, path, reading).load(std::move(file));
}

LoadedDocument loadDocument(const Plugin &plugin, const QString &path, Reading &reading)
{
    return loadDocument(plugin, reading.openFile(path), path, reading);
}

void saveDocument(Document &document, const QString &path, const MemoryAccount &memory,
                  IfExists ifExists)
{
    document.setKeepsImagesInline(false);
    // Pictures that no object shows any more are left out.
    ImageStore &store = document.imageStore();
    // The files are in memory twice, once in the archive.
    const qint64 room = Saturating::sum(memory.room(), store.byteCount());
    store.setCapacity(room);
    store.beginUse();
    const QByteArray json = documentJson(document);
    store.dropUnused();
    if (store.hasOverflowed() || store.byteCount() > room / 2)
        throw Failure{path,
                      QStringLiteral("its pictures as PNG files, and the document as a whole, "
                                     "would need more memory than the %1 that are left of "
                                     "what --max-memory allows")
                          .arg(MemoryBudget::text(room))};
    QMap<QString, QByteArray> pictures;
    const QList<QString> digests = store.digests();
    for (const QString &digest : digests)
        pictures.insert(pictures.cend(), digest, store.png(digest));
    DocumentArchive::write(path, json, pictures, ifExists);
}
