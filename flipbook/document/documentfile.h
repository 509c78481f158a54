#pragma once

#include "flipbook/base/memoryaccount.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/object/plugin.h"
#include "framework/document.h"

#include <QtCore/QStringList>

#include <memory>

class QFile;
class Reading;

/// A document that was read from a file.
struct LoadedDocument {
    std::unique_ptr<Document> document;
    /// What is missing from it, such as pictures; clauses without a full stop.
    QStringList warnings;
};

/// Reads the document in @p file, which the user named as @p path, whole or not at all. What its
/// pictures would need is computed before any is decoded.
/// @throw Failure for a damaged or foreign file, one that refers to files that may not be read, or
/// one that needs more memory than @p reading allows.
LoadedDocument loadDocument(const Plugin &plugin, std::unique_ptr<QFile> file, const QString &path,
                            Reading &reading);

/// The same for the file that the user names as @p path.
LoadedDocument loadDocument(const Plugin &plugin, const QString &path, Reading &reading);

/// Writes @p document to the file at @p path. What was there stays whole until the new file is
/// complete. @throw Failure, also when there is no room in @p memory for its pictures as PNG files
/// and for the file as a whole.
void saveDocument(Document &document, const QString &path,
                  const MemoryAccount &memory = MemoryAccount(),
                  IfExists ifExists = IfExists::Replace);
