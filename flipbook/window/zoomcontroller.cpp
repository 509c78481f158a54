#include "flipbook/window/zoomcontroller.h"

#include "flipbook/window/actionset.h"
#include "flipbook/window/page/pageview.h"

#include <QtWidgets/QAction>

ZoomController::ZoomController(PageView &view, ActionSet &actions, QWidget &window)
    : QObject(&window)
{
    constexpr double step = 1.25;
    const auto add = [&](const ActionSet::Look &look, const std::function<void()> &act) {
        QAction *action = actions.add(look);
        connect(action, &QAction::triggered, this, act);
        return action;
    };
    // Ctrl with the key beside the backspace is meant, with or without Shift.
    add({QStringLiteral("zoom-in"),
         tr("Zoom &in"),
         QStringLiteral("zoom-in"),
         {QKeySequence(Qt::CTRL | Qt::Key_Plus), QKeySequence(Qt::CTRL | Qt::Key_Equal)},
         QString()},
        [&view] { view.zoomBy(step); });
    add({QStringLiteral("zoom-out"),
         tr("Zoom &out"),
         QStringLiteral("zoom-out"),
         {QKeySequence(Qt::CTRL | Qt::Key_Minus)},
         QString()},
        [&view] { view.zoomBy(1.0 / step); });
    QAction *original = add({QStringLiteral("zoom-original"),
                             tr("100 %"),
                             QString(),
                             {QKeySequence(Qt::CTRL | Qt::Key_1)},
                             tr("Actual size")},
                            [&view] { view.setZoom(1.0); });
    add({QStringLiteral("zoom-fit"),
         tr("&Fit page"),
         QStringLiteral("zoom-fit-best"),
         {QKeySequence(Qt::CTRL | Qt::Key_0)},
         tr("Show the whole page")},
        [&view] { view.fit(); });
    // The button in the tool bar tells the zoom; in the menu it is where it leads.
    const auto tell = [original](double zoom) {
        original->setIconText(tr("%1 %").arg(qRound(zoom * 100)));
    };
    connect(&view, &PageView::zoomChanged, this, tell);
    tell(view.zoom());
}
