#pragma once

#include "flipbook/import/gifdescriptors.h"
#include "flipbook/object/objectsummary.h"

#include <optional>

/// The figures of an object as lines of text, each with its label. @p gif, for an object that was
/// just imported from a GIF, adds what the file says otherwise.
QStringList infoLines(const ObjectSummary &summary, const std::optional<GifDescriptors> &gif);
