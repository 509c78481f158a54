#include "flipbook/editing/objectoperation.h"

#include "flipbook/base/memorybudget.h"
#include "flipbook/base/reading.h"
#include "flipbook/editing/frameeditor.h"
#include "flipbook/editing/keeptiming.h"
#include "flipbook/editing/operationvalue.h"
#include "flipbook/import/framenames.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/object/formkeys.h"
#include "framework/document.h"
#include "framework/objecthandles.h"
#include "framework/page.h"

#include <algorithm>
#include <cmath>

namespace ObjectOperation
{

namespace
{

namespace Value = OperationValue;

void check(const ObjectGeometry &geometry)
{
    for (const double side : {geometry.size.width(), geometry.size.height()}) {
        if (!(side >= Value::ShortestSide && side <= Value::Farthest))
            throw EditRefused{QStringLiteral("the object would be %1 x %2; a side is %3 to %4")
                                  .arg(QString::number(geometry.size.width()),
                                       QString::number(geometry.size.height()),
                                       QString::number(Value::ShortestSide),
                                       QString::number(Value::Farthest))};
    }
}

/// An operation that gives the object the geometry that @p change makes of its own.
template<typename Change>
Apply changingGeometry(const Change &change)
{
    return [change](EditTarget &target) {
        CBaseObject &object = target.chosen();
        ObjectGeometry geometry = ObjectHandles::geometryOf(object);
        change(geometry, target);
        check(geometry);
        if (target.pageOfChosen().placeOf(&object).layer == Page::Layer::Background)
            target.requireBackground(geometry.size);
        ObjectHandles::setGeometry(object, geometry);
    };
}

/// An operation that gives the object another place among those of its layer. @p placeOf returns
/// the index for an object at @p index of @p count.
template<typename PlaceOf>
Apply stacking(const PlaceOf &placeOf)
{
    return [placeOf](EditTarget &target) {
        CBaseObject &object = target.chosen();
        Page &page = target.pageOfChosen();
        Page::Place place = page.placeOf(&object);
        const QList<CBaseObject *> all = page.objects();
        const auto count = std::count_if(all.begin(), all.end(), [&](const CBaseObject *each) {
            return page.placeOf(each).layer == place.layer;
        });
        place.index = placeOf(place.index, int(count));
        page.placeObject(&object, place);
    };
}

Page &neededPage(const EditTarget &target)
{
    if (!target.page)
        throw EditRefused{QStringLiteral("the document has no pages")};
    return *target.page;
}

QList<CBaseObject *> objectsOf(const Document &document)
{
    QList<CBaseObject *> objects;
    for (const Page *page : document.pages())
        objects += page->objects();
    return objects;
}

int freeId(const Document &document)
{
    int id = 0;
    const QList<CBaseObject *> objects = objectsOf(document);
    for (const CBaseObject *object : objects)
        id = std::max(id, object->objectId());
    return id + 1;
}

/// The object is one of the page already.
void keepTiming(EditTarget &target, const ImportedMedia &media, const QString &path)
{
    const QVector<int> delays = media.delaysMs();
    if (!isUneven(delays))
        return;
    if (target.keepsTiming)
        target.object = repeatFrames(target.plugin, target.pageOfChosen(), target.chosen(),
                                     planRepeats(delays), path);
    else
        target.warnings << QStringLiteral("%1: its frames have different durations, but here each "
                                          "is shown for %2 ms; --keep-timing preserves the timing "
                                          "by repeating frames")
                               .arg(path)
                               .arg(AnimatedObject(target.chosen()).intervalMs());
}

} // namespace

Apply moveTo(const QString &value)
{
    const QPointF place = Value::place(value);
    return changingGeometry(
        [place](ObjectGeometry &geometry, const EditTarget &) { geometry.pos = place; });
}

Apply resize(const QString &value)
{
    const QSizeF size = Value::size(value);
    return changingGeometry(
        [size](ObjectGeometry &geometry, const EditTarget &) { geometry.size = size; });
}

Apply scale(const QString &value)
{
    constexpr double most = 1000.0;
    const double factor = Value::real(value, 1.0 / most, most);
    return changingGeometry(
        [factor](ObjectGeometry &geometry, const EditTarget &) { geometry.size *= factor; });
}

Apply rotate(const QString &value)
{
    constexpr double wholeTurn = 360.0;
    const double angle = Value::real(value, -wholeTurn, wholeTurn);
    return changingGeometry([angle](ObjectGeometry &geometry, const EditTarget &) {
        geometry.angle = std::fmod(geometry.angle + angle + wholeTurn, wholeTurn);
    });
}

Apply fitPage(const QString &)
{
    return changingGeometry([](ObjectGeometry &geometry, const EditTarget &target) {
        const QRectF rect = target.pageOfChosen().pageRect();
        geometry = {rect.topLeft(), rect.size(), 0.0};
    });
}

Apply rename(const QString &value)
{
    return [value](EditTarget &target) {
        QStringList names;
        const Plugin::Frames frames = target.plugin.frames(target.chosen());
        for (const auto &frame : frames)
            names << frame.first;
        target.chosen().setOtherParams(FormKey::ObjectName, value);
        // The object has named its frames after itself.
        FrameNames::assign(target.chosen(), names);
    };
}

Apply setPageSize(const QString &value)
{
    const QSizeF size = Value::size(value);
    return [size](EditTarget &target) {
        Page &page = neededPage(target);
        page.setPageRect(QRectF(page.pageRect().topLeft(), size));
    };
}

Apply choose(const QString &value)
{
    const int number = Value::number(value, 1);
    return [number](EditTarget &target) {
        const QList<CBaseObject *> objects = objectsOf(target.document);
        if (number > objects.size())
            throw EditRefused{QStringLiteral("there is no object %1 (the last is %2)")
                                  .arg(number)
                                  .arg(objects.size())};
        target.object = objects.at(number - 1);
        if (!target.isPageChosen)
            target.page = &target.pageOfChosen();
    };
}

Apply add(const QString &value)
{
    return [path = Value::fileName(value)](EditTarget &target) {
        Page &page = neededPage(target);
        ImportedMedia media =
            importMedia(target.plugin, path, target.reading, freeId(target.document));
        for (const QString &warning : qAsConst(media.warnings))
            target.warnings << path + QStringLiteral(": ") + warning;
        target.object = media.object.release();
        page.addObject(target.object);
        const QSizeF size = target.object->getSize();
        const QPointF corner =
            page.pageRect().center() - QPointF(size.width() / 2, size.height() / 2);
        target.object->setPos(QPointF(std::round(corner.x()), std::round(corner.y())), false);
        keepTiming(target, media, path);
    };
}

Apply remove(const QString &)
{
    return [](EditTarget &target) {
        target.pageOfChosen().destroyObject(&target.chosen());
        target.object = nullptr;
        target.whyNone =
            QStringLiteral("the object has been removed; choose another with --object");
    };
}

Apply raise(const QString &)
{
    return stacking([](int index, int count) {
        if (index + 1 == count)
            throw EditRefused{QStringLiteral("the object is at the top")};
        return index + 1;
    });
}

Apply lower(const QString &)
{
    return stacking([](int index, int) {
        if (index == 0)
            throw EditRefused{QStringLiteral("the object is at the bottom")};
        return index - 1;
    });
}

Apply raiseToTop(const QString &)
{
    return stacking([](int, int count) { return count - 1; });
}

Apply lowerToBottom(const QString &)
{
    return stacking([](int, int) { return 0; });
}

} // namespace ObjectOperation
