#pragma once

#include "flipbook/plugin.h"

#include <QtCore/QJsonObject>

class Document;

/// The JSON of a document file: pages, and on each the saved form of every object.
///
///     { "format": "flipbook", "version": 1,
///       "pages": [ { "rect": [x, y, width, height],
///                    "objects": [ { "kind": "animated image", "layer": "normal", "form": {…} } ] }
///                    ] }
///
/// Objects stand from bottom to top. Their pictures are named by digest and travel apart.
namespace DocumentJson
{

/// What the JSON lacks or has wrong.
struct Malformed {
    QString what; ///< a short clause, without a full stop
};

QJsonObject written(const Document &document);

/// Fills @p document, which has no pages yet. @throw Malformed
void read(const QJsonObject &json, const Plugin &plugin, Document &document);

} // namespace DocumentJson
