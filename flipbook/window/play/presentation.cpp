#include "flipbook/window/play/presentation.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/object/objectprotocol.h"
#include "framework/document.h"
#include "framework/page.h"
#include "host/specialpropertyids.h"

#include <QtCore/QTimer>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>

#include <algorithm>

namespace
{

constexpr qint32 BackgroundType = 1;
constexpr double KeyStep = 20.0;

bool isBackground(CBaseObject &object)
{
    return ObjectProtocol::ask<qint32>(object, SpecialPropertyId::AnimatedType) == BackgroundType;
}

} // namespace

Presentation::Presentation(Document &document, Page &page, bool plays)
    : QGraphicsView(&page)
    , m_document(document)
    , m_page(page)
    , m_stills(document)
    , m_pointerTimer(new QTimer(this))
{
    setObjectName(QStringLiteral("presentation"));
    setAccessibleName(tr("Presentation"));
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    setViewportUpdateMode(FullViewportUpdate);
    setSceneRect(page.pageRect());
    viewport()->setMouseTracking(true);
    m_pointerTimer->setObjectName(QStringLiteral("pointerTimer"));
    m_pointerTimer->setSingleShot(true);
    m_pointerTimer->setInterval(HidePointerMs);
    connect(m_pointerTimer, &QTimer::timeout, this,
            [this] { viewport()->setCursor(Qt::BlankCursor); });
    start(plays);
    showPointer();
}

Presentation::~Presentation()
{
    end();
}

void Presentation::start(bool plays)
{
    m_document.enterAlternateMode();
    const QList<CBaseObject *> objects = m_page.objects();
    for (CBaseObject *object : objects) {
        AnimatedObject animated(*object);
        if (plays && !animated.isPlaying() && animated.frameCount() > 1)
            animated.setPlaying(true);
    }
}

void Presentation::end()
{
    if (m_hasEnded)
        return;
    m_hasEnded = true;
    setScene(nullptr);
    m_document.leaveAlternateMode();
    m_stills.restore();
    Q_EMIT ended();
}

void Presentation::closeEvent(QCloseEvent *event)
{
    end();
    QGraphicsView::closeEvent(event);
}

void Presentation::showHint(const QString &text)
{
    m_hint = new QLabel(text, this);
    m_hint->setObjectName(QStringLiteral("presentationHint"));
    m_hint->setStyleSheet(QStringLiteral("color: white; background: rgba(0, 0, 0, 160); "
                                         "padding: 8px; border-radius: 4px"));
    placeHint();
    m_hint->show();
    auto *timer = new QTimer(m_hint);
    timer->setObjectName(QStringLiteral("hintTimer"));
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, m_hint, &QLabel::hide);
    timer->start(HideHintMs);
}

/// In the middle, near the lower edge; in several lines where one is too long.
void Presentation::placeHint()
{
    const int most = std::max(1, width() - 2 * HintMargin);
    m_hint->setWordWrap(false);
    m_hint->setWordWrap(m_hint->sizeHint().width() > most);
    m_hint->setFixedWidth(m_hint->wordWrap() ? most : m_hint->sizeHint().width());
    m_hint->adjustSize();
    m_hint->move((width() - m_hint->width()) / 2,
                 std::max(0, height() - m_hint->height() - 2 * HintMargin));
}

void Presentation::fit()
{
    const QSizeF page = m_page.pageRect().size();
    const double zoom =
        std::min(viewport()->width() / page.width(), viewport()->height() / page.height());
    setTransform(QTransform::fromScale(zoom, zoom));
    centerOn(m_page.pageRect().center());
}

void Presentation::resizeEvent(QResizeEvent *event)
{
    QGraphicsView::resizeEvent(event);
    fit();
    if (m_hint)
        placeHint();
}

void Presentation::drawBackground(QPainter *painter, const QRectF &exposed)
{
    painter->fillRect(exposed, Qt::black);
    painter->fillRect(m_page.pageRect(), Qt::white);
}

/// Hides what is outside the page.
void Presentation::drawForeground(QPainter *painter, const QRectF &exposed)
{
    QPainterPath outside;
    outside.addRect(exposed);
    outside.addRect(m_page.pageRect());
    painter->setRenderHint(QPainter::Antialiasing, false);
    painter->fillPath(outside, Qt::black);
}

CBaseObject *Presentation::hit(const QPointF &point) const
{
    if (!m_page.pageRect().contains(point))
        return nullptr;
    const QList<CBaseObject *> objects = m_page.objects();
    for (auto object = objects.rbegin(); object != objects.rend(); ++object) {
        if ((*object)->shape().contains((*object)->mapFromScene(point)))
            return *object;
    }
    return nullptr;
}

CBaseObject *Presentation::background() const
{
    const QList<CBaseObject *> objects = m_page.objects();
    const auto found = std::find_if(objects.rbegin(), objects.rend(),
                                    [](CBaseObject *object) { return isBackground(*object); });
    return found == objects.rend() ? nullptr : *found;
}

/// Moves the pattern, not the object: in the alternate mode its position is that of the pattern.
void Presentation::scroll(CBaseObject &object, const QPointF &way)
{
    object.setPos(object.getPos() + way, true);
    viewport()->update();
}

void Presentation::showPointer()
{
    viewport()->setCursor(Qt::ArrowCursor);
    m_pointerTimer->start();
}

void Presentation::keyPressEvent(QKeyEvent *event)
{
    CBaseObject *object = background();
    switch (event->key()) {
    case Qt::Key_Escape:
        close();
        return;
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (object)
            scroll(*object, {event->key() == Qt::Key_Left ? -KeyStep : KeyStep, 0});
        return;
    case Qt::Key_Up:
    case Qt::Key_Down:
        if (object)
            scroll(*object, {0, event->key() == Qt::Key_Up ? -KeyStep : KeyStep});
        return;
    default:
        event->ignore();
    }
}

void Presentation::mousePressEvent(QMouseEvent *event)
{
    showPointer();
    m_last = mapToScene(event->pos());
    m_pressed = hit(m_last);
    m_wasDragged = false;
}

void Presentation::mouseMoveEvent(QMouseEvent *event)
{
    showPointer();
    if (!m_pressed || !(event->buttons() & Qt::LeftButton) || !isBackground(*m_pressed))
        return;
    const QPointF now = mapToScene(event->pos());
    const QPointF way = now - m_last;
    if (!m_wasDragged && way.manhattanLength() < QApplication::startDragDistance())
        return;
    m_wasDragged = true;
    m_last = now;
    scroll(*m_pressed, way);
}

void Presentation::mouseReleaseEvent(QMouseEvent *)
{
    if (m_pressed && !m_wasDragged) {
        AnimatedObject animated(*m_pressed);
        animated.setPlaying(!animated.isPlaying());
    }
    m_pressed = nullptr;
}

void Presentation::wheelEvent(QWheelEvent *event)
{
    event->accept();
}
