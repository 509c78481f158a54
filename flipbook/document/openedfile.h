#pragma once

#include "flipbook/base/privatefolder.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/import/filmtimes.h"
#include "flipbook/import/gifdescriptors.h"

#include <optional>

/// Any file that the user names, as a document. What is imported, such as a GIF, is the only object
/// of a page of its size.
struct OpenedFile {
    std::unique_ptr<Document> document;
    QStringList warnings; ///< clauses without a full stop
    QString format;       ///< of a file that is not a document, as people call it, such as "GIF"
    std::optional<GifDescriptors> gif;            ///< what a GIF says about itself
    bool isDocument = false;                      ///< a document's file, with pages
    std::unique_ptr<PrivateFolder> privateFolder; ///< of what was imported
    FilmTimes times;                              ///< readable as long as the folder is there

    /// The objects of all pages, from the first page to the last and from bottom to top.
    QList<CBaseObject *> objects() const;

    /// The time in milliseconds for which the file says that each frame is shown; empty when it
    /// says nothing of that, as documents, frame folders and pictures do.
    QVector<int> delaysMs() const { return times.delaysMs(); }
};

/// Opens what the user names as @p path. @throw Failure; see loadDocument() and importMedia().
OpenedFile openFile(const Plugin &plugin, const QString &path, Reading &reading);
