#pragma once

#include "flipbook/window/actionset.h"
#include "flipbook/window/session.h"

#include <QtWidgets/QMainWindow>

class FileController;
class FramePanel;
class ImportController;
class MessageBar;
class PagesPanel;
class PageView;
class PlayController;
class PresentController;
class QDockWidget;
class Recovery;
class QLabel;

/// The window: the page in the middle, the panels around it, menus and tool bar. It puts together
/// what the others do and does nothing itself.
class MainWindow : public QMainWindow
{
    Q_OBJECT

public:
    /// @p plugin must outlive the window.
    explicit MainWindow(const Plugin &plugin, QWidget *parent = nullptr);
    ~MainWindow() override;

    /// Opens a document, or puts films and pictures on the page. What goes wrong is told in the
    /// message bar.
    void openFiles(const QStringList &paths);

    Session &session() { return m_session; }
    ActionSet &actions() { return m_actions; }
    PageView &view() { return *m_view; }
    FramePanel &frames() { return *m_frames; }
    FileController &files() { return *m_files; }
    PresentController &presenter() { return *m_present; }
    ImportController &importer() { return *m_import; }
    MessageBar &messages() { return *m_messages; }

protected:
    void closeEvent(QCloseEvent *event) override;

private:
    void makeCenter();
    void makeDocks();
    QDockWidget *addDock(const QString &id, const QString &title, QWidget *panel,
                         Qt::DockWidgetArea area);
    void makeControllers();
    void makeViewActions();
    void makeMenus();
    void makeToolBar();
    void makeStatusBar();
    void resetLayout();
    void updateTitle();
    void updateSelectionText();

    Session m_session;
    ActionSet m_actions;
    PageView *m_view;
    MessageBar *m_messages;
    PagesPanel *m_pages;
    FramePanel *m_frames;
    FileController *m_files;
    ImportController *m_import;
    PlayController *m_play;
    PresentController *m_present;
    Recovery *m_recovery;
    QList<QDockWidget *> m_docks;
    QLabel *m_selectionText;
};
