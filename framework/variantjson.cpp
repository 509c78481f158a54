#include "framework/numbertext.h"
#include "framework/variantcodec.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QPointF>
#include <QtCore/QRectF>
#include <QtCore/QSizeF>
#include <QtCore/QStringList>
#include <QtCore/QVector>

#include <cmath>
#include <limits>

namespace
{

/// JSON cannot represent NaN, infinities and negative zero: they are stored as texts.
QJsonValue jsonOfNumber(double number)
{
    const bool plain = std::isfinite(number) && !(number == 0.0 && std::signbit(number));
    return plain ? QJsonValue(number) : QJsonValue(numberText(number));
}

std::optional<double> numberOf(const QJsonValue &json)
{
    if (json.isString())
        return parseNumberText(json.toString());
    return json.isDouble() ? std::optional<double>(json.toDouble()) : std::nullopt;
}

QJsonArray jsonOfNumbers(std::initializer_list<double> numbers)
{
    QJsonArray json;
    for (double number : numbers)
        json.append(jsonOfNumber(number));
    return json;
}

/// Exactly @p count numbers, or none.
QVector<double> numbersOf(const QJsonValue &json, int count)
{
    QVector<double> numbers;
    const QJsonArray elements = json.toArray();
    if (elements.size() != count)
        return {};
    for (const QJsonValue &element : elements) {
        const std::optional<double> number = numberOf(element);
        if (!number)
            return {};
        numbers.append(*number);
    }
    return numbers;
}

/// A whole number that @p Integer can hold, or an invalid value.
template<typename Integer>
QVariant integerOf(const QJsonValue &json)
{
    using Limits = std::numeric_limits<Integer>;
    const double number = json.toDouble(std::numeric_limits<double>::quiet_NaN());
    if (!(number >= double(Limits::min()) && number <= double(Limits::max())) ||
        number != std::floor(number))
        return {};
    return QVariant::fromValue(Integer(number));
}

QVariant longLongOf(const QJsonValue &json)
{
    bool ok = false;
    const qlonglong number = json.toString().toLongLong(&ok);
    return ok ? QVariant(number) : QVariant();
}

QVariant textListOf(const QJsonValue &json)
{
    QStringList texts;
    const QJsonArray elements = json.toArray();
    for (const QJsonValue &element : elements) {
        if (!element.isString())
            return {};
        texts.append(element.toString());
    }
    return json.isArray() ? QVariant(texts) : QVariant();
}

QVariant geometryOf(const QString &name, const QJsonValue &json)
{
    if (name == QLatin1String("QRectF")) {
        const auto numbers = numbersOf(json, 4);
        return numbers.isEmpty() ? QVariant()
                                 : QVariant(QRectF(numbers[0], numbers[1], numbers[2], numbers[3]));
    }
    const auto numbers = numbersOf(json, 2);
    if (numbers.isEmpty())
        return {};
    if (name == QLatin1String("QPointF"))
        return QPointF(numbers[0], numbers[1]);
    if (name == QLatin1String("QSizeF"))
        return QSizeF(numbers[0], numbers[1]);
    return {};
}

QVariant typedValue(const QString &name, const QJsonValue &json)
{
    if (name == QLatin1String("bool"))
        return json.isBool() ? QVariant(json.toBool()) : QVariant();
    if (name == QLatin1String("int"))
        return integerOf<int>(json);
    if (name == QLatin1String("uint"))
        return integerOf<uint>(json);
    if (name == QLatin1String("qlonglong"))
        return longLongOf(json);
    if (name == QLatin1String("double")) {
        const std::optional<double> number = numberOf(json);
        return number ? QVariant(*number) : QVariant();
    }
    if (name == QLatin1String("QString"))
        return json.isString() ? QVariant(json.toString()) : QVariant();
    if (name == QLatin1String("QStringList"))
        return textListOf(json);
    if (name == QLatin1String("QByteArray"))
        return json.isString() ? QVariant(QByteArray::fromBase64(json.toString().toLatin1()))
                               : QVariant();
    return geometryOf(name, json);
}

QJsonValue contentOf(const QVariant &value)
{
    switch (value.userType()) {
    case QMetaType::Bool:
        return value.toBool();
    case QMetaType::Int:
        return value.toInt();
    case QMetaType::UInt:
        return double(value.toUInt());
    case QMetaType::LongLong:
        return QString::number(value.toLongLong());
    case QMetaType::Double:
        return jsonOfNumber(value.toDouble());
    case QMetaType::QString:
        return value.toString();
    case QMetaType::QStringList:
        return QJsonArray::fromStringList(value.toStringList());
    case QMetaType::QPointF:
        return jsonOfNumbers({value.toPointF().x(), value.toPointF().y()});
    case QMetaType::QSizeF:
        return jsonOfNumbers({value.toSizeF().width(), value.toSizeF().height()});
    case QMetaType::QRectF: {
        const QRectF rect = value.toRectF();
        return jsonOfNumbers({rect.x(), rect.y(), rect.width(), rect.height()});
    }
    case QMetaType::QByteArray:
        return QString::fromLatin1(value.toByteArray().toBase64());
    default:
        return {};
    }
}

} // namespace

namespace VariantCodec
{

QJsonValue toJson(const QVariant &value)
{
    return QJsonObject{{QString::fromLatin1(value.typeName()), contentOf(value)}};
}

QVariant fromJson(const QJsonValue &json)
{
    if (json.isBool() || json.isString())
        return json.toVariant();
    if (json.isArray())
        return textListOf(json);
    if (json.isDouble()) {
        const QVariant integer = integerOf<int>(json);
        return integer.isValid() ? integer : QVariant(json.toDouble());
    }
    const QJsonObject object = json.toObject();
    return object.size() == 1 ? typedValue(object.begin().key(), object.begin().value())
                              : QVariant();
}

} // namespace VariantCodec
