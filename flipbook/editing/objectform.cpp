#include "flipbook/editing/objectform.h"

#include "flipbook/object/filmstate.h"
#include "framework/page.h"

#include <new>

CBaseObject *rebuilt(const Plugin &plugin, Page &page, CBaseObject &object,
                     const std::function<void(QJsonObject &form)> &change)
{
    QJsonObject form;
    if (!object.saveJson(form))
        throw std::bad_alloc();
    change(form);

    const Page::Place place = page.placeOf(&object);
    const int id = object.objectId();
    // First, so that the pictures are never in memory twice.
    page.destroyObject(&object);
    CBaseObject *successor = plugin.createObject(id).release();
    // It must be on the page before it reads: its document has the pictures.
    page.addObject(successor, place.layer);
    if (!successor->loadJson(form))
        throw std::bad_alloc();
    page.placeObject(successor, place);
    return successor;
}

CBaseObject *exchanged(Page &page, CBaseObject &object, OwnedObject successor)
{
    const Page::Place place = page.placeOf(&object);
    page.destroyObject(&object);
    CBaseObject *arrived = successor.release();
    page.addObject(arrived, place.layer);
    page.placeObject(arrived, place);
    // It remembers the document that it was read from: reading its state makes it look again.
    static_cast<void>(FilmState(*arrived));
    return arrived;
}
