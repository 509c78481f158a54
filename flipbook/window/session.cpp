#include "flipbook/window/session.h"

#include "framework/framework.h"
#include "host/undoredo.h"

#include <QtCore/QFileInfo>

namespace
{

// Twice the stage of Scratch on each side.
constexpr QRectF NewPage(0, 0, 960, 720);

} // namespace

Session::Session(const Plugin &plugin, QObject *parent)
    : QObject(parent)
    , m_plugin(plugin)
{
    connect(&undoStack(), &QUndoStack::cleanChanged, this, &Session::noteClean);
    takeUp(newDocument(), QString());
}

Session::~Session()
{
    disconnect(&undoStack(), nullptr, this, nullptr);
    Framework::instance().dropUndoCommands();
}

std::unique_ptr<Document> Session::newDocument()
{
    auto document = std::make_unique<Document>();
    // Pictures that occur again are kept once.
    document->setKeepsImagesInline(false);
    document->addPage(NewPage);
    return document;
}

void Session::takeUp(std::unique_ptr<Document> document, const QString &path)
{
    // Commands own objects of the document before, and must go while it is there.
    Framework::instance().dropUndoCommands();
    const std::unique_ptr<Document> before = std::move(m_document);
    m_document = std::move(document);
    m_path = path;
    m_changedElsewhere = false;
    showPage(m_document->pages().value(0));
    Q_EMIT documentReplaced();
    Q_EMIT pagesChanged();
    Q_EMIT fileStateChanged();
}

void Session::showPage(Page *page)
{
    if (m_page == page && page)
        return;
    if (m_page) {
        m_page->clearSelection();
        disconnect(m_page, nullptr, this, nullptr);
    }
    m_page = page;
    if (page)
        connect(page, &Page::selectionChanged, this, &Session::selectionChanged);
    Q_EMIT pageShown(page);
    Q_EMIT selectionChanged();
}

QList<CBaseObject *> Session::selection() const
{
    return m_page ? m_page->selectedObjects() : QList<CBaseObject *>();
}

CBaseObject *Session::film() const
{
    const QList<CBaseObject *> selected = selection();
    return selected.size() == 1 ? selected.first() : nullptr;
}

QUndoStack &Session::undoStack() const
{
    return *Framework::instance().undoStack();
}

void Session::push(std::unique_ptr<CNmUndoCmd> command)
{
    CUndoRedo::GetInstance()->push(command.release());
}

QString Session::title() const
{
    return m_path.isEmpty() ? tr("Untitled") : QFileInfo(m_path).fileName();
}

bool Session::isDirty() const
{
    return m_changedElsewhere || !undoStack().isClean();
}

void Session::noteSaved(const QString &path)
{
    m_path = path;
    m_changedElsewhere = false;
    undoStack().setClean();
    Q_EMIT fileStateChanged();
}

void Session::noteChanged()
{
    m_changedElsewhere = true;
    Q_EMIT fileStateChanged();
}

/// A stack that lost its commands calls itself clean, but the document is not as it was saved.
void Session::noteClean(bool isClean)
{
    if (isClean && undoStack().count() == 0)
        m_changedElsewhere = true;
    Q_EMIT fileStateChanged();
}

void Session::setDragging(bool dragging)
{
    if (m_isDragging == dragging)
        return;
    m_isDragging = dragging;
    Q_EMIT draggingChanged(dragging);
}
