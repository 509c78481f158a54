#include "flipbook/window/page/pageview.h"

#include "flipbook/window/import/offeredpicture.h"
#include "flipbook/window/page/paperpainting.h"
#include "flipbook/window/session.h"

#include <QtCore/QMimeData>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QScrollBar>

namespace
{

/// Of the line around a view that has the focus, in pixels.
constexpr int FocusWidth = 2;

} // namespace

PageView::PageView(Session &session, QWidget *parent)
    : ZoomView(parent)
    , m_session(session)
    , m_tool(session, *this)
{
    setObjectName(QStringLiteral("pageView"));
    setAccessibleName(tr("Page"));
    setFrameShape(QFrame::NoFrame);
    // Handles and outlines reach over the bounds of the objects that they belong to.
    setViewportUpdateMode(FullViewportUpdate);
    setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    setAcceptDrops(true);
    viewport()->setMouseTracking(true);
    // A finger that came first has begun to drag.
    connect(this, &ZoomView::pinched, this, [this] { m_tool.cancel(); });
    connect(&session, &Session::pageShown, this, &PageView::showPage);
    connect(&session, &Session::selectionChanged, viewport(), QOverload<>::of(&QWidget::update));
    showPage(session.page());
}

void PageView::showPage(Page *page)
{
    m_tool.cancel();
    setScene(page);
    updateSceneRect();
    if (isFitted())
        fit();
}

/// Objects may lie beside the page: there is as much room around it as on it.
void PageView::updateSceneRect()
{
    const Page *page = m_session.page();
    if (!page)
        return;
    const QRectF rect = page->pageRect();
    const double margin = std::max(rect.width(), rect.height());
    setSceneRect(rect.adjusted(-margin, -margin, margin, margin));
}

QRectF PageView::contents() const
{
    const Page *page = m_session.page();
    return page ? page->pageRect() : QRectF();
}

void PageView::drawBackground(QPainter *painter, const QRectF &exposed)
{
    painter->fillRect(exposed, palette().color(QPalette::Mid));
    if (const Page *page = m_session.page())
        paintPaper(*painter, page->pageRect(), zoom());
}

void PageView::drawForeground(QPainter *painter, const QRectF &)
{
    Q_EMIT paintsOverPage(*painter);
    m_tool.paint(*painter);
    if (m_showsFocus)
        paintFocus(*painter);
}

void PageView::paintFocus(QPainter &painter) const
{
    painter.save();
    painter.resetTransform();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(palette().color(QPalette::Highlight), FocusWidth));
    const int inset = FocusWidth / 2;
    painter.drawRect(viewport()->rect().adjusted(inset, inset, -inset, -inset));
    painter.restore();
}

bool PageView::event(QEvent *event)
{
    // Keys that are shortcuts elsewhere mean something here.
    if (event->type() == QEvent::ShortcutOverride) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool isDragEscape = key->key() == Qt::Key_Escape && m_tool.isDragging();
        if (key->key() == Qt::Key_Space || isDragEscape) {
            event->accept();
            return true;
        }
    }
    return ZoomView::event(event);
}

void PageView::startPanning(const QPoint &position)
{
    m_isPanning = true;
    m_lastPan = position;
    viewport()->setCursor(Qt::ClosedHandCursor);
}

void PageView::mousePressEvent(QMouseEvent *event)
{
    const bool pansWithSpace = m_spaceIsDown && event->button() == Qt::LeftButton;
    if (event->button() == Qt::MiddleButton || pansWithSpace) {
        m_spaceWasUsed = true;
        startPanning(event->pos());
    } else if (event->button() == Qt::LeftButton) {
        m_tool.press(mapToScene(event->pos()), event->modifiers());
    }
    event->accept();
}

void PageView::mouseMoveEvent(QMouseEvent *event)
{
    if (m_isPanning) {
        const QPoint way = event->pos() - m_lastPan;
        m_lastPan = event->pos();
        horizontalScrollBar()->setValue(horizontalScrollBar()->value() - way.x());
        verticalScrollBar()->setValue(verticalScrollBar()->value() - way.y());
        return;
    }
    m_tool.move(mapToScene(event->pos()), event->modifiers());
}

void PageView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_isPanning) {
        m_isPanning = false;
        viewport()->unsetCursor();
        return;
    }
    if (event->button() == Qt::LeftButton)
        m_tool.release();
}

void PageView::keyPressEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space) {
        if (!event->isAutoRepeat()) {
            m_spaceIsDown = true;
            m_spaceWasUsed = false;
            viewport()->setCursor(Qt::OpenHandCursor);
        }
        return;
    }
    if (!m_tool.keyPress(event->key(), event->modifiers()))
        event->ignore();
}

void PageView::keyReleaseEvent(QKeyEvent *event)
{
    if (event->key() == Qt::Key_Space && m_spaceIsDown && !event->isAutoRepeat()) {
        m_spaceIsDown = false;
        viewport()->unsetCursor();
        if (!m_spaceWasUsed)
            Q_EMIT spaceTapped();
    }
    m_tool.keyRelease(event->modifiers());
}

/// Whoever uses the keyboard sees that the keys work on the page.
void PageView::focusInEvent(QFocusEvent *event)
{
    m_showsFocus =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    ZoomView::focusInEvent(event);
}

void PageView::focusOutEvent(QFocusEvent *event)
{
    m_showsFocus = false;
    m_spaceIsDown = false;
    viewport()->unsetCursor();
    ZoomView::focusOutEvent(event);
}

void PageView::dragEnterEvent(QDragEnterEvent *event)
{
    dragMoveEvent(event);
}

void PageView::dragMoveEvent(QDragMoveEvent *event)
{
    if (event->mimeData()->hasUrls() || offersPicture(*event->mimeData()))
        event->acceptProposedAction();
    else
        event->ignore();
}

void PageView::dropEvent(QDropEvent *event)
{
    event->acceptProposedAction();
    Q_EMIT dropped(event->mimeData(), mapToScene(event->pos()));
}
