#include "flipbook/window/edit/pagecontroller.h"

#include "flipbook/object/filmstate.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/commands/pagecommands.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QAction>

PageController::PageController(Session &session, ActionSet &actions)
    : QObject(&actions)
    , m_session(session)
{
    const auto add = [&](const char *id, const QString &text, const char *icon,
                         const QKeySequence &key, const std::function<void()> &act) {
        QAction *action = actions.add(
            {QLatin1String(id), text, QLatin1String(icon),
             key.isEmpty() ? QList<QKeySequence>() : QList<QKeySequence>{key}, QString()});
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    add("add-page", tr("&Add page"), "list-add", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_N),
        [this] { addPage(); });
    add("duplicate-page", tr("&Duplicate page"), "edit-copy", {},
        [this] { copy(shownIndex(), shownIndex() + 1); });
    m_delete = add("delete-page", tr("D&elete page"), "edit-delete", {}, [this] { deletePage(); });
    m_up = add("move-page-up", tr("Move page &up"), "go-up",
               QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_PageUp),
               [this] { move(shownIndex(), shownIndex() - 1); });
    m_down = add("move-page-down", tr("Move page &down"), "go-down",
                 QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_PageDown),
                 [this] { move(shownIndex(), shownIndex() + 2); });
    m_previous = add("previous-page", tr("&Previous page"), "",
                     QKeySequence(Qt::CTRL | Qt::Key_PageUp), [this] { go(-1); });
    m_next = add("next-page", tr("&Next page"), "", QKeySequence(Qt::CTRL | Qt::Key_PageDown),
                 [this] { go(1); });
    connect(&session, &Session::pagesChanged, this, &PageController::update);
    connect(&session, &Session::pageShown, this, &PageController::update);
    update();
}

int PageController::shownIndex() const
{
    return m_session.document().pages().indexOf(m_session.page());
}

void PageController::update()
{
    const int count = m_session.document().pages().size();
    const int shown = shownIndex();
    m_delete->setEnabled(count > 1);
    for (QAction *action : {m_up, m_previous})
        action->setEnabled(shown > 0);
    for (QAction *action : {m_down, m_next})
        action->setEnabled(shown >= 0 && shown + 1 < count);
}

void PageController::addPage()
{
    // As large as the page that is shown.
    const QRectF rect = m_session.page() ? m_session.page()->pageRect() : QRectF(0, 0, 960, 720);
    auto page = std::make_unique<Page>(rect, &m_session.document());
    m_session.push(std::make_unique<PageCommand>(tr("Add Page"), m_session, std::move(page),
                                                 shownIndex() + 1));
}

void PageController::copy(int row, int before)
{
    const Page *original = m_session.document().pages().value(row);
    if (!original)
        return;
    auto page = std::make_unique<Page>(original->pageRect(), &m_session.document());
    const QList<CBaseObject *> objects = original->objects();
    for (CBaseObject *object : objects) {
        OwnedObject copy =
            FilmState(*object).withFrames(m_session.plugin(), m_session.plugin().frames(*object),
                                          AnimatedObject(*object).shownIndex());
        CBaseObject *plain = copy.release();
        page->addObject(plain, original->placeOf(object).layer);
        // It remembers the document that it was read from: reading its state makes it look again.
        FilmState{*plain};
    }
    m_session.push(
        std::make_unique<PageCommand>(tr("Duplicate Page"), m_session, std::move(page), before));
}

void PageController::deletePage()
{
    if (m_session.page() && m_session.document().pages().size() > 1)
        m_session.push(
            std::make_unique<PageCommand>(tr("Delete Page"), m_session, *m_session.page()));
}

void PageController::move(int row, int before)
{
    Page *page = m_session.document().pages().value(row);
    const int to = before > row ? before - 1 : before;
    if (page && to != row)
        m_session.push(std::make_unique<MovePageCommand>(tr("Move Page"), m_session, *page, to));
}

void PageController::go(int step)
{
    if (Page *page = m_session.document().pages().value(shownIndex() + step))
        m_session.showPage(page);
}
