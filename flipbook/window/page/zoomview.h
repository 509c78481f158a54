#pragma once

#include <QtWidgets/QGraphicsView>

class QPinchGesture;

/// A view at any zoom: by the wheel with Ctrl, by two fingers, or fitted to its contents, also when
/// it is resized.
class ZoomView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit ZoomView(QWidget *parent = nullptr);

    /// Pixels on the screen for a unit of the page.
    double zoom() const;
    /// Bounded by MinZoom and MaxZoom; the middle of the view stays where it is.
    void setZoom(double zoom);
    void zoomBy(double factor);
    /// Shows the whole page, also when the view is resized, until another zoom is chosen.
    void fit();
    bool isFitted() const { return m_isFitted; }

    static constexpr double MinZoom = 0.05;
    static constexpr double MaxZoom = 32.0;

Q_SIGNALS:
    void zoomChanged(double zoom);
    /// Two fingers zoom: what one of them had begun is to end.
    void pinched();

protected:
    bool viewportEvent(QEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

    /// What fit() shows, in page coordinates; a rectangle without a size for nothing.
    virtual QRectF contents() const = 0;

private:
    void applyZoom(double zoom);
    /// What is at @p position, in pixels of the view, stays there.
    void zoomAt(const QPoint &position, double factor);
    void pinch(const QPinchGesture &gesture);

    bool m_isFitted = true;
};
