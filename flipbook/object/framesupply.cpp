#include "flipbook/object/framesupply.h"

#include "host/baseobject.h"

#include <QtCore/QJsonObject>

/// Objects remember the document that they last belonged to, so it is never destroyed.
FrameSupply &FrameSupply::instance()
{
    static auto *const supply = new FrameSupply;
    return *supply;
}

void FrameSupply::load(CBaseObject &object, QJsonObject &state, const QList<QImage> &pictures)
{
    FrameSupply &supply = instance();
    supply.m_pictures = pictures;
    object.SetPage(&supply);
    object.loadJson(state);
    object.SetPage(nullptr);
    supply.m_pictures.clear();
}

bool FrameSupply::load(CBaseObject &object, QDataStream &state, const QList<QImage> &pictures)
{
    FrameSupply &supply = instance();
    supply.m_pictures = pictures;
    object.SetPage(&supply);
    const bool isLoaded = object.load(state);
    object.SetPage(nullptr);
    supply.m_pictures.clear();
    return isLoaded;
}

IGdDocument *FrameSupply::document() const
{
    return const_cast<FrameSupply *>(this);
}

void FrameSupply::streamImageList(QDataStream &, QList<QImage> &images, QStringList &,
                                  QStringList &, bool saving)
{
    if (!saving)
        images = m_pictures;
}

void FrameSupply::streamFileReference(QDataStream &, QString &path, QString &, bool saving)
{
    if (!saving)
        path.clear();
}

void FrameSupply::jsonImageList(QJsonObject &, QList<QImage> &images, const QString &, bool saving)
{
    if (!saving)
        images = m_pictures;
}

void FrameSupply::jsonFileReference(QJsonObject &, QString &path, const QString &, bool saving)
{
    if (!saving)
        path.clear();
}
