#pragma once

#include "flipbook/document/documentfile.h"
#include "flipbook/import/gifdescriptors.h"

#include <optional>

/// Any file that the user names, as a document. A GIF, a frame folder or a picture is the only
/// object of a page of its size.
struct OpenedFile {
    std::unique_ptr<Document> document;
    QStringList warnings;              ///< clauses without a full stop
    std::optional<GifDescriptors> gif; ///< what a GIF says about itself
    bool isDocument = false;           ///< a document's file, with pages

    /// The objects of all pages, from the first page to the last and from bottom to top.
    QList<CBaseObject *> objects() const;
};

/// Opens what the user names as @p path. @throw Failure; see loadDocument() and importMedia().
OpenedFile openFile(const Plugin &plugin, const QString &path, Reading &reading);
