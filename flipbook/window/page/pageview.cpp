#include "flipbook/window/page/pageview.h"

#include "flipbook/window/import/offeredpicture.h"
#include "flipbook/window/page/paperpainting.h"
#include "flipbook/window/session.h"

#include <QtCore/QMimeData>
#include <QtGui/QNativeGestureEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QGestureEvent>
#include <QtWidgets/QScrollBar>

#include <cmath>

namespace
{

/// Room around a fitted page, in pixels.
constexpr int FitMargin = 24;
/// Of the line around a view that has the focus, in pixels.
constexpr int FocusWidth = 2;
/// Eight clicks of an ordinary wheel double the zoom.
constexpr double WheelUnitsForDouble = 960.0;

} // namespace

PageView::PageView(Session &session, QWidget *parent)
    : QGraphicsView(parent)
    , m_session(session)
    , m_tool(session, *this)
{
    setObjectName(QStringLiteral("pageView"));
    setAccessibleName(tr("Page"));
    setFrameShape(QFrame::NoFrame);
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    // Handles and outlines reach over the bounds of the objects that they belong to.
    setViewportUpdateMode(FullViewportUpdate);
    setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    setAcceptDrops(true);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->grabGesture(Qt::PinchGesture);
    connect(&session, &Session::pageShown, this, &PageView::showPage);
    connect(&session, &Session::selectionChanged, viewport(), QOverload<>::of(&QWidget::update));
    showPage(session.page());
}

void PageView::showPage(Page *page)
{
    m_tool.cancel();
    setScene(page);
    updateSceneRect();
    if (m_isFitted)
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

double PageView::zoom() const
{
    return transform().m11();
}

void PageView::applyZoom(double zoom)
{
    const double bounded = qBound(MinZoom, zoom, MaxZoom);
    setTransform(QTransform::fromScale(bounded, bounded));
    Q_EMIT zoomChanged(bounded);
}

void PageView::setZoom(double zoom)
{
    m_isFitted = false;
    const QPointF middle = mapToScene(viewport()->rect().center());
    applyZoom(zoom);
    centerOn(middle);
}

void PageView::zoomBy(double factor)
{
    setZoom(zoom() * factor);
}

void PageView::fit()
{
    m_isFitted = true;
    const Page *page = m_session.page();
    if (!page)
        return;
    const QSizeF room = QSizeF(viewport()->size()) - QSizeF(2 * FitMargin, 2 * FitMargin);
    const QSizeF size = page->pageRect().size();
    const double zoom = std::min(room.width() / size.width(), room.height() / size.height());
    // Pictures are made of pixels: a small page is not blown up.
    applyZoom(std::min(zoom, 1.0));
    centerOn(page->pageRect().center());
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
    return QGraphicsView::event(event);
}

/// Two fingers on a touchpad send gestures of the platform, those on a screen touches, in which Qt
/// recognises a pinch.
bool PageView::viewportEvent(QEvent *event)
{
    if (event->type() == QEvent::NativeGesture) {
        const auto *gesture = static_cast<QNativeGestureEvent *>(event);
        if (gesture->gestureType() == Qt::ZoomNativeGesture) {
            zoomAt(gesture->pos(), 1.0 + gesture->value());
            return true;
        }
    }
    if (event->type() == QEvent::Gesture) {
        if (const QGesture *gesture =
                static_cast<QGestureEvent *>(event)->gesture(Qt::PinchGesture)) {
            pinch(*static_cast<const QPinchGesture *>(gesture));
            return true;
        }
    }
    return QGraphicsView::viewportEvent(event);
}

void PageView::pinch(const QPinchGesture &gesture)
{
    // A finger that came first has begun to drag.
    m_tool.cancel();
    if (gesture.changeFlags() & QPinchGesture::ScaleFactorChanged)
        zoomAt(viewport()->mapFromGlobal(gesture.centerPoint().toPoint()), gesture.scaleFactor());
}

void PageView::zoomAt(const QPoint &position, double factor)
{
    m_isFitted = false;
    const QPointF below = mapToScene(position);
    applyZoom(zoom() * factor);
    const QPointF shift = mapToScene(position) - below;
    const QPointF middle = mapToScene(viewport()->rect().center());
    centerOn(middle - shift);
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

void PageView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    zoomAt(event->position().toPoint(),
           std::pow(2.0, event->angleDelta().y() / WheelUnitsForDouble));
    event->accept();
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

void PageView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    if (m_isFitted)
        fit();
}

/// Whoever uses the keyboard sees that the keys work on the page.
void PageView::focusInEvent(QFocusEvent *event)
{
    m_showsFocus =
        event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QGraphicsView::focusInEvent(event);
}

void PageView::focusOutEvent(QFocusEvent *event)
{
    m_showsFocus = false;
    m_spaceIsDown = false;
    viewport()->unsetCursor();
    QGraphicsView::focusOutEvent(event);
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
