#pragma once

#include "flipbook/window/mainwindow.h"
#include "flipbook/window/page/pageview.h"

#include <QtCore/QTemporaryDir>

#include <functional>
#include <memory>

class QListView;

/// The real window, shown, with its own settings file.
class WindowFixture
{
public:
    WindowFixture();
    ~WindowFixture();

    MainWindow &window() { return *m_window; }
    Session &session() { return m_window->session(); }
    PageView &view() { return m_window->view(); }
    Page &page() { return *session().page(); }
    QString path(const QString &name) const { return m_folder.filePath(name); }
    /// Writes a picture of one colour as path(@p name), and returns that.
    QString writePicture(const QString &name, const QColor &colour, const QSize &size = {40, 30});

    /// Closes the window and opens another one with the same settings.
    void reopen();

    /// A film of solid frames of these colours on the shown page, at @p pos; each frame is
    /// 40 x 30 pixels. Not undoable.
    CBaseObject &addFilm(const QList<QColor> &colours, const QPointF &pos = QPointF(100, 100));

    /// Chooses the action as a menu does; fails the test when it is missing or disabled.
    void trigger(const char *id);
    bool isEnabled(const char *id);

    /// Mouse on the page, at places in its coordinates.
    void press(const QPointF &place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void moveTo(const QPointF &place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    /// The same in pixels of the view.
    void movePointer(const QPoint &position, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void release(const QPointF &place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void drag(const QPointF &from, const QPointF &to,
              Qt::KeyboardModifiers modifiers = Qt::NoModifier);
    void click(const QPointF &place, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

    /// Drags a row of a list with the mouse to @p place, in pixels of its contents. @p whileThere
    /// is called before the button is let go, and Escape pressed in its place if it answers false.
    void dragRow(QListView &list, int row, const QPoint &place,
                 Qt::KeyboardModifiers modifiers = Qt::NoModifier,
                 const std::function<bool()> &whileThere = nullptr);

    /// Drops files on a view's contents, at a position in its pixels, and lets the window work.
    void drop(QWidget &viewport, const QPoint &position, const QStringList &files);
    /// The same on the page, at a place in its coordinates.
    void dropOnPage(const QPointF &place, const QStringList &files);
    /// Presses the button with this text in the message bar.
    void choose(const QString &text);

    /// The texts of the history, from the first step.
    QStringList history();
    QStringList messages();

    /// Presses this button of the question that comes up next.
    void answerNext(int standardButton);

    /// The names of the frames of @p object, in order.
    QStringList frameNames(CBaseObject &object) const;
    /// The colours of their middles.
    QList<QColor> frameColours(CBaseObject &object) const;

private:
    void open();

    QTemporaryDir m_folder;
    QtMessageHandler m_handlerBefore = nullptr;
    Plugin m_plugin;
    std::unique_ptr<MainWindow> m_window;
};
