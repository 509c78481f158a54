#include "flipbook/window/page/emptyhint.h"

#include "flipbook/window/page/pageview.h"
#include "flipbook/window/session.h"

#include <QtCore/QEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QVBoxLayout>

EmptyHint::EmptyHint(Session &session, PageView &view, QAction &import)
    : QWidget(view.viewport())
    , m_session(session)
    , m_view(view)
{
    setObjectName(QStringLiteral("emptyHint"));
    auto *text = new QLabel(tr("Drop a GIF, a folder or pictures here"), this);
    // On white paper, whatever the palette.
    text->setStyleSheet(QStringLiteral("color: #606060; font-size: 13pt"));
    text->setAlignment(Qt::AlignCenter);
    auto *button = new QPushButton(import.icon(), import.text(), this);
    connect(button, &QPushButton::clicked, &import, &QAction::trigger);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(text);
    layout->addWidget(button, 0, Qt::AlignCenter);
    view.viewport()->installEventFilter(this);
    connect(&session, &Session::pageShown, this, &EmptyHint::update);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &EmptyHint::update);
    connect(&view, &PageView::zoomChanged, this, &EmptyHint::update);
    update();
}

bool EmptyHint::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Resize)
        update();
    return QWidget::eventFilter(watched, event);
}

void EmptyHint::update()
{
    const Page *page = m_session.page();
    setVisible(page && page->objects().isEmpty());
    adjustSize();
    move(m_view.viewport()->rect().center() - rect().center());
}
