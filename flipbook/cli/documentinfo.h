#pragma once

#include "flipbook/object/objectsummary.h"

#include <QtCore/QJsonObject>
#include <QtCore/QStringList>

class Document;

/// The pages of a document and the figures of their objects, as lines of text.
QStringList documentLines(const Plugin &plugin, const Document &document, Pixels pixels);

/// The same for programs: "pages", each with "width", "height" and "objects"; each of these with
/// the members that a film has, and "name", "layer", "x", "y", "shownWidth", "shownHeight".
QJsonObject documentInfo(const Plugin &plugin, const Document &document, Pixels pixels);
