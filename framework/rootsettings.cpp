#include "framework/framework.h"
#include "host/gdrootobject.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QLocale>

namespace
{

QJsonObject setting(const QString &id, const QString &nameId, const QString &kind)
{
    QJsonObject json;
    json.insert(QStringLiteral("id"), id);
    json.insert(QStringLiteral("nameId"), nameId);
    json.insert(QStringLiteral("label"), Framework::instance().translated(nameId, nameId));
    json.insert(QStringLiteral("kind"), kind);
    return json;
}

/// Inserts the texts of @p members that are not empty.
void insertTexts(QJsonObject &json, const QJsonObject &members)
{
    for (auto member = members.begin(); member != members.end(); ++member) {
        if (!member.value().toString().isEmpty())
            json.insert(member.key(), member.value());
    }
}

/// The text of a setting's value; false when @p value is of a kind that no setting has.
bool readSettingValue(const QJsonValue &value, QString &text)
{
    if (value.isString())
        text = value.toString();
    else if (value.isBool())
        text = value.toBool() ? QStringLiteral("true") : QStringLiteral("false");
    else if (value.isDouble())
        text = QString::number(value.toDouble(), 'f', QLocale::FloatingPointShortest);
    else
        return false;
    return true;
}

} // namespace

bool CGDRootObject::GetSettingJson(QString &)
{
    return false;
}

bool CGDRootObject::SetSettingJson(const QString &, bool, bool)
{
    return false;
}

QJsonObject CGDRootObject::GetSettingJsonSwitch(QString &id, QString &nameId, bool value)
{
    QJsonObject json = setting(id, nameId, QStringLiteral("switch"));
    json.insert(QStringLiteral("value"), value);
    return json;
}

QJsonObject CGDRootObject::GetSettingJsonInput(QString &id, QString &nameId, QString &value,
                                               QString &type, QString &minimum, QString &maximum,
                                               QString &unit)
{
    QJsonObject json = setting(id, nameId, QStringLiteral("input"));
    json.insert(QStringLiteral("value"), value);
    insertTexts(json, QJsonObject{{QStringLiteral("type"), type},
                                  {QStringLiteral("minimum"), minimum},
                                  {QStringLiteral("maximum"), maximum},
                                  {QStringLiteral("unit"), unit}});
    return json;
}

bool CGDRootObject::ParseSettingJson(const QString &json, QMap<QString, QString> &values)
{
    const QJsonObject answer = QJsonDocument::fromJson(json.toUtf8()).object();
    const QJsonValue settings = answer.value(QLatin1String("settings"));
    if (!settings.isArray())
        return false;
    QMap<QString, QString> parsed;
    const QJsonArray elements = settings.toArray();
    for (const QJsonValue &element : elements) {
        const QJsonValue id = element.toObject().value(QLatin1String("id"));
        QString text;
        if (!id.isString() ||
            !readSettingValue(element.toObject().value(QLatin1String("value")), text))
            return false;
        parsed.insert(id.toString(), text);
    }
    values = parsed;
    return true;
}
