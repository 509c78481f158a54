#pragma once

#include "flipbook/plugin.h"
#include "framework/document.h"

#include <QtCore/QStringList>

/// A document that was read, and what is wrong with it though it could be; clauses without a full
/// stop.
struct OpenedDocument {
    std::unique_ptr<Document> document;
    QStringList warnings;
};

/// Reads the document file at @p path. Either the whole document is there afterwards, but for
/// pictures that the file lacks (their frames are empty), or none of it.
/// @throw Failure when it is no document that can be read, was made by a later version, or would
/// need more than @p maxMemory bytes.
OpenedDocument readDocument(const Plugin &plugin, const QString &path, qint64 maxMemory);

/// Writes @p document to @p path: each distinct picture once. The file appears whole or not at all,
/// also when the machine fails meanwhile; what was there before stays until then.
/// @throw Failure
void writeDocument(Document &document, const QString &path);
