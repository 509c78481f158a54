#include "host/baseobject.h"

#include "framework/framework.h"
#include "framework/geometrycheck.h"
#include "framework/page.h"
#include "host/notificationcodes.h"

#include <QtGui/QPainterPath>

CBaseObject::CBaseObject(int objectId, bool editable, QGraphicsItem *parent, IGdPage *page)
    : QGraphicsObject(parent)
    , m_objectId(objectId)
    , m_editable(editable)
{
    setFlag(ItemIsSelectable, editable);
    SetPage(page);
}

CBaseObject::~CBaseObject()
{
    // Before the item leaves its scene, which listeners may hear of and look at the page.
    if (auto *page = qobject_cast<Page *>(scene()))
        page->forget(this);
}

int CBaseObject::objectId() const
{
    return m_objectId;
}

bool CBaseObject::isEditable() const
{
    return m_editable;
}

QRectF CBaseObject::boundingRect() const
{
    // Handles are discs of radius handle size + 2 around the edges; the one for rotation is two
    // handle sizes above the top. One unit more for smooth edges.
    const double side = getHandleSize() + 3.0;
    const double above = 3.0 * getHandleSize() + 3.0;
    const QRectF bounds = m_rect.adjusted(-side, -above, side, side);
    return m_hasLayerEffects ? bounds | m_rect.translated(m_shadowOffset).adjusted(-1, -1, 1, 1)
                             : bounds;
}

QPainterPath CBaseObject::shape() const
{
    QPainterPath path;
    if (m_hasShape)
        path.addRect(m_rect);
    return path;
}

int CBaseObject::type() const
{
    return UserType;
}

void CBaseObject::setSize(QSizeF size, bool keepCenter, bool notify)
{
    const QSizeF growth = size - m_rect.size();
    const QPointF pos =
        keepCenter ? m_pos - QPointF(growth.width() / 2, growth.height() / 2) : m_pos;
    if (!isExtent(size) || !isPlace(pos))
        return;
    geometryAboutToChange();
    m_rect = QRectF(QPointF(0, 0), size);
    m_pos = pos;
    geometryChanged(notify);
}

QGraphicsItem *CBaseObject::GetGraphicsItemPtr() const
{
    return const_cast<CBaseObject *>(this);
}

void CBaseObject::notifyObjPropertyChanged(int id, const QString &value)
{
    // Before the listeners hear of it: one of them may release the object.
    update();
    Q_EMIT Framework::instance().notifier()->propertyChanged(this, id, value);
}

void CBaseObject::geometryAboutToChange()
{
    prepareGeometryChange();
}

void CBaseObject::geometryChanged(bool notify)
{
    QGraphicsItem::setPos(m_pos);
    // Setting an equal value would cost as much as a change.
    if (transformOriginPoint() != m_rect.center())
        setTransformOriginPoint(m_rect.center());
    if (rotation() != getRotate())
        setRotation(getRotate());
    update();
    if (notify)
        notifyObjPropertyChanged(PropertyChange::Geometry, QString());
}
