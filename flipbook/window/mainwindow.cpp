#include "flipbook/window/mainwindow.h"

#include "flipbook/window/edit/arrangecontroller.h"
#include "flipbook/window/edit/editcontroller.h"
#include "flipbook/window/edit/pagecontroller.h"
#include "flipbook/window/filecontroller.h"
#include "flipbook/window/frames/framecontroller.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/help/helpcontroller.h"
#include "flipbook/window/historybudget.h"
#include "flipbook/window/icons/icons.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/lists/draglist.h"
#include "flipbook/window/menus.h"
#include "flipbook/window/messagebar.h"
#include "flipbook/window/output/exportcontroller.h"
#include "flipbook/window/page/emptyhint.h"
#include "flipbook/window/page/onionskin.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/panels/historyview.h"
#include "flipbook/window/panels/objectpanel.h"
#include "flipbook/window/panels/pagespanel.h"
#include "flipbook/window/play/playcontroller.h"
#include "flipbook/window/play/presentcontroller.h"
#include "flipbook/window/recovery/recovery.h"
#include "flipbook/window/settings.h"
#include "flipbook/window/undocontroller.h"
#include "flipbook/window/zoomcontroller.h"

#include <QtCore/QMimeData>
#include <QtGui/QCloseEvent>
#include <QtWidgets/QAction>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QLabel>
#include <QtWidgets/QMenuBar>
#include <QtWidgets/QStatusBar>
#include <QtWidgets/QToolBar>
#include <QtWidgets/QUndoView>
#include <QtWidgets/QVBoxLayout>

namespace
{

const QLatin1String GeometryKey("window/geometry");
const QLatin1String LayoutKey("window/layout");
constexpr int LayoutVersion = 1;

} // namespace

MainWindow::MainWindow(const Plugin &plugin, QWidget *parent)
    : QMainWindow(parent)
    , m_session(plugin)
    , m_actions(*this)
{
    resize(1280, 800);
    makeCenter();
    makeDocks();
    makeControllers();
    makeViewActions();
    makeToolBar();
    makeMenus();
    makeStatusBar();
    connect(&m_session, &Session::fileStateChanged, this, &MainWindow::updateTitle);
    connect(&m_session, &Session::selectionChanged, this, &MainWindow::updateSelectionText);
    connect(&m_session.undoStack(), &QUndoStack::indexChanged, this,
            &MainWindow::updateSelectionText);
    updateTitle();
    resetLayout();
    const WindowSettings settings;
    restoreGeometry(settings.value(GeometryKey).toByteArray());
    restoreState(settings.value(LayoutKey).toByteArray(), LayoutVersion);
    m_view->setFocus();
}

MainWindow::~MainWindow()
{
    // The panels look at the session and its objects: they go first.
    delete m_present;
    delete m_recovery;
    m_session.disconnect();
    m_view->setScene(nullptr);
    qDeleteAll(m_docks);
}

void MainWindow::makeCenter()
{
    auto *center = new QWidget;
    auto *layout = new QVBoxLayout(center);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    m_messages = new MessageBar;
    m_view = new PageView(m_session);
    layout->addWidget(m_messages);
    layout->addWidget(m_view, 1);
    setCentralWidget(center);
}

QDockWidget *MainWindow::addDock(const QString &id, const QString &title, QWidget *panel,
                                 Qt::DockWidgetArea area)
{
    auto *dock = new QDockWidget(title, this);
    dock->setObjectName(id);
    dock->setWidget(panel);
    addDockWidget(area, dock);
    m_docks.append(dock);
    return dock;
}

void MainWindow::makeDocks()
{
    setCorner(Qt::BottomLeftCorner, Qt::BottomDockWidgetArea);
    setCorner(Qt::BottomRightCorner, Qt::RightDockWidgetArea);
    m_pages = new PagesPanel(m_session);
    addDock(QStringLiteral("pagesDock"), tr("Pages"), m_pages, Qt::LeftDockWidgetArea);
    addDock(QStringLiteral("objectDock"), tr("Object"), new ObjectPanel(m_session),
            Qt::RightDockWidgetArea);
    addDock(QStringLiteral("historyDock"), tr("History"), new HistoryView(m_session.undoStack()),
            Qt::RightDockWidgetArea);
    m_frames = new FramePanel(m_session);
    addDock(QStringLiteral("framesDock"), tr("Frames"), m_frames, Qt::BottomDockWidgetArea);
}

