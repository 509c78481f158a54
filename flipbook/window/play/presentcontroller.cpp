#include "flipbook/window/play/presentcontroller.h"

#include "flipbook/window/actionset.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/play/presentation.h"
#include "flipbook/window/session.h"
#include "flipbook/window/settings.h"

#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QStyle>

namespace
{

const QLatin1String NeverPlayKey("play/never");
const QLatin1String HintShownKey("presentation/hintShown");

} // namespace

bool playsByItself()
{
    const bool reducesMotion =
        QApplication::style()->styleHint(QStyle::SH_Widget_Animation_Duration) == 0;
    return !reducesMotion && !WindowSettings().value(NeverPlayKey).toBool();
}

PresentController::PresentController(Session &session, ActionSet &actions, PageView &view,
                                     QWidget &window)
    : QObject(&window)
    , m_session(session)
    , m_view(view)
    , m_window(window)
{
    connect(actions.add({QStringLiteral("present"),
                         tr("Pre&sent"),
                         QStringLiteral("view-presentation"),
                         {QKeySequence(Qt::Key_F5)},
                         tr("Show the page in full screen")}),
            &QAction::triggered, this, &PresentController::present);
    QAction *never = actions.add({QStringLiteral("never-play"),
                                  tr("Never play by &itself"),
                                  QString(),
                                  {},
                                  tr("Animations play only when you start them")});
    never->setCheckable(true);
    never->setChecked(WindowSettings().value(NeverPlayKey).toBool());
    connect(never, &QAction::toggled, this,
            [](bool on) { WindowSettings().setValue(NeverPlayKey, on); });
}

PresentController::~PresentController()
{
    delete m_presentation;
}

Presentation *PresentController::presentation() const
{
    return m_presentation;
}

void PresentController::present()
{
    if (!m_session.page() || m_presentation)
        return;
    m_selected.clear();
    const QList<CBaseObject *> selected = m_session.selection();
    for (CBaseObject *object : selected)
        m_selected.append(object);
    // Two views of one scene would paint each other's mode.
    m_view.setScene(nullptr);
    m_presentation = new Presentation(m_session.document(), *m_session.page(), playsByItself());
    m_presentation->setAttribute(Qt::WA_DeleteOnClose);
    connect(m_presentation, &Presentation::ended, this, &PresentController::comeBack);
    m_presentation->showFullScreen();
    m_presentation->setFocus();
    WindowSettings settings;
    if (!settings.value(HintShownKey).toBool())
        m_presentation->showHint(
            tr("Click an animation to play or stop it. Press Escape to end the presentation."));
    settings.setValue(HintShownKey, true);
}

void PresentController::comeBack()
{
    m_presentation.clear(); // it deletes itself
    m_view.setScene(m_session.page());
    QList<CBaseObject *> selected;
    for (const QPointer<QObject> &object : qAsConst(m_selected)) {
        if (auto *base = qobject_cast<CBaseObject *>(object))
            selected.append(base);
    }
    if (m_session.page())
        m_session.page()->selectObjects(selected);
    m_window.activateWindow();
}
