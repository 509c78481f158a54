#pragma once

#include "flipbook/object/stillframes.h"

#include <QtCore/QPointer>
#include <QtWidgets/QGraphicsView>

class CBaseObject;
class Document;
class Page;
class QLabel;
class QTimer;

/// A page in full screen, as large as fits, on black. Objects are hit on their opaque pixels: a
/// click plays or stops one, and a background is moved by dragging it or by the arrow keys. Escape
/// ends it. While it lives the document is in its alternate mode; afterwards the page is as it was.
class Presentation : public QGraphicsView
{
    Q_OBJECT

public:
    /// @p plays: films start at once.
    Presentation(Document &document, Page &page, bool plays);
    ~Presentation() override;

    /// Shows a line at the lower edge, which fades after a while.
    void showHint(const QString &text);

    static constexpr int HidePointerMs = 2000;
    static constexpr int HideHintMs = 4000;
    static constexpr int HintMargin = 16;

Q_SIGNALS:
    void ended();

protected:
    void drawBackground(QPainter *painter, const QRectF &exposed) override;
    void drawForeground(QPainter *painter, const QRectF &exposed) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void closeEvent(QCloseEvent *event) override;

private:
    void fit();
    void placeHint();
    void start(bool plays);
    void end();
    CBaseObject *hit(const QPointF &point) const;
    CBaseObject *background() const;
    void scroll(CBaseObject &object, const QPointF &way);
    void showPointer();

    Document &m_document;
    Page &m_page;
    StillFrames m_stills;
    QPointer<CBaseObject> m_pressed;
    QPointF m_last;
    bool m_wasDragged = false;
    bool m_hasEnded = false;
    QTimer *m_pointerTimer;
    QLabel *m_hint = nullptr;
};
