#include "flipbook/window/panels/objectpanel.h"

#include "flipbook/window/commands/commandids.h"
#include "flipbook/window/panels/objecteditor.h"
#include "flipbook/window/panels/settingsform.h"
#include "flipbook/window/session.h"
#include "framework/framework.h"

#include <QtCore/QTimer>
#include <QtWidgets/QLabel>
#include <QtWidgets/QStyle>
#include <QtWidgets/QVBoxLayout>

#include <utility>

ObjectPanel::ObjectPanel(Session &session, QWidget *parent)
    : QScrollArea(parent)
    , m_session(session)
    , m_empty(new QLabel(tr("Select an object to change it.")))
    , m_form(new ObjectEditor(session))
    , m_settings(new SettingsForm(session))
{
    setFrameShape(QFrame::NoFrame);
    // Its controls have the focus.
    setFocusPolicy(Qt::NoFocus);
    setWidgetResizable(true);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    auto *content = new QWidget;
    auto *layout = new QVBoxLayout(content);
    m_empty->setWordWrap(true);
    m_empty->setEnabled(false);
    layout->addWidget(m_empty);
    layout->addWidget(m_form);
    auto *heading = new QLabel(tr("Animation"));
    QFont bold = heading->font();
    bold.setBold(true);
    heading->setFont(bold);
    heading->setBuddy(m_settings);
    m_settingsHeading = heading;
    layout->addSpacing(style()->pixelMetric(QStyle::PM_LayoutVerticalSpacing));
    layout->addWidget(heading);
    layout->addWidget(m_settings);
    layout->addStretch();
    setWidget(content);
    setMinimumWidth(content->sizeHint().width());

    connect(&session, &Session::selectionChanged, this, &ObjectPanel::followSelection);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &ObjectPanel::noteStep);
    connect(Framework::instance().notifier(), &Notifier::propertyChanged, this,
            [this](CBaseObject *object) {
                if (object->isSelected())
                    scheduleRefresh();
            });
    followSelection();
}

void ObjectPanel::followSelection()
{
    const QList<CBaseObject *> selected = m_session.selection();
    m_empty->setVisible(selected.isEmpty());
    m_form->setVisible(!selected.isEmpty());
    m_settings->setVisible(selected.size() == 1);
    m_settingsHeading->setVisible(selected.size() == 1);
    m_settings->setObject(m_session.film());
    m_form->refresh();
}

/// Any step may change any value, but for those that move, resize or rotate: there may be many of
/// them in a second.
void ObjectPanel::noteStep(int index)
{
    const QUndoCommand *step = index > 0 ? m_session.undoStack().command(index - 1) : nullptr;
    const bool isNew = index == m_stepCount || index == m_stepCount + 1;
    m_stepCount = index;
    if (!step || !isNew || step->id() != CommandId::Geometry)
        m_ratioIsDue = true;
    scheduleRefresh();
}

/// A step may tell of several changes: one look at the end is enough.
void ObjectPanel::scheduleRefresh()
{
    if (m_refreshIsDue)
        return;
    m_refreshIsDue = true;
    QTimer::singleShot(0, this, [this] {
        m_refreshIsDue = false;
        m_form->refresh(std::exchange(m_ratioIsDue, false));
    });
}
