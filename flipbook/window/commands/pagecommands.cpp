#include "flipbook/window/commands/pagecommands.h"

#include "flipbook/window/session.h"

PageCommand::PageCommand(const QString &text, Session &session, std::unique_ptr<Page> page,
                         int index)
    : m_session(session)
    , m_owned(std::move(page))
    , m_page(m_owned.get())
    , m_index(index)
    , m_adds(true)
{
    setText(text);
}

PageCommand::PageCommand(const QString &text, Session &session, Page &page)
    : m_session(session)
    , m_page(&page)
    , m_index(session.document().pages().indexOf(&page))
    , m_adds(false)
{
    setText(text);
}

void PageCommand::undo()
{
    m_adds ? take() : insert();
}

void PageCommand::redo()
{
    m_adds ? insert() : take();
}

void PageCommand::insert()
{
    m_session.document().insertPage(m_index, std::move(m_owned));
    Q_EMIT m_session.pagesChanged();
    m_session.showPage(m_page);
}

void PageCommand::take()
{
    const QList<Page *> &pages = m_session.document().pages();
    // The page before is shown, or the one that moves up.
    Page *next = pages.value(m_index > 0 ? m_index - 1 : 1);
    if (m_session.page() == m_page)
        m_session.showPage(next);
    m_owned = m_session.document().takePage(m_page);
    Q_EMIT m_session.pagesChanged();
}

MovePageCommand::MovePageCommand(const QString &text, Session &session, Page &page, int to)
    : m_session(session)
    , m_page(page)
    , m_from(session.document().pages().indexOf(&page))
    , m_to(to)
{
    setText(text);
}

void MovePageCommand::undo()
{
    move(m_from);
}

void MovePageCommand::redo()
{
    move(m_to);
}

void MovePageCommand::move(int index)
{
    m_session.document().movePage(&m_page, index);
    Q_EMIT m_session.pagesChanged();
}

QList<CBaseObject *> normalObjects(const Page &page)
{
    QList<CBaseObject *> normal;
    const QList<CBaseObject *> objects = page.objects();
    for (CBaseObject *object : objects) {
        if (page.placeOf(object).layer == Page::Layer::Normal)
            normal.append(object);
    }
    return normal;
}

StackCommand::StackCommand(const QString &text, Page &page, const QList<CBaseObject *> &after)
    : m_page(page)
    , m_before(normalObjects(page))
    , m_after(after)
{
    setText(text);
}

void StackCommand::undo()
{
    stack(m_before);
}

void StackCommand::redo()
{
    stack(m_after);
}

void StackCommand::stack(const QList<CBaseObject *> &order)
{
    for (int i = 0; i < order.size(); ++i)
        m_page.placeObject(order.at(i), {Page::Layer::Normal, i});
}
