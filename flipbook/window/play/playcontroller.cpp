#include "flipbook/window/play/playcontroller.h"

#include "flipbook/object/animatedobject.h"
#include "flipbook/object/objectprotocol.h"
#include "flipbook/window/actionset.h"
#include "flipbook/window/icons/icons.h"
#include "flipbook/window/session.h"
#include "framework/framework.h"
#include "host/notificationcodes.h"
#include "host/specialpropertyids.h"

#include <QtWidgets/QAction>

#include <algorithm>

namespace
{

QList<CBaseObject *> films(const Session &session)
{
    const QList<CBaseObject *> selected = session.selection();
    if (!selected.isEmpty() || !session.page())
        return selected;
    return session.page()->objects();
}

bool anyPlays(const QList<CBaseObject *> &objects)
{
    return std::any_of(objects.begin(), objects.end(),
                       [](CBaseObject *object) { return AnimatedObject(*object).isPlaying(); });
}

} // namespace

PlayController::PlayController(Session &session, ActionSet &actions)
    : QObject(&actions)
    , m_session(session)
    , m_play(actions.add({QStringLiteral("play"),
                          tr("&Play"),
                          QStringLiteral("media-playback-start"),
                          {QKeySequence(Qt::Key_Space)},
                          tr("Play or stop")}))
    , m_next(actions.add({QStringLiteral("next-frame"),
                          tr("&Next frame"),
                          QStringLiteral("media-skip-forward"),
                          {QKeySequence(Qt::Key_Period)},
                          QString()}))
    , m_previous(actions.add({QStringLiteral("previous-frame"),
                              tr("P&revious frame"),
                              QStringLiteral("media-skip-backward"),
                              {QKeySequence(Qt::Key_Comma)},
                              QString()}))
{
    connect(m_play, &QAction::triggered, this, &PlayController::togglePlaying);
    connect(m_next, &QAction::triggered, this, [this] { step(SpecialPropertyId::ShowNextFrame); });
    connect(m_previous, &QAction::triggered, this,
            [this] { step(SpecialPropertyId::ShowPreviousFrame); });
    connect(&session, &Session::selectionChanged, this, &PlayController::update);
    connect(&session.undoStack(), &QUndoStack::indexChanged, this, &PlayController::update);
    connect(Framework::instance().notifier(), &Notifier::posted, this, [this](int id) {
        if (id == MessageId::SettingValues)
            update();
    });
    update();
}

void PlayController::togglePlaying()
{
    const QList<CBaseObject *> objects = films(m_session);
    const bool play = !anyPlays(objects);
    for (CBaseObject *object : objects)
        AnimatedObject(*object).setPlaying(play);
    update();
}

void PlayController::step(int id)
{
    const QList<CBaseObject *> objects = films(m_session);
    for (CBaseObject *object : objects)
        ObjectProtocol::tell(*object, id);
    update();
}

void PlayController::update()
{
    const QList<CBaseObject *> objects = films(m_session);
    const bool plays = anyPlays(objects);
    m_play->setText(plays ? tr("Sto&p") : tr("&Play"));
    m_play->setIcon(Icons::icon(plays ? QStringLiteral("media-playback-stop")
                                      : QStringLiteral("media-playback-start")));
    for (QAction *action : {m_play, m_next, m_previous})
        action->setEnabled(!objects.isEmpty());
}
