#pragma once

#include <QtCore/QString>

#include <functional>

class Document;
class Page;

/// Plays @p page of @p document for @p seconds and writes 25 pictures a second into @p folder,
/// which is empty. @p progress hears how many of how many are written; what it throws ends the
/// recording.
/// @throw Failure
void recordPage(Document &document, Page &page, const QString &folder, double seconds,
                const std::function<void(int done, int all)> &progress);
