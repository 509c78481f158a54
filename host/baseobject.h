#pragma once

#include "host/gdrootobject.h"

#include <QtGui/QColor>
#include <QtGui/QImage>
#include <QtWidgets/QGraphicsObject>

struct BaseState;

/// Why a cached picture of an object with layer effects is dropped.
enum class ClearLayerEffectCacheReason {
    EffectChanged = 0,
    GeometryChanged = 1,
    ContentChanged = 2,
};

/// A canvas object on a Qt graphics scene. Owned by the host: by the page that holds it, or by
/// whoever made it while it is on no page; freed with Release().
class HOST_API CBaseObject : public QGraphicsObject, public CGDRootObject
{
    Q_OBJECT

public:
    /// @p objectId is the host's number of the object, kept in both saved forms; @p editable says
    /// whether the user may select and move it while the document is edited. @p parent, when not
    /// null, owns the object as its child item. @p page may be null.
    CBaseObject(int objectId, bool editable, QGraphicsItem *parent, IGdPage *page);
    ~CBaseObject() override;

    int objectId() const;
    bool isEditable() const;

    /// Item coordinates; wide enough for the handles and the layer effect.
    QRectF boundingRect() const override;
    QPainterPath shape() const override;
    int type() const override;

    /// Calls OnQPainterDraw() with mirror and flip applied around the centre of the object, and
    /// the layer effect beneath it. The item itself applies the rotation.
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;

    bool save(QDataStream &stream) override;
    bool load(QDataStream &stream) override;
    bool saveJson(QJsonObject &json) override;
    bool loadJson(QJsonObject &json) override;
    void setSize(QSizeF size, bool keepCenter, bool notify) override;
    using CGDRootObject::setPos;

    /// This object as an item of its scene. Never null.
    QGraphicsItem *GetGraphicsItemPtr() const;

    /// Tells the host that the property @p id (see PropertyChange) has a new value, and has the
    /// object repainted with the next event. A listener may release the object: the caller must
    /// expect it to be gone afterwards.
    void notifyObjPropertyChanged(int id, const QString &value);

    /// Gives the object a drop shadow, its layer effect, at @p offset in item units. An invalid
    /// colour removes it.
    void setLayerShadow(const QColor &color, const QPointF &offset);

    /// Drops the cached picture of an object with layer effects.
    void clearLayerEffectCache(ClearLayerEffectCacheReason reason);

protected:
    void geometryAboutToChange() override;
    void geometryChanged(bool notify) override;

private:
    BaseState state() const;
    void restore(const BaseState &state);
    void paintContent(QPainter *painter);
    void paintShadow(QPainter *painter);

    int m_objectId;
    bool m_editable;
    QColor m_shadowColor;
    QPointF m_shadowOffset;
    QImage m_shadowCache;
};
