#include "framework/basestate.h"
#include "framework/geometrycheck.h"
#include "framework/variantcodec.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

#include <limits>

namespace
{

const QLatin1String ObjectId("ObjectId");
const QLatin1String Editable("Editable");
const QLatin1String Position("Position");
const QLatin1String Size("Size");
const QLatin1String RotateType("RotateType");
const QLatin1String RotateDegree("RotateDegree");
const QLatin1String Mirror("Mirror");
const QLatin1String Flip("Flip");
const QLatin1String Shadow("Shadow");
const QLatin1String Color("Color");
const QLatin1String Offset("Offset");
const QLatin1String OtherParams("OtherParams");

/// A position that no object can have, unless @p json is an array of two numbers.
QPointF pairOf(const QJsonValue &json)
{
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    const QJsonArray numbers = json.toArray();
    return numbers.size() == 2 ? QPointF(numbers[0].toDouble(none), numbers[1].toDouble(none))
                               : QPointF(none, none);
}

void readGeometry(const QJsonObject &json, BaseState &state)
{
    const QPointF pos = pairOf(json.value(Position));
    if (isPlace(pos))
        state.pos = pos;
    const QPointF extent = pairOf(json.value(Size));
    if (isExtent({extent.x(), extent.y()}))
        state.size = {extent.x(), extent.y()};
    const int rotateType = json.value(RotateType).toInt(state.rotateType);
    if (rotateType >= 0 && rotateType <= 2)
        state.rotateType = rotateType;
    const double degree = json.value(RotateDegree).toDouble(state.rotateDegree);
    if (std::isfinite(degree))
        state.rotateDegree = degree;
    state.mirrored = json.value(Mirror).toBool(state.mirrored);
    state.flipped = json.value(Flip).toBool(state.flipped);
}

void readShadow(const QJsonObject &json, BaseState &state)
{
    const QJsonObject shadow = json.value(Shadow).toObject();
    const QColor color(shadow.value(Color).toString());
    const QPointF offset = pairOf(shadow.value(Offset));
    if (!color.isValid() || !isPlace(offset))
        return;
    state.shadowColor = color;
    state.shadowOffset = offset;
}

QMap<QString, QVariant> paramsOf(const QJsonObject &json)
{
    QMap<QString, QVariant> params;
    for (auto member = json.begin(); member != json.end(); ++member) {
        const QVariant value = VariantCodec::fromJson(member.value());
        if (value.isValid())
            params.insert(member.key(), value);
    }
    return params;
}

QJsonObject jsonOfParams(const QMap<QString, QVariant> &params)
{
    QJsonObject json;
    for (auto param = params.begin(); param != params.end(); ++param) {
        if (VariantCodec::canSave(param.value()))
            json.insert(param.key(), VariantCodec::toJson(param.value()));
    }
    return json;
}

} // namespace

void writeBaseState(QJsonObject &json, const BaseState &state)
{
    json.insert(ObjectId, state.objectId);
    json.insert(Editable, state.editable);
    json.insert(Position, QJsonArray{state.pos.x(), state.pos.y()});
    json.insert(Size, QJsonArray{state.size.width(), state.size.height()});
    json.insert(RotateType, state.rotateType);
    json.insert(RotateDegree, state.rotateDegree);
    json.insert(Mirror, state.mirrored);
    json.insert(Flip, state.flipped);
    if (state.shadowColor.isValid()) {
        const QPointF offset = state.shadowOffset;
        json.insert(Shadow, QJsonObject{{Color, state.shadowColor.name(QColor::HexArgb)},
                                        {Offset, QJsonArray{offset.x(), offset.y()}}});
    }
    json.insert(OtherParams, jsonOfParams(state.otherParams));
}

bool readBaseState(const QJsonObject &json, BaseState &state)
{
    state.objectId = json.value(ObjectId).toInt(state.objectId);
    state.editable = json.value(Editable).toBool(state.editable);
    readGeometry(json, state);
    readShadow(json, state);
    if (json.value(OtherParams).isObject())
        state.otherParams = paramsOf(json.value(OtherParams).toObject());
    return json.contains(Position) && json.contains(Size);
}
