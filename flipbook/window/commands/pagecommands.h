#pragma once

#include "framework/page.h"
#include "host/undoredo.h"

#include <memory>

class Session;

/// A page comes to the document, or (the other way round) leaves it.
class PageCommand : public CNmUndoCmd
{
public:
    /// Adds @p page as number @p index, counted from 0.
    PageCommand(const QString &text, Session &session, std::unique_ptr<Page> page, int index);
    /// Removes @p page, which is not the only one.
    PageCommand(const QString &text, Session &session, Page &page);

    void undo() override;
    void redo() override;

private:
    void insert();
    void take();

    Session &m_session;
    std::unique_ptr<Page> m_owned; ///< null while the page is in the document
    Page *m_page;
    int m_index;
    bool m_adds;
};

/// A page is given another place.
class MovePageCommand : public CNmUndoCmd
{
public:
    MovePageCommand(const QString &text, Session &session, Page &page, int to);

    void undo() override;
    void redo() override;

private:
    void move(int index);

    Session &m_session;
    Page &m_page;
    int m_from;
    int m_to;
};

/// The objects of a page are stacked in another order.
class StackCommand : public CNmUndoCmd
{
public:
    /// @p after lists all objects of the normal layer from bottom to top.
    StackCommand(const QString &text, Page &page, const QList<CBaseObject *> &after);

    void undo() override;
    void redo() override;

private:
    void stack(const QList<CBaseObject *> &order);

    Page &m_page;
    QList<CBaseObject *> m_before;
    QList<CBaseObject *> m_after;
};

/// The objects of the normal layer, from bottom to top.
QList<CBaseObject *> normalObjects(const Page &page);