void MainWindow::makeControllers()
{
    m_files = new FileController(m_session, m_actions, *m_messages, *this);
    m_import = new ImportController(m_session, m_actions, *m_messages, *this);
    new UndoController(m_session, m_actions);
    m_play = new PlayController(m_session, m_actions);
    new ZoomController(*m_view, m_actions, *this);
    new OnionSkin(m_session, *m_view, m_actions);
    connect(m_view, &PageView::dropped, m_import, &ImportController::dropOnPage);
    connect(m_import, &ImportController::documentFound, m_files, &FileController::open);
    auto *frames = new FrameController(m_session, m_actions, *m_frames, *m_import, *m_messages);
    new EditController(m_session, m_actions, m_frames->strip(), *frames, *m_import);
    new ArrangeController(m_session, m_actions);
    auto *pages = new PageController(m_session, m_actions);
    connect(&m_pages->list(), &DragList::moveWanted, pages,
            [pages](const QVector<int> &rows, int before) { pages->move(rows.first(), before); });
    connect(&m_pages->list(), &DragList::copyWanted, pages,
            [pages](const QVector<int> &rows, int before) { pages->copy(rows.first(), before); });
    new ExportController(m_session, m_actions, *m_messages, *this);
    new HelpController(m_actions, *this);
    new HistoryBudget(m_session, *m_messages, this);
    m_recovery = new Recovery(m_session, *m_messages, this);
    m_recovery->offer();
    m_present = new PresentController(m_session, m_actions, *m_view, *this);
    new EmptyHint(m_session, *m_view, *m_actions.action(QStringLiteral("import")));
    connect(m_view, &PageView::spaceTapped, m_play, &PlayController::togglePlaying);
    m_frames->addButtons(m_actions,
                         {QStringLiteral("previous-frame"), QStringLiteral("play"),
                          QStringLiteral("next-frame"), QString(), QStringLiteral("insert-frames"),
                          QStringLiteral("insert-blank-frame"), QStringLiteral("duplicate-frames"),
                          QStringLiteral("reverse-frames"), QStringLiteral("delete-frames")});
}

void MainWindow::makeViewActions()
{
    for (QDockWidget *dock : qAsConst(m_docks))
        m_actions.add(QStringLiteral("show-") + dock->objectName(), dock->toggleViewAction());
    connect(m_actions.add({QStringLiteral("reset-layout"),
                           tr("&Reset layout"),
                           QString(),
                           {},
                           tr("Restore the original positions of all panels")}),
            &QAction::triggered, this, &MainWindow::resetLayout);
    connect(m_actions.add({QStringLiteral("quit"), tr("&Quit"), QStringLiteral("application-exit"),
                           standardKeys(QKeySequence::Quit), QString()}),
            &QAction::triggered, this, &MainWindow::close);
}

void MainWindow::makeMenus()
{
    fillMenuBar(*menuBar(), m_actions);
}

void MainWindow::makeToolBar()
{
    QToolBar *bar = addToolBar(tr("Tools"));
    bar->setObjectName(QStringLiteral("toolBar"));
    fillToolBar(*bar, m_actions);
    m_actions.add(QStringLiteral("show-toolBar"), bar->toggleViewAction());
}

void MainWindow::makeStatusBar()
{
    m_selectionText = new QLabel;
    statusBar()->addPermanentWidget(m_selectionText);
    connect(m_view, &PageView::hinted, this, [this](const QString &text) {
        if (text.isEmpty())
            statusBar()->clearMessage();
        else
            statusBar()->showMessage(text);
    });
}

void MainWindow::resetLayout()
{
    const QList<Qt::DockWidgetArea> areas = {Qt::LeftDockWidgetArea, Qt::RightDockWidgetArea,
                                             Qt::RightDockWidgetArea, Qt::BottomDockWidgetArea};
    for (int i = 0; i < m_docks.size(); ++i) {
        m_docks[i]->setFloating(false);
        addDockWidget(areas.at(i), m_docks[i]);
        m_docks[i]->show();
    }
    resizeDocks({m_docks[0], m_docks[1]}, {150, 260}, Qt::Horizontal);
    resizeDocks({m_docks[1], m_docks[2]}, {420, 200}, Qt::Vertical);
    resizeDocks({m_docks[3]}, {200}, Qt::Vertical);
}

void MainWindow::updateTitle()
{
    setWindowTitle(tr("%1[*] - Flipbook").arg(m_session.title()));
    setWindowFilePath(m_session.path());
    setWindowModified(m_session.isDirty());
}

void MainWindow::updateSelectionText()
{
    const QList<CBaseObject *> selected = m_session.selection();
    if (selected.size() > 1) {
        m_selectionText->setText(tr("%1 objects").arg(selected.size()));
    } else if (selected.size() == 1) {
        const QSizeF size = selected.first()->getSize();
        m_selectionText->setText(
            tr("%1 × %2").arg(qRound(size.width())).arg(qRound(size.height())));
    } else {
        m_selectionText->clear();
    }
}

void MainWindow::openFiles(const QStringList &paths)
{
    // Documents are opened, and everything else goes on the page.
    m_import->importToPage(paths);
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    if (!m_files->mayLose()) {
        event->ignore();
        return;
    }
    WindowSettings settings;
    settings.setValue(GeometryKey, saveGeometry());
    settings.setValue(LayoutKey, saveState(LayoutVersion));
    event->accept();
}
