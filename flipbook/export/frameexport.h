#pragma once

#include "flipbook/base/memoryaccount.h"

#include <QtCore/QStringList>

#include <functional>

class CBaseObject;
class Document;
class OutputFolder;
class Plugin;

/// Writes the frames of @p object, which is on a page of @p document, into @p folder as PNG
/// files, with a config.json from which they are imported again. The folder is not finished.
/// @p progress is called with the number of frames written. Returns warnings about empty frames.
/// @throw Failure, also if the files that are made at the same time do not fit into @p memory.
QStringList exportFrames(const Plugin &plugin, Document &document, CBaseObject &object,
                         const MemoryAccount &memory, OutputFolder &folder,
                         const std::function<void(int)> &progress);
