#pragma once

#include "flipbook/object/plugin.h"
#include "framework/document.h"

#include <QtCore/QStringList>

#include <memory>

/// A document that was read from a file.
struct LoadedDocument {
    std::unique_ptr<Document> document;
    /// What is missing from it, such as pictures; clauses without a full stop.
    QStringList warnings;
};

/// Reads the document at @p path, whole or not at all. What its pictures would need is worked out
/// before any is decoded.
/// @throw Failure for a damaged or foreign file, or one that needs more than @p maxMemory bytes.
LoadedDocument loadDocument(const Plugin &plugin, const QString &path, qint64 maxMemory);

/// Writes @p document to the file at @p path. What was there stays whole until the new file is
/// complete. @throw Failure
void saveDocument(Document &document, const QString &path);
