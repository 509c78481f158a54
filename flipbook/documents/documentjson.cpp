#include "flipbook/documents/documentjson.h"

#include "framework/document.h"
#include "framework/page.h"

#include <QtCore/QJsonArray>

namespace DocumentJson
{

namespace
{

constexpr int Version = 1;

const QLatin1String FormatMember("format");
const QLatin1String FormatName("flipbook");
const QLatin1String VersionMember("version");
const QLatin1String PagesMember("pages");
const QLatin1String RectMember("rect");
const QLatin1String ObjectsMember("objects");
const QLatin1String KindMember("kind");
const QLatin1String AnimatedImageKind("animated image");
const QLatin1String LayerMember("layer");
const QLatin1String NormalLayer("normal");
const QLatin1String BackgroundLayer("background");
const QLatin1String FormMember("form");

QJsonObject objectJson(const Page &page, CBaseObject &object)
{
    QJsonObject form;
    object.saveJson(form);
    const bool isBackground = page.placeOf(&object).layer == Page::Layer::Background;
    return {{KindMember, object.getObjName()},
            {LayerMember, isBackground ? BackgroundLayer : NormalLayer},
            {FormMember, form}};
}

QJsonObject pageJson(const Page &page)
{
    QJsonArray objects;
    const QList<CBaseObject *> all = page.objects();
    for (CBaseObject *object : all)
        objects.append(objectJson(page, *object));
    const QRectF rect = page.pageRect();
    return {{RectMember, QJsonArray{rect.x(), rect.y(), rect.width(), rect.height()}},
            {ObjectsMember, objects}};
}

QJsonArray neededArray(const QJsonObject &json, QLatin1String member, const QString &where)
{
    if (!json.value(member).isArray())
        throw Malformed{QStringLiteral("%1 has no list \"%2\"").arg(where, member)};
    return json.value(member).toArray();
}

QJsonObject neededObject(const QJsonValue &value, const QString &what)
{
    if (!value.isObject())
        throw Malformed{QStringLiteral("%1 is no object").arg(what)};
    return value.toObject();
}

QRectF readRect(const QJsonObject &json, const QString &where)
{
    const QJsonArray numbers = neededArray(json, RectMember, where);
    const QRectF rect(numbers.at(0).toDouble(), numbers.at(1).toDouble(), numbers.at(2).toDouble(),
                      numbers.at(3).toDouble());
    if (numbers.size() != 4 || rect.isEmpty())
        throw Malformed{QStringLiteral("%1 has no area").arg(where)};
    return rect;
}

void readObject(const QJsonObject &json, const QString &where, const Plugin &plugin, Page &page)
{
    if (json.value(KindMember).toString() != AnimatedImageKind)
        throw Malformed{QStringLiteral("%1 is of a kind that is not known").arg(where)};
    QJsonObject form = neededObject(json.value(FormMember), where + QLatin1String(": its form"));
    const bool isBackground = json.value(LayerMember).toString() == BackgroundLayer;
    CBaseObject *object = plugin.createObject().release();
    // It must stand on the page before it reads: its document has the pictures.
    page.addObject(object, isBackground ? Page::Layer::Background : Page::Layer::Normal);
    object->loadJson(form);
}

} // namespace

QJsonObject written(const Document &document)
{
    QJsonArray pages;
    for (const Page *page : document.pages())
        pages.append(pageJson(*page));
    return {{FormatMember, FormatName}, {VersionMember, Version}, {PagesMember, pages}};
}

void read(const QJsonObject &json, const Plugin &plugin, Document &document)
{
    if (json.value(FormatMember).toString() != FormatName)
        throw Malformed{QStringLiteral("it is not of the format \"flipbook\"")};
    if (json.value(VersionMember).toInt() != Version)
        throw Malformed{QStringLiteral("it is of version %1, and only version %2 is known")
                            .arg(json.value(VersionMember).toVariant().toString())
                            .arg(Version)};
    const QJsonArray pages = neededArray(json, PagesMember, QStringLiteral("the document"));
    for (int i = 0; i < pages.size(); ++i) {
        const QString pageName = QStringLiteral("page %1").arg(i + 1);
        const QJsonObject pageJson = neededObject(pages.at(i), pageName);
        Page *page = document.addPage(readRect(pageJson, pageName));
        const QJsonArray objects = neededArray(pageJson, ObjectsMember, pageName);
        for (int k = 0; k < objects.size(); ++k) {
            const QString where = QStringLiteral("%1, object %2").arg(pageName).arg(k + 1);
            readObject(neededObject(objects.at(k), where), where, plugin, *page);
        }
    }
}

} // namespace DocumentJson
