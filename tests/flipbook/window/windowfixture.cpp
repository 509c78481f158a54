#include "tests/flipbook/window/windowfixture.h"

#include "flipbook/window/messagebar.h"
#include "flipbook/window/settings.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/support/pictures.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QMimeData>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QApplication>
#include <QtWidgets/QListView>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QPushButton>

namespace
{

QtMessageHandler nextHandler = nullptr;

// Without a screen Qt warns of size hints at every window, which says nothing of ours.
void dropSizeHintWarnings(QtMsgType type, const QMessageLogContext &context, const QString &text)
{
    if (text != QLatin1String("This plugin does not support propagateSizeHints()"))
        nextHandler(type, context, text);
}

} // namespace

WindowFixture::WindowFixture()
    : m_plugin(QStringLiteral(PLUGIN_FILE))
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, m_folder.path());
    m_handlerBefore = nextHandler = qInstallMessageHandler(dropSizeHintWarnings);
    qputenv("XDG_DATA_HOME", m_folder.path().toLocal8Bit());
    // Tests say when a film plays.
    WindowSettings().setValue(QStringLiteral("play/never"), true);
    open();
}

WindowFixture::~WindowFixture()
{
    m_window.reset();
    qInstallMessageHandler(m_handlerBefore);
}

void WindowFixture::open()
{
    m_window = std::make_unique<MainWindow>(m_plugin);
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    // One unit of the page is one pixel, so that the figures of the tests are those of the mouse.
    view().setZoom(1.0);
}

QString WindowFixture::writePicture(const QString &name, const QColor &colour, const QSize &size)
{
    const bool isWritten = Pictures::solid(size.width(), size.height(), colour).save(path(name));
    [&] { QVERIFY2(isWritten, qPrintable(name)); }();
    return path(name);
}

void WindowFixture::reopen()
{
    m_window->close();
    m_window.reset();
    open();
}

CBaseObject &WindowFixture::addFilm(const QList<QColor> &colours, const QPointF &pos)
{
    // Frames enter through the host interface: as a frame folder.
    const QTemporaryDir folder;
    QJsonArray list;
    for (int i = 0; i < colours.size(); ++i) {
        const QString name = QStringLiteral("%1.png").arg(i);
        Pictures::solid(40, 30, colours.at(i)).save(folder.filePath(name));
        list.append(QJsonObject{{QStringLiteral("filename"), name}});
    }
    writeBytes(folder.filePath(QStringLiteral("config.json")),
               QJsonDocument(QJsonObject{{QStringLiteral("ImageList"), list},
                                         {QStringLiteral("ShiftInterval"), 100}})
                   .toJson());
    CBaseObject &object = *m_plugin.createObject().release();
    page().addObject(&object);
    AnimatedObject(object).loadPath(folder.path());
    object.setOtherParams(QStringLiteral("object_name"), QStringLiteral("film"));
    object.setPos(pos, false);
    return object;
}

void WindowFixture::trigger(const char *id)
{
    QAction *action = m_window->actions().action(QLatin1String(id));
    QVERIFY2(action, id);
    QVERIFY2(action->isEnabled(), id);
    action->trigger();
}

bool WindowFixture::isEnabled(const char *id)
{
    const QAction *action = m_window->actions().action(QLatin1String(id));
    return action && action->isEnabled();
}

void WindowFixture::press(const QPointF &place, Qt::KeyboardModifiers modifiers)
{
    QTest::mousePress(view().viewport(), Qt::LeftButton, modifiers, view().mapFromScene(place));
}

void WindowFixture::moveTo(const QPointF &place, Qt::KeyboardModifiers modifiers)
{
    movePointer(view().mapFromScene(place), modifiers);
}

void WindowFixture::movePointer(const QPoint &position, Qt::KeyboardModifiers modifiers)
{
    // The test library's own moves carry no modifiers, and need a real pointer.
    QMouseEvent event(QEvent::MouseMove, position, view().viewport()->mapToGlobal(position),
                      Qt::NoButton, Qt::LeftButton, modifiers);
    QApplication::sendEvent(view().viewport(), &event);
}

