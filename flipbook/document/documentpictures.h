#pragma once

#include "flipbook/document/documentjson.h"

#include <QtCore/QStringList>

class DocumentArchive;
class ImageStore;

/// Puts the pictures that @p pages show from @p archive into @p store, and answers which frames
/// will be empty because their picture is missing or damaged.
/// @throw Failure, with @p subject, when all would need more than @p maxMemory bytes decoded; none
/// is decoded to find out.
QStringList readPictures(const DocumentArchive &archive, const QVector<PageForm> &pages,
                         qint64 maxMemory, const QString &subject, ImageStore &store);
