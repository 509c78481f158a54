#pragma once

#include "host/hostglobal.h"

#include <QtCore/QList>
#include <QtCore/QRectF>
#include <QtCore/QString>

class CGDRootObject;
class IGdDocument;

/// A page, which holds canvas objects. Owned by its document.
class HOST_API IGdPage
{
public:
    virtual ~IGdPage() = default;

    /// The page's rectangle in page coordinates, the coordinates of CGDRootObject::getPos().
    virtual QRectF pageRect() const = 0;

    /// The document that the page belongs to, or null.
    virtual IGdDocument *document() const = 0;

    /// The handle of a layer of this page for @p object: code 2 asks for the background layer,
    /// code 0 for the normal one. An unknown code gives 0, the handle of no layer.
    virtual qint64 queryObject(CGDRootObject *object, int code) = 0;

    /// Applies operation @p operation to @p objects; 0 is the only operation: move them to the
    /// layer @p handle. @p undoable records the move on the undo stack under @p text (or the
    /// host's own text when that is empty); @p refresh repaints. An unknown operation or handle,
    /// or an object that is not on this page, is left alone.
    virtual void applyObject(int operation, qint64 handle, const QList<CGDRootObject *> &objects,
                             bool undoable, const QString &text, bool refresh) = 0;
};
