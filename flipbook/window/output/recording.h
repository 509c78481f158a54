#pragma once

#include <functional>

class Document;
class OutputFolder;
class Page;

/// Plays @p page of @p document for @p seconds and writes 25 pictures a second into @p folder,
/// which is not finished. @p progress hears how many of how many are written; what it throws ends
/// the recording.
/// @throw Failure
void recordPage(Document &document, Page &page, OutputFolder &folder, double seconds,
                const std::function<void(int done, int all)> &progress);
