#include "flipbook/window/progress.h"

#include <QtCore/QEvent>
#include <QtGui/QKeyEvent>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProgressBar>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolButton>

namespace
{

constexpr int Thousandths = 1000;

bool isInput(QEvent::Type type)
{
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::MouseMove:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::Close:
        return true;
    default:
        return false;
    }
}

} // namespace

Progress::Progress(QStatusBar &bar, int firstTurnMs)
    : m_bar(bar)
    , m_lastStepMs(firstTurnMs - StepMs)
{
    m_time.start();
    qApp->installEventFilter(this);
}

Progress::~Progress()
{
    qApp->removeEventFilter(this);
    for (QWidget *widget : {static_cast<QWidget *>(m_text), static_cast<QWidget *>(m_progress),
                            static_cast<QWidget *>(m_cancel)}) {
        if (widget) {
            m_bar.removeWidget(widget);
            widget->deleteLater();
        }
    }
}

void Progress::show()
{
    m_bar.clearMessage();
    m_text = new QLabel;
    m_progress = new QProgressBar;
    m_progress->setRange(0, Thousandths);
    m_progress->setMaximumWidth(240);
    m_progress->setTextVisible(false);
    m_cancel = new QToolButton;
    m_cancel->setText(tr("Cancel"));
    m_cancel->setObjectName(QStringLiteral("cancelProgress"));
    connect(m_cancel, &QToolButton::clicked, this, [this] { m_isCancelled = true; });
    m_bar.addWidget(m_text);
    m_bar.addWidget(m_progress);
    m_bar.addWidget(m_cancel);
    m_cancel->setFocus();
}

void Progress::step(const QString &text, qint64 done, qint64 all)
{
    const qint64 now = m_time.elapsed();
    if (now - m_lastStepMs < StepMs)
        return;
    m_lastStepMs = now;
    if (!m_progress && now >= ShowAfterMs)
        show();
    if (m_progress) {
        m_text->setText(text);
        m_progress->setValue(all > 0 ? int(done * Thousandths / all) : 0);
    }
    QApplication::processEvents();
    m_lastStepMs = m_time.elapsed();
    if (m_isCancelled)
        throw Cancelled{};
}

bool Progress::eventFilter(QObject *watched, QEvent *event)
{
    if (!isInput(event->type()))
        return false;
    if (watched == m_cancel)
        return false;
    const bool isEscape = event->type() == QEvent::KeyPress &&
                          static_cast<const QKeyEvent *>(event)->key() == Qt::Key_Escape;
    if (isEscape)
        m_isCancelled = true;
    // Windows of the platform hand input on to widgets, which are looked at in their turn.
    return watched->isWidgetType() || event->type() == QEvent::Shortcut;
}