void WindowFixture::release(const QPointF &place, Qt::KeyboardModifiers modifiers)
{
    QTest::mouseRelease(view().viewport(), Qt::LeftButton, modifiers, view().mapFromScene(place));
}

void WindowFixture::drag(const QPointF &from, const QPointF &to, Qt::KeyboardModifiers modifiers)
{
    press(from, modifiers);
    moveTo((from + to) / 2, modifiers);
    moveTo(to, modifiers);
    release(to, modifiers);
}

void WindowFixture::click(const QPointF &place, Qt::KeyboardModifiers modifiers)
{
    press(place, modifiers);
    release(place, modifiers);
}

QStringList WindowFixture::history()
{
    QStringList texts;
    const QUndoStack &stack = session().undoStack();
    for (int i = 0; i < stack.count(); ++i)
        texts << stack.text(i);
    return texts;
}

QStringList WindowFixture::messages()
{
    return m_window->messages().texts();
}

void WindowFixture::answerNext(int standardButton)
{
    QTimer::singleShot(0, qApp, [standardButton] {
        auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
        QVERIFY2(box, "no question came up");
        box->button(QMessageBox::StandardButton(standardButton))->click();
    });
}

void WindowFixture::dragRow(QListView &list, int row, const QPoint &place,
                            Qt::KeyboardModifiers modifiers,
                            const std::function<bool()> &whileThere)
{
    QWindow *window = m_window->windowHandle();
    const auto inWindow = [&](const QPoint &position) {
        return list.viewport()->mapTo(m_window.get(), position);
    };
    const QModelIndex index = list.model()->index(row, 0);
    list.scrollTo(index);
    const QPoint from = inWindow(list.visualRect(index).center());
    const QPoint to = inWindow(place);
    const auto move = [&](const QPoint &position) {
        QTest::mouseEvent(QTest::MouseMove, window, Qt::NoButton, modifiers, position);
    };
    QTest::mousePress(window, Qt::LeftButton, modifiers, from);
    const int start = QApplication::startDragDistance();
    move(from + QPoint(start, start));
    // The next move begins the drag, which has an event loop of its own.
    QTimer::singleShot(0, m_window.get(), [&] {
        move((from + to) / 2);
        move(to);
        if (whileThere && !whileThere())
            QTest::keyClick(window, Qt::Key_Escape);
        QTest::mouseRelease(window, Qt::LeftButton, modifiers, to);
    });
    move(from + QPoint(2 * start, 2 * start));
}

void WindowFixture::drop(QWidget &viewport, const QPoint &position, const QStringList &files)
{
    QMimeData data;
    QList<QUrl> urls;
    for (const QString &file : files)
        urls << QUrl::fromLocalFile(file);
    data.setUrls(urls);
    QDragEnterEvent enter(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&viewport, &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent event(position, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(&viewport, &event);
    QVERIFY(event.isAccepted());
    QApplication::processEvents();
}

void WindowFixture::dropOnPage(const QPointF &place, const QStringList &files)
{
    drop(*view().viewport(), view().mapFromScene(place), files);
}

void WindowFixture::choose(const QString &text)
{
    const QList<QAction *> actions = m_window->messages().findChildren<QAction *>();
    for (QAction *action : actions) {
        if (action->text() == text) {
            action->trigger();
            return;
        }
    }
    QFAIL(qPrintable(QStringLiteral("no button '%1'").arg(text)));
}

QStringList WindowFixture::frameNames(CBaseObject &object) const
{
    QStringList names;
    const Plugin::Frames frames = m_plugin.frames(object);
    for (const auto &frame : frames)
        names << frame.first;
    return names;
}

QList<QColor> WindowFixture::frameColours(CBaseObject &object) const
{
    QList<QColor> colours;
    const Plugin::Frames frames = m_plugin.frames(object);
    for (const auto &frame : frames)
        colours << frame.second.pixelColor(frame.second.width() / 2, frame.second.height() / 2);
    return colours;
}
