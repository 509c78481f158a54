#pragma once

#include "framework/frameworkglobal.h"
#include "framework/imagestore.h"
#include "host/gddocument.h"

#include <QtCore/QHash>
#include <QtCore/QRectF>

#include <memory>

class Page;
class QJsonValue;

/// A document: pages, a mode, and the pictures and files that its objects refer to.
class FRAMEWORK_API Document : public IGdDocument
{
public:
    Document() = default;
    /// Drops the undo commands, unless there is no page, then releases the objects of all pages,
    /// then the pages.
    ~Document() override;

    /// A new, empty page after the others; owned by the document.
    Page *addPage(const QRectF &rect);
    /// Destroys @p page with its objects. A page of another document is ignored.
    void removePage(Page *page);
    const QList<Page *> &pages() const;
    /// Gives @p page away with its objects, whose undo commands are kept: the page is to come back,
    /// or to be destroyed when no command knows its objects any more. Null when it is not here.
    std::unique_ptr<Page> takePage(Page *page);
    /// Takes @p page over as number @p index, counted from 0; an index outside counts as the
    /// nearest end.
    void insertPage(int index, std::unique_ptr<Page> page);
    /// Gives @p page another place. A page of another document is ignored.
    void movePage(Page *page, int index);

    int alternateMode() const override;
    /// Sends AttributeId::EnterAlternateMode to every object, then switches the mode to 1.
    void enterAlternateMode();
    /// Switches the mode back to 0, then sends AttributeId::LeaveAlternateMode to every object.
    /// Both do nothing when the document is in that mode already.
    void leaveAlternateMode();

    bool keepsImagesInline() const override;
    /// Inline (the default) suits a clipboard; the store suits a file that keeps each picture
    /// once. Both forms can be read, independent of this setting.
    void setKeepsImagesInline(bool keepsInline);
    ImageStore &imageStore();
    /// While set, saving writes no pictures: for callers that want the rest of an object's state.
    void setOmitsPictures(bool omits);

    /// Digests that reading asked for and that the store did not have (or had damaged); each is
    /// listed once. Null images take their places.
    QStringList missingPictures() const;

    /// Files in this folder are referred to relative to it. An empty text: by their full path.
    void setBaseFolder(const QString &folder);
    QString baseFolder() const;

    void streamImageList(QDataStream &stream, QList<QImage> &images, QStringList &names,
                         QStringList &files, bool saving) override;
    void streamFileReference(QDataStream &stream, QString &path, QString &scratch,
                             bool saving) override;
    void jsonImageList(QJsonObject &json, QList<QImage> &images, const QString &key,
                       bool saving) override;
    void jsonFileReference(QJsonObject &json, QString &path, const QString &key,
                           bool saving) override;

private:
    friend class Page;
    Q_DISABLE_COPY(Document)

    /// The pictures of one list by digest: those that occur again share their pixels.
    using Decoded = QHash<QString, QImage>;

    void forget(Page *page);
    void sendAttribute(int id);
    void updatePages();

    void writeImages(QDataStream &stream, const QList<QImage> &images);
    QList<QImage> readImages(QDataStream &stream);
    QJsonValue jsonImage(const QImage &image);
    QImage imageOfJson(const QJsonObject &json, Decoded &decoded);
    QImage storedImage(const QString &digest, Decoded &decoded);
    QString reference(const QString &path) const;
    QString resolved(const QString &reference) const;

    QList<Page *> m_pages;
    int m_alternateMode = 0;
    bool m_keepsImagesInline = true;
    bool m_omitsPictures = false;
    ImageStore m_imageStore;
    QStringList m_missingPictures;
    QString m_baseFolder;
};
