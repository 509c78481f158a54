#include "benchmarks/support/windowscene.h"

#include "benchmarks/support/drawings.h"
#include "benchmarks/support/films.h"
#include "flipbook/object/animatedobject.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/page/pageview.h"
#include "flipbook/window/settings.h"
#include "tests/support/quiet.h"

#include <QtCore/QElapsedTimer>
#include <QtTest/QtTest>

namespace
{

constexpr int columns = 5;
constexpr int rows = 4;
constexpr QSize filmSize(160, 120);
constexpr int selectedFrames = 500;
constexpr int otherFrames = 12;

/// The window leaves the settings and files of the user alone. True.
bool setApart()
{
    QSettings::setPath(QSettings::IniFormat, QSettings::UserScope, Films::folder());
    qputenv("XDG_DATA_HOME", Films::folder().toLocal8Bit());
    WindowSettings().setValue(QStringLiteral("play/never"), true);
    return true;
}

/// Notices that a widget is painted.
class PaintWatch : public QObject
{
public:
    explicit PaintWatch(QWidget &widget) { widget.installEventFilter(this); }

    bool eventFilter(QObject *, QEvent *event) override
    {
        m_isPainted = m_isPainted || event->type() == QEvent::Paint;
        return false;
    }

    bool isPainted() const { return m_isPainted; }

private:
    bool m_isPainted = false;
};

} // namespace

WindowScene::WindowScene()
    : m_isApart(setApart())
    , m_plugin(QStringLiteral(PLUGIN_FILE))
    , m_window(m_plugin)
{
    const auto draw = [](int i) { return Drawings::cartoon(filmSize, i); };
    for (int i = 0; i < columns * rows; ++i) {
        const int count = i == 0 ? selectedFrames : otherFrames;
        CBaseObject &object = *m_plugin.createObject().release();
        m_window.session().page()->addObject(&object);
        AnimatedObject(object).loadPath(
            Films::gif(QStringLiteral("window"), filmSize, count, draw));
        const int row = i / columns;
        object.setPos(QPointF(20 + i % columns * 180.0, 20 + row * 170.0), false);
        if (i == 0)
            m_film = &object;
    }
    // Without a screen Qt warns that size hints do nothing.
    const Quiet quiet;
    m_window.show();
    if (!QTest::qWaitForWindowActive(&m_window))
        qFatal("the window is not active");
    select(true);
    m_window.view().setFocus();
    // Thumbnails of pages and what else follows later.
    QTest::qWait(500);
}

double WindowScene::secondsToPaint(QWidget &widget, const std::function<void()> &act)
{
    constexpr qint64 longestMs = 10000;
    // What is left of the step before.
    QCoreApplication::processEvents();
    const PaintWatch watch(widget);
    QElapsedTimer clock;
    clock.start();
    act();
    while (!watch.isPainted()) {
        if (clock.hasExpired(longestMs))
            qFatal("nothing was painted");
        QCoreApplication::processEvents();
    }
    return double(clock.nsecsElapsed()) * 1e-9;
}

void WindowScene::press(Qt::Key key)
{
    QTest::keyClick(m_window.windowHandle(), key);
}

void WindowScene::mouse(QEvent::Type type, const QPointF &place)
{
    const QPoint position = m_window.view().mapFromScene(place);
    const bool isMove = type == QEvent::MouseMove;
    const bool isRelease = type == QEvent::MouseButtonRelease;
    QMouseEvent event(type, position, page().mapToGlobal(position),
                      isMove ? Qt::NoButton : Qt::LeftButton,
                      isRelease ? Qt::NoButton : Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&page(), &event);
}

bool WindowScene::isDragging()
{
    return m_window.session().isDragging();
}

void WindowScene::select(bool isSelected)
{
    m_window.session().page()->selectObjects(isSelected ? QList<CBaseObject *>{m_film}
                                                        : QList<CBaseObject *>());
}

QPointF WindowScene::middleOfFilm() const
{
    return m_film->mapToScene(m_film->getClientRect().center());
}

QPointF WindowScene::cornerOfFilm() const
{
    return m_film->mapToScene(m_film->getClientRect().bottomRight());
}

QWidget &WindowScene::page()
{
    return *m_window.view().viewport();
}

QWidget &WindowScene::strip()
{
    return *m_window.frames().strip().viewport();
}
