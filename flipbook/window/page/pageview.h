#pragma once

#include "flipbook/window/page/selectiontool.h"
#include "flipbook/window/page/zoomview.h"

class Page;
class QMimeData;
class Session;

/// Shows a page on a desk. The mouse and the arrow keys work on its objects through the selection
/// tool.
class PageView : public ZoomView
{
    Q_OBJECT

public:
    explicit PageView(Session &session, QWidget *parent = nullptr);

    SelectionTool &tool() { return m_tool; }

Q_SIGNALS:
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
    QRectF contents() const override;
    void drawBackground(QPainter *painter, const QRectF &exposed) override;
    void drawForeground(QPainter *painter, const QRectF &exposed) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dropEvent(QDropEvent *event) override;

private:
    void showPage(Page *page);
    void paintFocus(QPainter &painter) const;
    void startPanning(const QPoint &position);
    void updateSceneRect();

    Session &m_session;
    SelectionTool m_tool;
    bool m_spaceIsDown = false;
    bool m_spaceWasUsed = false;
    bool m_isPanning = false;
    bool m_showsFocus = false;
    QPoint m_lastPan;
};
