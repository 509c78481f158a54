#pragma once

#include "framework/frameworkglobal.h"
#include "host/gdpage.h"

#include <QtCore/QHash>
#include <QtGui/QImage>
#include <QtWidgets/QGraphicsScene>

class CBaseObject;
class Document;

/// A page of a document, with two layers of objects: the background below the normal one.
/// It owns its objects. Their bounds may switch with the document's mode, so the scene keeps no
/// index of them. Objects that are released by others leave the page by themselves; the undo
/// commands are then dropped, since they may know the object.
class FRAMEWORK_API Page : public QGraphicsScene, public IGdPage
{
    Q_OBJECT

public:
    enum class Layer { Normal, Background };

    /// The place of an object: its layer, and how many objects of that layer are below it. By
    /// default the lowest of the normal layer.
    struct Place {
        Layer layer = Layer::Normal;
        int index = 0;
    };

    /// @p document may be null; it does not take the page over (Document::addPage() does).
    /// @p rect is the page's rectangle in page coordinates.
    explicit Page(const QRectF &rect, Document *document = nullptr);
    /// Drops the undo commands, unless the page was taken out of its document, and releases the
    /// objects.
    ~Page() override;

    QRectF pageRect() const override;
    /// An invalid or infinite rectangle is ignored.
    void setPageRect(const QRectF &rect);
    IGdDocument *document() const override;

    /// The handles of the two layers are numbers of this page alone, never 0.
    qint64 queryObject(CGDRootObject *object, int code) override;
    void applyObject(int operation, qint64 handle, const QList<CGDRootObject *> &objects,
                     bool undoable, const QString &text, bool refresh) override;

    /// Takes ownership of @p object and puts it on top of @p layer, away from the page or parent
    /// item where it was. Null, or an object that is here already, is ignored.
    void addObject(CBaseObject *object, Layer layer = Layer::Normal);
    /// Gives @p object away: the caller owns it, and it is on no page. Null when it was not here.
    CBaseObject *takeObject(CBaseObject *object);
    /// Drops the undo commands, which may know the object, and releases it; a command may do so
    /// too. An object that is not here is ignored.
    void destroyObject(CBaseObject *object);

    /// From bottom to top.
    QList<CBaseObject *> objects() const;
    bool holds(const CBaseObject *object) const;
    /// Those that the user has selected, from bottom to top.
    QList<CBaseObject *> selectedObjects() const;
    /// Selects these objects alone; those that are not here or not editable are left out.
    void selectObjects(const QList<CBaseObject *> &objects);
    /// The topmost editable object at @p point, in page coordinates: one that shows a pixel there
    /// goes before one whose rectangle is only transparent there. Null when there is none.
    CBaseObject *objectAt(const QPointF &point) const;

    /// The place of @p object, which must be on this page.
    Place placeOf(const CBaseObject *object) const;
    /// Moves an object of this page; an index outside the layer counts as its nearest end. Not
    /// undoable by itself.
    void placeObject(CBaseObject *object, Place place);

    /// The page as the user sees it, @p scale pixels for each unit. Null for a scale that is not
    /// a positive number or gives a picture of more than 2^28 pixels.
    QImage rendered(double scale = 1.0, const QColor &paper = Qt::white);

private:
    friend class CBaseObject;
    friend class Document;

    /// Called by a dying object, of which only the base is left.
    void forget(CBaseObject *object);

    /// The layer of an object, and its order there: it is above all objects of a lower order.
    struct Entry {
        Layer layer;
        int order;
    };

    QList<CBaseObject *> &layer(Layer layer);
    const QList<CBaseObject *> &layer(Layer layer) const;
    bool isNext(const CBaseObject *object) const;
    void releaseObjects();
    int indexOf(const CBaseObject *object) const;
    bool removeFromLayers(CBaseObject *object);
    int orderOnTop(Layer layer) const;
    void append(CBaseObject *object, Layer layer);
    void restack(Layer layer);
    qint64 handleOf(Layer layer) const;
    QList<CBaseObject *> movable(const QList<CGDRootObject *> &objects, Layer target) const;

    QRectF m_rect;
    Document *m_document;
    bool m_isTaken = false; ///< out of its document, kept by an undo command
    QList<CBaseObject *> m_normal;
    QList<CBaseObject *> m_background;
    QHash<const CBaseObject *, Entry> m_entries;
    /// Where an object was found last. Who goes through all objects is told without the table of
    /// entries, which does not fit into the caches for large pages.
    mutable Place m_found;
};
