#pragma once

#include "flipbook/object/streamform.h"
#include "flipbook/window/import/filmreader.h"

class Document;

/// Objects and frames on the clipboard: in a form of flipbook's own, which another flipbook takes,
/// and as a picture for other programs.
namespace Clipboard
{

/// @p objects, which are on pages of @p document, in their stream form.
void copyObjects(Document &document, const QList<CBaseObject *> &objects);
bool holdsObjects();
/// The objects of the clipboard, of which nothing is decoded. @throw Failure when it is damaged.
QVector<StreamForm> objects();

void copyFrames(const Plugin::Frames &frames);
bool holdsFrames();
/// The frames of the clipboard, which are not decoded. @throw Failure when it is damaged.
QVector<EncodedFrame> frames();

} // namespace Clipboard
