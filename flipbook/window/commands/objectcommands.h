#pragma once

#include "flipbook/object/plugin.h"
#include "framework/page.h"
#include "host/undoredo.h"

#include <QtCore/QPointer>

#include <vector>

/// Objects that are on a page, or that a command keeps while they are not.
class PlacedObjects
{
public:
    struct Entry {
        OwnedObject owned;            ///< null while the object is on the page
        QPointer<CBaseObject> object; ///< the object, wherever it is
        Page::Place place;
    };

    explicit PlacedObjects(Page &page);

    /// An object that is to come to the page, at @p place.
    void add(OwnedObject object, Page::Place place);
    /// An object of the page, at the place where it is.
    void addPresent(CBaseObject &object);

    /// Puts the objects on the page, from bottom to top, and selects them.
    void put();
    /// Takes them off the page.
    void take();

private:
    QPointer<Page> m_page;
    std::vector<Entry> m_entries;
};

/// Puts new objects on top of a page.
class AddObjectsCommand : public CNmUndoCmd
{
public:
    AddObjectsCommand(const QString &text, Page &page, std::vector<OwnedObject> objects);

    void undo() override { m_objects.take(); }
    void redo() override { m_objects.put(); }

private:
    PlacedObjects m_objects;
};

/// Takes objects off a page.
class RemoveObjectsCommand : public CNmUndoCmd
{
public:
    RemoveObjectsCommand(const QString &text, Page &page, const QList<CBaseObject *> &objects);

    void undo() override { m_objects.put(); }
    void redo() override { m_objects.take(); }

private:
    PlacedObjects m_objects;
};

/// Puts objects in the place of others.
class ExchangeObjectsCommand : public CNmUndoCmd
{
public:
    /// @p after comes exactly where @p before was.
    ExchangeObjectsCommand(const QString &text, Page &page, CBaseObject &before, OwnedObject after);
    /// @p after comes on top of @p layer.
    ExchangeObjectsCommand(const QString &text, Page &page, const QList<CBaseObject *> &before,
                           std::vector<OwnedObject> after, Page::Layer layer);

    void undo() override;
    void redo() override;

private:
    void exchange(PlacedObjects &leaving, PlacedObjects &coming);

    QPointer<Page> m_page;
    PlacedObjects m_before;
    PlacedObjects m_after;
};
