#pragma once

#include "flipbook/object/plugin.h"
#include "flipbook/window/import/filmreader.h"

#include <vector>

class Document;
class QMimeData;

/// Objects and frames on the clipboard: in a form of flipbook's own, which another flipbook takes,
/// and as a picture for other programs.
namespace Clipboard
{

/// @p objects, which are on pages of @p document, in their stream form.
void copyObjects(Document &document, const QList<CBaseObject *> &objects);
/// The objects of the clipboard, on no page; none when it holds none.
std::vector<OwnedObject> objects(const Plugin &plugin);

void copyFrames(const Plugin::Frames &frames);
/// The frames of the clipboard, which are not decoded; none when it holds none.
QVector<EncodedFrame> frames();

} // namespace Clipboard
