#include "flipbook/window/commands/objectcommands.h"

#include "flipbook/object/filmstate.h"

#include <algorithm>
#include <limits>

PlacedObjects::PlacedObjects(Page &page)
    : m_page(&page)
{
}

void PlacedObjects::add(OwnedObject object, Page::Place place)
{
    CBaseObject *plain = object.get();
    m_entries.push_back({std::move(object), plain, place});
}

void PlacedObjects::addPresent(CBaseObject &object)
{
    m_entries.push_back({nullptr, &object, m_page->placeOf(&object)});
    // From bottom to top, so that each place is right when those below have come.
    std::sort(m_entries.begin(), m_entries.end(),
              [](const Entry &one, const Entry &two) { return one.place.index < two.place.index; });
}

void PlacedObjects::put()
{
    if (!m_page)
        return;
    QList<CBaseObject *> arrived;
    for (Entry &entry : m_entries) {
        CBaseObject *object = entry.owned.release();
        if (!object)
            continue;
        m_page->addObject(object, entry.place.layer);
        m_page->placeObject(object, entry.place);
        // An object that comes from elsewhere remembers the document of that place: reading its
        // state makes it look again.
        [[maybe_unused]] const FilmState state(*object);
        arrived.append(object);
    }
    m_page->selectObjects(arrived);
}

void PlacedObjects::take()
{
    if (!m_page)
        return;
    for (Entry &entry : m_entries) {
        if (!entry.object)
            continue;
        AnimatedObject animated(*entry.object);
        if (animated.isPlaying())
            animated.setPlaying(false);
        entry.owned.reset(m_page->takeObject(entry.object));
    }
}

AddObjectsCommand::AddObjectsCommand(const QString &text, Page &page,
                                     std::vector<OwnedObject> objects)
    : m_objects(page)
{
    setText(text);
    for (OwnedObject &object : objects)
        m_objects.add(std::move(object), {Page::Layer::Normal, std::numeric_limits<int>::max()});
}

RemoveObjectsCommand::RemoveObjectsCommand(const QString &text, Page &page,
                                           const QList<CBaseObject *> &objects)
    : m_objects(page)
{
    setText(text);
    for (CBaseObject *object : objects)
        m_objects.addPresent(*object);
}

ExchangeObjectsCommand::ExchangeObjectsCommand(const QString &text, Page &page, CBaseObject &before,
                                               OwnedObject after)
    : m_page(&page)
    , m_before(page)
    , m_after(page)
{
    setText(text);
    m_before.addPresent(before);
    m_after.add(std::move(after), page.placeOf(&before));
}

ExchangeObjectsCommand::ExchangeObjectsCommand(const QString &text, Page &page,
                                               const QList<CBaseObject *> &before,
                                               std::vector<OwnedObject> after, Page::Layer layer)
    : m_page(&page)
    , m_before(page)
    , m_after(page)
{
    setText(text);
    for (CBaseObject *object : before)
        m_before.addPresent(*object);
    for (OwnedObject &object : after)
        m_after.add(std::move(object), {layer, std::numeric_limits<int>::max()});
}

void ExchangeObjectsCommand::undo()
{
    exchange(m_after, m_before);
}

void ExchangeObjectsCommand::redo()
{
    exchange(m_before, m_after);
}

/// In between nothing is selected, which nobody needs to see.
void ExchangeObjectsCommand::exchange(PlacedObjects &leaving, PlacedObjects &coming)
{
    {
        const QSignalBlocker blocker(m_page);
        leaving.take();
    }
    coming.put();
}
