#include "flipbook/window/frames/framepanel.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/counted.h"
#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QHBoxLayout>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStackedWidget>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QVBoxLayout>

FramePanel::FramePanel(Session &session, QWidget *parent)
    : QWidget(parent)
    , m_session(session)
    , m_model(new FrameModel(session.plugin(), this))
    , m_strip(new FrameStrip(*m_model, this))
    , m_buttons(new QToolBar(this))
    , m_figures(new QLabel(this))
    , m_empty(new QLabel(tr("Select an object to see its frames"), this))
    , m_stack(new QStackedWidget(this))
{
    m_empty->setAlignment(Qt::AlignCenter);
    m_empty->setEnabled(false);
    m_figures->setTextInteractionFlags(Qt::NoTextInteraction);
    m_buttons->setIconSize(QSize(16, 16));
    m_stack->addWidget(m_empty);
    m_stack->addWidget(m_strip);
    auto *head = new QHBoxLayout;
    head->setContentsMargins(6, 0, 6, 0);
    head->addWidget(m_buttons);
    head->addStretch();
    head->addWidget(m_figures);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addLayout(head);
    layout->addWidget(m_stack, 1);

    connect(&session, &Session::selectionChanged, this, &FramePanel::followSelection);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &FramePanel::updateFigures);
    connect(m_model, &QAbstractItemModel::rowsInserted, this, &FramePanel::updateFigures);
    connect(m_model, &QAbstractItemModel::rowsRemoved, this, &FramePanel::updateFigures);
    connect(m_model, &FrameModel::runningRowChanged, this, [this](int row) {
        if (row >= 0)
            m_strip->scrollTo(m_model->index(row));
    });
    connect(m_strip, &FrameStrip::frameClicked, this, &FramePanel::showFrame);
    followSelection();
}

void FramePanel::addButtons(const ActionSet &actions, const QStringList &ids)
{
    for (const QString &id : ids) {
        if (id.isEmpty())
            m_buttons->addSeparator();
        else if (QAction *action = actions.action(id))
            m_buttons->addAction(action);
    }
}

void FramePanel::followSelection()
{
    CBaseObject *film = m_session.film();
    m_model->setObject(film);
    m_empty->setText(m_session.selection().size() > 1
                         ? tr("Select a single object to see its frames")
                         : tr("Select an object to see its frames"));
    m_stack->setCurrentWidget(film ? static_cast<QWidget *>(m_strip) : m_empty);
    updateFigures();
}

void FramePanel::updateFigures()
{
    CBaseObject *film = m_session.film();
    if (!film) {
        m_figures->clear();
        return;
    }
    const AnimatedObject animated(*film);
    const int count = animated.frameCount();
    const double seconds = count * animated.intervalMs() / 1000.0;
    const int loops = animated.loopCount();
    const QString times = loops < 0    ? tr("forever")
                          : loops == 0 ? tr("once")
                                       : tr("%1 times").arg(loops + 1);
    m_figures->setText(tr("%1, %2 s, %3")
                           .arg(counted(count, tr("1 frame"), tr("%1 frames")))
                           .arg(seconds)
                           .arg(times));
}

/// Stops a film that plays: the user wants to look at this frame.
void FramePanel::showFrame(int row)
{
    CBaseObject *film = m_session.film();
    if (film && AnimatedObject(*film).shownIndex() != row)
        AnimatedObject(*film).showFrame(row);
}
