#pragma once

#include "flipbook/window/mainwindow.h"

#include <QtCore/QEvent>
#include <QtCore/QPointF>

#include <functional>

/// flipbook's window with 20 animations on its page. One of them has 500 frames, and is selected.
class WindowScene
{
public:
    WindowScene();
    Q_DISABLE_COPY(WindowScene)

    /// Seconds that pass from the beginning of @p act until @p widget was painted anew and nothing
    /// is left to do. If it is never painted, the benchmarks end.
    static double secondsToPaint(QWidget &widget, const std::function<void()> &act);

    /// Presses and releases a key as a keyboard does.
    void press(Qt::Key key);
    /// The mouse on the page, at a place in its coordinates.
    void mouse(QEvent::Type type, const QPointF &place);

    /// Whether the mouse drags the film or one of its handles.
    bool isDragging();

    void select(bool isSelected);
    /// Where a person presses to move the selected object, or to drag its lower right handle.
    QPointF middleOfFilm() const;
    QPointF cornerOfFilm() const;

    QWidget &page();
    QWidget &strip();

private:
    bool m_isApart; ///< set before the window reads its settings
    Plugin m_plugin;
    MainWindow m_window;
    CBaseObject *m_film = nullptr; ///< owned by the page
};
