#include "flipbook/window/page/zoomview.h"

#include <QtGui/QNativeGestureEvent>
#include <QtGui/QWheelEvent>
#include <QtWidgets/QGestureEvent>

#include <cmath>

namespace
{

/// Room around a fitted page, in pixels.
constexpr int FitMargin = 24;
/// Eight clicks of an ordinary wheel double the zoom.
constexpr double WheelUnitsForDouble = 960.0;

} // namespace

ZoomView::ZoomView(QWidget *parent)
    : QGraphicsView(parent)
{
    setTransformationAnchor(NoAnchor);
    setResizeAnchor(NoAnchor);
    viewport()->setAttribute(Qt::WA_AcceptTouchEvents);
    viewport()->grabGesture(Qt::PinchGesture);
}

double ZoomView::zoom() const
{
    return transform().m11();
}

void ZoomView::applyZoom(double zoom)
{
    const double bounded = qBound(MinZoom, zoom, MaxZoom);
    setTransform(QTransform::fromScale(bounded, bounded));
    Q_EMIT zoomChanged(bounded);
}

void ZoomView::setZoom(double zoom)
{
    m_isFitted = false;
    const QPointF middle = mapToScene(viewport()->rect().center());
    applyZoom(zoom);
    centerOn(middle);
}

void ZoomView::zoomBy(double factor)
{
    setZoom(zoom() * factor);
}

void ZoomView::fit()
{
    m_isFitted = true;
    const QRectF rect = contents();
    if (rect.isEmpty())
        return;
    const QSizeF room = QSizeF(viewport()->size()) - QSizeF(2 * FitMargin, 2 * FitMargin);
    const QSizeF size = rect.size();
    const double zoom = std::min(room.width() / size.width(), room.height() / size.height());
    // Pictures are made of pixels: a small page is not blown up.
    applyZoom(std::min(zoom, 1.0));
    centerOn(rect.center());
}

/// Two fingers on a touchpad send gestures of the platform, those on a screen touches, in which Qt
/// recognises a pinch.
bool ZoomView::viewportEvent(QEvent *event)
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

void ZoomView::pinch(const QPinchGesture &gesture)
{
    Q_EMIT pinched();
    if (gesture.changeFlags() & QPinchGesture::ScaleFactorChanged)
        zoomAt(viewport()->mapFromGlobal(gesture.centerPoint().toPoint()), gesture.scaleFactor());
}

void ZoomView::zoomAt(const QPoint &position, double factor)
{
    m_isFitted = false;
    const QPointF below = mapToScene(position);
    applyZoom(zoom() * factor);
    const QPointF shift = mapToScene(position) - below;
    const QPointF middle = mapToScene(viewport()->rect().center());
    centerOn(middle - shift);
}

void ZoomView::wheelEvent(QWheelEvent *event)
{
    if (!(event->modifiers() & Qt::ControlModifier)) {
        QGraphicsView::wheelEvent(event);
        return;
    }
    zoomAt(event->position().toPoint(),
           std::pow(2.0, event->angleDelta().y() / WheelUnitsForDouble));
    event->accept();
}

void ZoomView::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    if (m_isFitted)
        fit();
}
