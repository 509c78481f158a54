#include "flipbook/document/formmemory.h"

#include <QtCore/QJsonArray>

namespace
{

// Measured, and rounded up.
constexpr qint64 BytesPerPage = qint64(32) << 10;

/// Whether the object would read @p value, a number or an object that holds one, as the type of a
/// background. What is neither may be read as anything.
bool isBackgroundType(const QJsonValue &value)
{
    const QJsonObject object = value.toObject();
    const QJsonValue plain = object.size() == 1 ? object.begin().value() : value;
    if (!plain.isDouble())
        return !plain.isUndefined();
    // It rounds to 1.
    return plain.toDouble() >= 0.5 && plain.toDouble() < 1.5;
}

} // namespace

qint64 FormMemory::ofObjects(const QVector<PageForm> &pages)
{
    qint64 objects = 0;
    for (const PageForm &page : pages)
        objects += page.objects.size();
    return pages.size() * BytesPerPage + objects * BytesPerObject;
}

QSizeF FormMemory::backgroundSize(const QJsonObject &state)
{
    const QJsonObject params = state.value(QLatin1String("OtherParams")).toObject();
    if (!isBackgroundType(params.value(QLatin1String("animatedType"))))
        return QSizeF();
    const QJsonArray size = state.value(QLatin1String("Size")).toArray();
    // Without a size, a new object keeps its own.
    constexpr double side = 100.0;
    return QSizeF(qMax(0.0, size.at(0).toDouble(side)), qMax(0.0, size.at(1).toDouble(side)));
}
