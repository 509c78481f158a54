#include "flipbook/documents/documentfile.h"

#include "flipbook/documents/documentjson.h"
#include "flipbook/documents/zip.h"
#include "flipbook/failure.h"
#include "flipbook/memorybudget.h"
#include "flipbook/outputfile.h"
#include "framework/page.h"

#include <QtCore/QBuffer>
#include <QtCore/QJsonDocument>
#include <QtGui/QImageReader>

namespace
{

const QLatin1String DocumentName("document.json");
const QLatin1String PictureFolder("pictures/");
const QLatin1String PictureSuffix(".png");

QString pictureName(const QString &digest)
{
    return PictureFolder + digest + PictureSuffix;
}

QJsonObject parse(const QString &path, const QByteArray &bytes)
{
    QJsonParseError error;
    const QJsonDocument json = QJsonDocument::fromJson(bytes, &error);
    if (error.error != QJsonParseError::NoError)
        throw Failure{path,
                      QStringLiteral("%1 in it is not JSON: %2 at byte %3")
                          .arg(DocumentName, error.errorString(), QString::number(error.offset))};
    return json.object();
}

/// The bytes that a PNG will take once it is decoded, as far as it says.
qint64 decodedBytes(const QByteArray &png)
{
    QByteArray bytes = png;
    QBuffer buffer(&bytes);
    QImageReader reader(&buffer, "png");
    const QSize size = reader.size();
    return size.isValid() ? MemoryBudget::neededForPicture(size.width(), size.height()) : 0;
}

/// Fills a store from an archive, within a budget.
class PictureLoader
{
public:
    PictureLoader(const ZipReader &zip, const QString &path, qint64 maxMemory)
        : m_zip(zip)
        , m_path(path)
        , m_maxMemory(maxMemory)
    {
    }

    void loadInto(ImageStore &store)
    {
        const QStringList names = m_zip.names();
        for (const QString &name : names) {
            if (name.startsWith(PictureFolder) && name.endsWith(PictureSuffix))
                load(name, store);
        }
    }

    /// Clauses about pictures that are there but not sound.
    const QStringList &warnings() const { return m_warnings; }

private:
    void load(const QString &name, ImageStore &store)
    {
        QByteArray png;
        try {
            png = m_zip.read(name, m_maxMemory);
        } catch (const Failure &failure) {
            m_warnings.append(failure.reason);
            return;
        }
        m_needed += decodedBytes(png) + png.size();
        if (m_needed > m_maxMemory)
            throw Failure{m_path, QStringLiteral("its pictures need more than the %1 of memory "
                                                 "that are allowed")
                                      .arg(MemoryBudget::text(m_maxMemory))};
        const QString digest = name.mid(PictureFolder.size(),
                                        name.size() - PictureFolder.size() - PictureSuffix.size());
        if (!store.addPng(digest, png))
            m_warnings.append(QStringLiteral("%1 in it is damaged").arg(name));
    }

    const ZipReader &m_zip;
    const QString m_path;
    const qint64 m_maxMemory;
    qint64 m_needed = 0;
    QStringList m_warnings;
};

} // namespace

OpenedDocument readDocument(const Plugin &plugin, const QString &path, qint64 maxMemory)
{
    const ZipReader zip(path);
    if (!zip.names().contains(DocumentName))
        throw Failure{
            path,
            QStringLiteral("is no flipbook document: there is no %1 in it").arg(DocumentName)};
    const QJsonObject json = parse(path, zip.read(DocumentName, maxMemory));

    OpenedDocument opened;
    opened.document = std::make_unique<Document>();
    opened.document->setKeepsImagesInline(false);
    PictureLoader pictures(zip, path, maxMemory);
    pictures.loadInto(opened.document->imageStore());
    opened.warnings = pictures.warnings();
    try {
        DocumentJson::read(json, plugin, *opened.document);
    } catch (const DocumentJson::Malformed &malformed) {
        throw Failure{path,
                      QStringLiteral("%1 in it is damaged: %2").arg(DocumentName, malformed.what)};
    }
    const QStringList missing = opened.document->missingPictures();
    for (const QString &digest : missing)
        opened.warnings.append(QStringLiteral("the picture %1 is missing; its frames are empty")
                                   .arg(pictureName(digest)));
    return opened;
}

void writeDocument(Document &document, const QString &path)
{
    const bool keptInline = document.keepsImagesInline();
    document.setKeepsImagesInline(false);
    // What the store held before may be of frames that are gone.
    document.imageStore().clear();
    const QJsonObject json = DocumentJson::written(document);
    document.setKeepsImagesInline(keptInline);

    ZipWriter zip;
    zip.add(DocumentName, QJsonDocument(json).toJson(QJsonDocument::Compact));
    const QStringList digests = document.imageStore().digests();
    for (const QString &digest : digests)
        zip.add(pictureName(digest), document.imageStore().png(digest));
    writeFile(path, zip.finished());
}
