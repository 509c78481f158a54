#include "framework/document.h"

#include "framework/framework.h"
#include "framework/page.h"
#include "host/attributeids.h"
#include "host/baseobject.h"

#include <QtCore/QDataStream>
#include <QtCore/QPointer>

Document::~Document()
{
    // Commands hold plain pointers to objects, and objects one to their document. A document
    // that never had a page, such as one for the clipboard, is known to no command.
    if (!m_pages.isEmpty())
        Framework::instance().dropUndoCommands();
    for (Page *page : std::as_const(m_pages))
        page->releaseObjects();
    while (!m_pages.isEmpty())
        delete m_pages.last();
}

Page *Document::addPage(const QRectF &rect)
{
    auto *page = new Page(rect, this);
    m_pages.append(page);
    return page;
}

void Document::removePage(Page *page)
{
    // It drops undo commands: who listens to their stack must not find a page that is dying.
    if (m_pages.removeOne(page))
        delete page;
}

std::unique_ptr<Page> Document::takePage(Page *page)
{
    if (!m_pages.removeOne(page))
        return nullptr;
    page->m_document = nullptr;
    page->m_isTaken = true;
    return std::unique_ptr<Page>(page);
}

void Document::insertPage(int index, std::unique_ptr<Page> page)
{
    if (!page)
        return;
    page->m_document = this;
    page->m_isTaken = false;
    m_pages.insert(qBound(0, index, m_pages.size()), page.release());
}

void Document::movePage(Page *page, int index)
{
    if (m_pages.removeOne(page))
        m_pages.insert(qBound(0, index, m_pages.size()), page);
}

const QList<Page *> &Document::pages() const
{
    return m_pages;
}

int Document::alternateMode() const
{
    return m_alternateMode;
}

void Document::enterAlternateMode()
{
    if (m_alternateMode != 0)
        return;
    sendAttribute(AttributeId::EnterAlternateMode);
    m_alternateMode = 1;
    updatePages();
}

void Document::leaveAlternateMode()
{
    if (m_alternateMode == 0)
        return;
    m_alternateMode = 0;
    sendAttribute(AttributeId::LeaveAlternateMode);
    updatePages();
}

bool Document::keepsImagesInline() const
{
    return m_keepsImagesInline;
}

void Document::setKeepsImagesInline(bool keepsInline)
{
    m_keepsImagesInline = keepsInline;
}

void Document::setOmitsPictures(bool omits)
{
    m_omitsPictures = omits;
}

ImageStore &Document::imageStore()
{
    return m_imageStore;
}

void Document::forget(Page *page)
{
    m_pages.removeOne(page);
}

void Document::sendAttribute(int id)
{
    // Objects notify when they handle an attribute, and listeners may release objects.
    QList<QPointer<CBaseObject>> receivers;
    for (const Page *page : std::as_const(m_pages)) {
        const QList<CBaseObject *> objects = page->objects();
        for (CBaseObject *object : objects)
            receivers.append(object);
    }
    for (const QPointer<CBaseObject> &receiver : std::as_const(receivers)) {
        QDataStream noInput{QByteArray()};
        if (receiver)
            receiver->SetAttribute(id, noInput, false);
    }
}

void Document::updatePages()
{
    for (Page *page : std::as_const(m_pages)) {
        page->clearSelection();
        page->update();
    }
}
