#pragma once

#include "flipbook/window/page/selectiontool.h"

#include <QtWidgets/QGraphicsView>

class Page;
class QMimeData;
class QPinchGesture;
class Session;

/// Shows a page on a desk, at any zoom. The mouse and the arrow keys work on its objects through
/// the selection tool.
class PageView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit PageView(Session &session, QWidget *parent = nullptr);

    /// Pixels on the screen for a unit of the page.
    double zoom() const;
    /// Bounded by MinZoom and MaxZoom; the middle of the view stays where it is.
    void setZoom(double zoom);
    void zoomBy(double factor);
    /// Shows the whole page, also when the view is resized, until another zoom is chosen.
    void fit();
    bool isFitted() const { return m_isFitted; }

    SelectionTool &tool() { return m_tool; }

    static constexpr double MinZoom = 0.05;
    static constexpr double MaxZoom = 32.0;

Q_SIGNALS:
    void zoomChanged(double zoom);
    /// The space bar was pressed and let go without dragging.
    void spaceTapped();
    /// Something was dropped at @p place, in page coordinates.
    void dropped(const QMimeData *data, const QPointF &place);
    /// The page is painted: others may paint over its objects. In page coordinates.
    void paintsOverPage(QPainter &painter);
    /// A line for the status bar; empty when there is nothing to say any more.
    void hinted(const QString &text);

protected:
    bool event(QEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void drawBackground(QPainter *painter, const QRectF &exposed) override;
    void drawForeground(QPainter *painter, const QRectF &exposed) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void showPage(Page *page);
    void applyZoom(double zoom);
    /// What is at @p position, in pixels of the view, stays there.
    void zoomAt(const QPoint &position, double factor);
    void pinch(const QPinchGesture &gesture);
    void paintFocus(QPainter &painter) const;
    void startPanning(const QPoint &position);
    void updateSceneRect();

    Session &m_session;
    SelectionTool m_tool;
    bool m_isFitted = true;
    bool m_spaceIsDown = false;
    bool m_spaceWasUsed = false;
    bool m_isPanning = false;
    bool m_showsFocus = false;
    QPoint m_lastPan;
};
