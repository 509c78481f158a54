#include "framework/basestate.h"
#include "host/baseobject.h"

#include <QtCore/QDataStream>

BaseState CBaseObject::state() const
{
    return {m_objectId, m_editable, m_pos,         m_rect.size(),  m_rotateType, m_rotateDegree,
            m_mirrored, m_flipped,  m_shadowColor, m_shadowOffset, m_otherParams};
}

void CBaseObject::restore(const BaseState &state)
{
    geometryAboutToChange();
    m_objectId = state.objectId;
    m_editable = state.editable;
    setFlag(ItemIsSelectable, m_editable);
    m_otherParams = state.otherParams;
    m_pos = state.pos;
    m_rect = QRectF(QPointF(0, 0), state.size);
    m_rotateType = state.rotateType;
    m_rotateDegree = state.rotateDegree;
    m_mirrored = state.mirrored;
    m_flipped = state.flipped;
    setLayerShadow(state.shadowColor, state.shadowOffset);
    geometryChanged(false);
}

bool CBaseObject::save(QDataStream &stream)
{
    writeBaseState(stream, state());
    return true;
}

bool CBaseObject::load(QDataStream &stream)
{
    BaseState read = state();
    const bool whole = readBaseState(stream, read);
    restore(read);
    return whole;
}

bool CBaseObject::saveJson(QJsonObject &json)
{
    writeBaseState(json, state());
    return true;
}

bool CBaseObject::loadJson(QJsonObject &json)
{
    BaseState read = state();
    const bool whole = readBaseState(json, read);
    restore(read);
    return whole;
}
