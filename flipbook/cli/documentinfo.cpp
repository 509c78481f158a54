#include "flipbook/cli/documentinfo.h"

#include "flipbook/cli/infotext.h"
#include "framework/document.h"
#include "framework/page.h"

#include <QtCore/QJsonArray>

namespace
{

bool isBackground(const Page &page, const CBaseObject *object)
{
    return page.placeOf(object).layer == Page::Layer::Background;
}

QString objectLine(const Page &page, CBaseObject &object, int number)
{
    const QPointF place = object.getPos();
    const QSizeF size = object.getSize();
    const double angle = object.getRotate();
    const QString turn =
        angle == 0.0 ? QString() : QStringLiteral(", rotated by %1 degrees").arg(angle);
    return QStringLiteral("  object %1, \"%2\", %3 x %4 at (%5, %6)%7")
        .arg(QString::number(number), AnimatedObject(object).name(), QString::number(size.width()),
             QString::number(size.height()), QString::number(place.x()), QString::number(place.y()),
             turn +
                 (isBackground(page, &object) ? QStringLiteral(", in the background") : QString()));
}

QJsonObject jsonOfObject(const Plugin &plugin, const Page &page, CBaseObject &object, Pixels pixels)
{
    QJsonObject json = toJson(summarise(plugin, object, pixels));
    json[QStringLiteral("name")] = AnimatedObject(object).name();
    json[QStringLiteral("layer")] =
        isBackground(page, &object) ? QStringLiteral("background") : QStringLiteral("normal");
    json[QStringLiteral("x")] = object.getPos().x();
    json[QStringLiteral("y")] = object.getPos().y();
    json[QStringLiteral("shownWidth")] = object.getSize().width();
    json[QStringLiteral("shownHeight")] = object.getSize().height();
    json[QStringLiteral("rotation")] = object.getRotate();
    return json;
}

} // namespace

QStringList documentLines(const Plugin &plugin, const Document &document, Pixels pixels)
{
    QStringList lines;
    int pageNumber = 0;
    int number = 0;
    for (const Page *page : document.pages()) {
        const QRectF rect = page->pageRect();
        const QList<CBaseObject *> objects = page->objects();
        lines << QStringLiteral("page %1, %2 x %3")
                     .arg(++pageNumber)
                     .arg(rect.width())
                     .arg(rect.height());
        for (CBaseObject *object : objects) {
            lines << objectLine(*page, *object, ++number);
            const QStringList figures = infoLines(summarise(plugin, *object, pixels), {});
            for (const QString &figure : figures)
                lines << QStringLiteral("  ") + figure;
        }
    }
    return lines;
}

QJsonObject documentInfo(const Plugin &plugin, const Document &document, Pixels pixels)
{
    QJsonArray pages;
    for (const Page *page : document.pages()) {
        QJsonArray forms;
        const QList<CBaseObject *> objects = page->objects();
        for (CBaseObject *object : objects)
            forms.append(jsonOfObject(plugin, *page, *object, pixels));
        pages.append(QJsonObject{{QStringLiteral("width"), page->pageRect().width()},
                                 {QStringLiteral("height"), page->pageRect().height()},
                                 {QStringLiteral("objects"), forms}});
    }
    return {{QStringLiteral("pages"), pages}};
}
