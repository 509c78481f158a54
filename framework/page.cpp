#include "framework/page.h"

#include "framework/document.h"
#include "framework/framework.h"
#include "framework/geometrycheck.h"
#include "framework/movelayercommand.h"
#include "host/baseobject.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>
#include <QtGui/QPainter>

#include <algorithm>
#include <memory>
#include <new>

namespace
{

constexpr int MoveToLayer = 0;
constexpr int NormalLayerCode = 0;
constexpr int BackgroundLayerCode = 2;
constexpr double MaxPixels = 1 << 28;

/// Normal objects have z values from 0 up, those of the background below 0.
double zValueOf(Page::Layer layer, int order)
{
    constexpr double lowest = -2147483648.0;
    return layer == Page::Layer::Background ? lowest + order : order;
}

} // namespace

Page::Page(const QRectF &rect, Document *document)
    : m_document(document)
{
    setItemIndexMethod(NoIndex);
    setPageRect(rect);
}

Page::~Page()
{
    if (!m_isTaken)
        Framework::instance().dropUndoCommands();
    releaseObjects();
    if (m_document)
        m_document->forget(this);
}

QRectF Page::pageRect() const
{
    return m_rect;
}

void Page::setPageRect(const QRectF &rect)
{
    if (!isPlace(rect.topLeft()) || !isExtent(rect.size()))
        return;
    m_rect = rect;
    setSceneRect(rect);
}

IGdDocument *Page::document() const
{
    return m_document;
}

qint64 Page::queryObject(CGDRootObject *, int code)
{
    switch (code) {
    case NormalLayerCode:
        return handleOf(Layer::Normal);
    case BackgroundLayerCode:
        return handleOf(Layer::Background);
    default:
        return 0;
    }
}

void Page::applyObject(int operation, qint64 handle, const QList<CGDRootObject *> &objects,
                       bool undoable, const QString &text, bool refresh)
{
    const bool toNormal = handle == handleOf(Layer::Normal);
    if (operation != MoveToLayer || (!toNormal && handle != handleOf(Layer::Background)))
        return;
    const Layer target = toNormal ? Layer::Normal : Layer::Background;
    const QList<CBaseObject *> moved = movable(objects, target);
    if (moved.isEmpty())
        return;
    // Who listens to the undo stack may close the page.
    const QPointer<Page> self(this);
    auto command = std::make_unique<MoveLayerCommand>(this, moved, target);
    if (undoable) {
        const QString ownText = Framework::instance().translated(
            QStringLiteral("IDS_PAGE_MOVE_TO_LAYER"), QStringLiteral("Move to Another Layer"));
        command->setText(text.isEmpty() ? ownText : text);
        CUndoRedo::GetInstance()->push(command.release());
    } else {
        command->redo();
    }
    if (refresh && self)
        update();
}

void Page::addObject(CBaseObject *object, Layer layer)
{
    if (!object || holds(object))
        return;
    if (auto *other = qobject_cast<Page *>(object->scene()))
        other->takeObject(object);
    object->setParentItem(nullptr);
    addItem(object);
    object->SetPage(this);
    append(object, layer);
    // For an object that somebody took out of the scene and deleted: it cannot find the page.
    connect(object, &QObject::destroyed, this, [this, object] { forget(object); });
}

CBaseObject *Page::takeObject(CBaseObject *object)
{
    if (!removeFromLayers(object))
        return nullptr;
    disconnect(object, &QObject::destroyed, this, nullptr);
    object->SetPage(nullptr);
    if (object->scene() == this)
        removeItem(object);
    return object;
}

void Page::destroyObject(CBaseObject *object)
{
    if (!holds(object))
        return;
    Framework::instance().dropUndoCommands();
    takeObject(object)->Release();
}

void Page::releaseObjects()
{
    while (!m_normal.isEmpty())
        takeObject(m_normal.last())->Release();
    while (!m_background.isEmpty())
        takeObject(m_background.last())->Release();
}

QList<CBaseObject *> Page::objects() const
{
    return m_background + m_normal;
}

bool Page::holds(const CBaseObject *object) const
{
    return isNext(object) || m_entries.contains(object);
}

QList<CBaseObject *> Page::selectedObjects() const
{
    QList<CBaseObject *> selected = objects();
    selected.erase(std::remove_if(selected.begin(), selected.end(),
                                  [](const CBaseObject *object) { return !object->isSelected(); }),
                   selected.end());
    return selected;
}

void Page::selectObjects(const QList<CBaseObject *> &objects)
{
    const QList<CBaseObject *> present = this->objects();
    {
        // One change, one signal.
        const QSignalBlocker blocker(this);
        for (CBaseObject *object : present)
            object->setSelected(objects.contains(object));
    }
    Q_EMIT selectionChanged();
    update();
}

CBaseObject *Page::objectAt(const QPointF &point) const
{
    const QList<CBaseObject *> present = objects();
    CBaseObject *transparent = nullptr;
    for (auto object = present.rbegin(); object != present.rend(); ++object) {
        const QPointF own = (*object)->mapFromScene(point);
        if (!(*object)->isEditable() || !(*object)->getClientRect().contains(own))
            continue;
        if ((*object)->shape().contains(own))
            return *object;
        if (!transparent)
            transparent = *object;
    }
    return transparent;
}

