#pragma once

#include "flipbook/document/documentjson.h"

#include <QtCore/QStringList>

class DocumentArchive;
class ImageStore;
class MemoryAccount;

/// Puts the pictures that @p pages show from @p archive into @p store, and answers which frames
/// will be empty because their picture is missing or damaged: what cannot be decoded safely is
/// taken out of @p pages. What they are going to take when they are decoded is counted in @p
/// memory.
/// @throw Failure, with @p subject, when that is more than there is; none is decoded to find out.
QStringList readPictures(const DocumentArchive &archive, QVector<PageForm> &pages,
                         MemoryAccount &memory, const QString &subject, ImageStore &store);
