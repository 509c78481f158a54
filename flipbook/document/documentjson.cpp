#include "flipbook/document/documentjson.h"

#include "flipbook/base/failure.h"
#include "flipbook/document/documentlimits.h"
#include "framework/document.h"
#include "framework/page.h"
#include "host/baseobject.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>

#include <cmath>
#include <new>

namespace
{

constexpr int Version = 1;
constexpr double MaxSide = 1e6;

const QLatin1String FormatName("flipbook document");
const QLatin1String Format("format");
const QLatin1String VersionMember("version");
const QLatin1String Pages("pages");
const QLatin1String Rect("rect");
const QLatin1String Objects("objects");
const QLatin1String Kind("kind");
const QLatin1String Layer("layer");
const QLatin1String State("state");
const QLatin1String Background("background");
const QLatin1String Normal("normal");
const QLatin1String AnimatedImage("animated image");

QJsonObject jsonOfObject(CBaseObject &object, bool isBackground)
{
    QJsonObject state;
    // An object saves itself whole unless memory runs out.
    if (!object.saveJson(state))
        throw std::bad_alloc();
    return {
        {Kind, object.getObjName()}, {Layer, isBackground ? Background : Normal}, {State, state}};
}

QJsonObject jsonOfPage(const Page &page)
{
    QJsonArray forms;
    const QList<CBaseObject *> objects = page.objects();
    for (CBaseObject *object : objects)
        forms.append(jsonOfObject(*object, page.placeOf(object).layer == Page::Layer::Background));
    const QRectF rect = page.pageRect();
    return {{Rect, QJsonArray{rect.x(), rect.y(), rect.width(), rect.height()}}, {Objects, forms}};
}

/// Reads the pages and counts what it has read, for the messages and against floods.
class PagesReader
{
public:
    explicit PagesReader(const QString &subject)
        : m_subject(subject)
    {
    }

    QVector<PageForm> read(const QByteArray &json);

private:
    [[noreturn]] void fail(const QString &reason) const;
    void checkHead(const QJsonObject &root) const;
    PageForm page(const QJsonValue &json);
    QRectF rect(const QJsonValue &json) const;
    ObjectForm object(const QJsonValue &json);

    QString m_subject;
    int m_page = 0;
    int m_objects = 0;
};

void PagesReader::fail(const QString &reason) const
{
    throw Failure{m_subject, QStringLiteral("its document.json ") + reason};
}

void PagesReader::checkHead(const QJsonObject &root) const
{
    if (root.value(Format).toString() != FormatName)
        fail(QStringLiteral("is not that of a flipbook document"));
    const int version = root.value(VersionMember).toInt(0);
    if (version < 1)
        fail(QStringLiteral("has no version"));
    if (version > Version)
        fail(QStringLiteral("was written by a later flipbook (version %1; this one reads %2)")
                 .arg(version)
                 .arg(Version));
    if (!root.value(Pages).isArray())
        fail(QStringLiteral("has no \"pages\""));
    if (root.value(Pages).toArray().size() > DocumentLimits::MaxPages)
        fail(QStringLiteral("has more than %1 pages").arg(DocumentLimits::MaxPages));
}

QVector<PageForm> PagesReader::read(const QByteArray &json)
{
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(json, &error);
    if (error.error != QJsonParseError::NoError)
        fail(QStringLiteral("is not JSON: %1 at byte %2")
                 .arg(error.errorString())
                 .arg(error.offset));
    const QJsonObject root = document.object();
    checkHead(root);
    QVector<PageForm> pages;
    const QJsonArray forms = root.value(Pages).toArray();
    for (const QJsonValue &form : forms)
        pages.append(page(form));
    return pages;
}

PageForm PagesReader::page(const QJsonValue &json)
{
    ++m_page;
    PageForm form;
    form.rect = rect(json.toObject().value(Rect));
    const QJsonValue objects = json.toObject().value(Objects);
    if (!objects.isArray())
        fail(QStringLiteral("gives page %1 no \"objects\"").arg(m_page));
    const QJsonArray objectForms = objects.toArray();
    for (const QJsonValue &objectForm : objectForms)
        form.objects.append(object(objectForm));
    return form;
}

QRectF PagesReader::rect(const QJsonValue &json) const
{
    const QJsonArray numbers = json.toArray();
    bool isGood = numbers.size() == 4;
    for (const QJsonValue &number : numbers)
        isGood = isGood && number.isDouble() && std::abs(number.toDouble()) <= MaxSide;
    if (!isGood || numbers[2].toDouble() <= 0 || numbers[3].toDouble() <= 0)
        fail(QStringLiteral("gives page %1 no usable \"rect\"").arg(m_page));
    return QRectF(numbers[0].toDouble(), numbers[1].toDouble(), numbers[2].toDouble(),
                  numbers[3].toDouble());
}

ObjectForm PagesReader::object(const QJsonValue &json)
{
    if (++m_objects > DocumentLimits::MaxObjects)
        fail(QStringLiteral("has more than %1 objects").arg(DocumentLimits::MaxObjects));
    const QJsonObject members = json.toObject();
    const QString kind = members.value(Kind).toString();
    if (kind != AnimatedImage)
        fail(QStringLiteral("has an object of an unknown kind, '%1', on page %2")
                 .arg(kind, QString::number(m_page)));
    if (!members.value(State).isObject())
        fail(QStringLiteral("has an object without \"state\" on page %1").arg(m_page));
    return {members.value(Layer).toString() == Background, members.value(State).toObject()};
}

} // namespace

QByteArray documentJson(Document &document)
{
    QJsonArray pages;
    for (const Page *page : document.pages())
        pages.append(jsonOfPage(*page));
    const QJsonObject root = {{Format, FormatName}, {VersionMember, Version}, {Pages, pages}};
    return QJsonDocument(root).toJson();
}

QVector<PageForm> pagesOfJson(const QByteArray &json, const QString &subject)
{
    return PagesReader(subject).read(json);
}