Page::Place Page::placeOf(const CBaseObject *object) const
{
    if (!isNext(object))
        m_found = {m_entries.value(object).layer, indexOf(object)};
    return m_found;
}

void Page::placeObject(CBaseObject *object, Place place)
{
    const auto entry = m_entries.find(object);
    if (entry == m_entries.end())
        return;
    QList<CBaseObject *> &source = layer(entry->layer);
    QList<CBaseObject *> &target = layer(place.layer);
    const int indexBefore = indexOf(object);
    source.removeAt(indexBefore);
    const bool isOnTop = place.index >= target.size();
    const int order = orderOnTop(place.layer);
    try {
        target.insert(isOnTop ? target.size() : qMax(0, place.index), object);
    } catch (const std::bad_alloc &) {
        // The list still has the room that the object took.
        source.insert(indexBefore, object);
        throw;
    }
    *entry = {place.layer, order};
    if (isOnTop)
        object->setZValue(zValueOf(place.layer, order));
    else
        restack(place.layer);
}

QImage Page::rendered(double scale, const QColor &paper)
{
    const QSizeF size = m_rect.size() * scale;
    if (!isExtent(size) || size.isEmpty() || size.width() * size.height() > MaxPixels)
        return {};
    QImage picture(qMax(1, qRound(size.width())), qMax(1, qRound(size.height())),
                   QImage::Format_ARGB32_Premultiplied);
    picture.fill(paper);
    QPainter painter(&picture);
    render(&painter, picture.rect(), m_rect, Qt::IgnoreAspectRatio);
    return picture;
}

void Page::forget(CBaseObject *object)
{
    // Commands may know the object, and one of them may be what has just released it.
    if (removeFromLayers(object))
        Framework::instance().dropUndoCommandsLater();
}

QList<CBaseObject *> &Page::layer(Layer layer)
{
    return layer == Layer::Background ? m_background : m_normal;
}

const QList<CBaseObject *> &Page::layer(Layer layer) const
{
    return layer == Layer::Background ? m_background : m_normal;
}

/// Whether @p object is where one was found last or just above it, and is then found there.
bool Page::isNext(const CBaseObject *object) const
{
    const QList<CBaseObject *> &list = layer(m_found.layer);
    for (const int index : {m_found.index, m_found.index + 1}) {
        if (index < list.size() && list.at(index) == object) {
            m_found.index = index;
            return true;
        }
    }
    return false;
}

bool Page::removeFromLayers(CBaseObject *object)
{
    const auto entry = m_entries.constFind(object);
    if (entry == m_entries.constEnd())
        return false;
    layer(entry->layer).removeAt(indexOf(object));
    m_entries.erase(entry);
    return true;
}

/// The index of an object of this page in the list of its layer, which is sorted by order.
int Page::indexOf(const CBaseObject *object) const
{
    const Entry entry = m_entries.value(object);
    const QList<CBaseObject *> &list = layer(entry.layer);
    // Where nothing was removed from below it, the order tells the index.
    const int guess = list.isEmpty() ? 0 : entry.order - m_entries.value(list.first()).order;
    if (list.value(guess) == object)
        return guess;
    const auto place = std::lower_bound(list.begin(), list.end(), entry.order,
                                        [this](const CBaseObject *below, int order) {
                                            return m_entries.value(below).order < order;
                                        });
    return place - list.begin();
}

/// The order of an object that is put on top of a layer.
int Page::orderOnTop(Layer layer) const
{
    const QList<CBaseObject *> &list = this->layer(layer);
    return list.isEmpty() ? 0 : m_entries.value(list.last()).order + 1;
}

/// Puts an object on top of a layer.
void Page::append(CBaseObject *object, Layer layer)
{
    const int order = orderOnTop(layer);
    m_entries.insert(object, {layer, order});
    try {
        this->layer(layer).append(object);
    } catch (const std::bad_alloc &) {
        m_entries.remove(object);
        throw;
    }
    object->setZValue(zValueOf(layer, order));
}

/// Numbers the objects of a layer again, after one was inserted among them.
void Page::restack(Layer layer)
{
    int order = 0;
    for (CBaseObject *object : qAsConst(this->layer(layer))) {
        object->setZValue(zValueOf(layer, order));
        m_entries.insert(object, {layer, order++});
    }
}

qint64 Page::handleOf(Layer layer) const
{
    return reinterpret_cast<qint64>(layer == Layer::Background ? &m_background : &m_normal);
}

QList<CBaseObject *> Page::movable(const QList<CGDRootObject *> &objects, Layer target) const
{
    const QList<CBaseObject *> &others = target == Layer::Background ? m_normal : m_background;
    QList<CBaseObject *> found;
    for (CGDRootObject *object : objects) {
        for (CBaseObject *candidate : others) {
            if (candidate == object && !found.contains(candidate))
                found.append(candidate);
        }
    }
    return found;
}
