#include "host/attributeids.h"
#include "host/gdrootobject.h"

#include <QtWidgets/QGraphicsItem>

CGDRootObject::CGDRootObject() = default;

CGDRootObject::~CGDRootObject() = default;

QString CGDRootObject::getObjName()
{
    return m_objName;
}

void CGDRootObject::OnQPainterDraw(QPainter *) {}

bool CGDRootObject::SetAttribute(int id, QDataStream &, bool)
{
    return id == AttributeId::EnterAlternateMode || id == AttributeId::LeaveAlternateMode;
}

bool CGDRootObject::loadFromImage(const QImage *)
{
    return false;
}

bool CGDRootObject::loadFromFile(const QString &)
{
    return false;
}

bool CGDRootObject::loadFromFile(const QString &, QIODevice *)
{
    return false;
}

void CGDRootObject::Release()
{
    delete this;
}

QSize CGDRootObject::getImageSize()
{
    return {0, 0};
}

bool CGDRootObject::GetSpecialProperty(int, QDataStream &)
{
    return false;
}

bool CGDRootObject::SetSpecialProperty(int, QDataStream &, bool)
{
    // An override passes requests on after it has carried them out, and not all of them announce
    // that something else is shown.
    if (auto *item = dynamic_cast<QGraphicsItem *>(this))
        item->update();
    return false;
}

QJsonArray CGDRootObject::generateCostumesCode(const QString &)
{
    return {};
}

bool CGDRootObject::setOtherParams(const QString &key, const QVariant &value)
{
    if (!value.isValid())
        return m_otherParams.remove(key) > 0;
    const QVariant old = m_otherParams.value(key);
    // Values of two types may compare equal, 1 and "1" for instance, and are yet not the same.
    if (old.userType() == value.userType() && old == value)
        return false;
    m_otherParams.insert(key, value);
    return true;
}

QVariant CGDRootObject::getOtherParams(const QString &key) const
{
    return m_otherParams.value(key);
}

IGdPage *CGDRootObject::GetPage() const
{
    return m_page;
}

void CGDRootObject::SetPage(IGdPage *page)
{
    m_page = page;
}

int CGDRootObject::getStatus() const
{
    return m_status;
}

void CGDRootObject::setStatus(int status)
{
    m_status = status;
}
