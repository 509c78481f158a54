#include "flipbook/editing/frameeditor.h"
#include "flipbook/window/play/presentation.h"
#include "flipbook/window/play/presentcontroller.h"
#include "flipbook/window/settings.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QProxyStyle>

/// Playing in the window and presentations. A film of 40 x 30 with three frames lies at (100, 100).
class TestWindowPlay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void spacePlaysAndStopsTheSelectedFilm();
    void spaceOnThePagePlaysWhenItIsLetGo();
    void withNothingSelectedAllFilmsPlay();
    void fullStopAndCommaStep();
    void theButtonFollowsAFilmThatEndsByItself();
    void aDroppedFilmPlaysUnlessTheUserWantsNone();
    void reducedMotionIsRespected();
    void aPresentationShowsThePageInTheAlternateMode();
    void aClickOnAnOpaquePixelPlaysAndStops();
    void aClickOnATransparentPixelDoesNothing();
    void arrowKeysAndADragScrollABackground();
    void escapeComesBackToThePageAsItWas();
    void closingTheWindowEndsThePresentation();
    void thePointerHidesAndComesBackWhenItMoves();
    void theFirstPresentationShowsAHintThatGoes();

private:
    AnimatedObject film() { return AnimatedObject(*m_film); }
    Presentation &present();
    QPoint pixelOf(const QPointF &place);
    QByteArray bytes();

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowPlay::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green, Qt::blue});
    m_fixture->view().setFocus();
}

void TestWindowPlay::spacePlaysAndStopsTheSelectedFilm()
{
    CBaseObject &other = m_fixture->addFilm({Qt::red, Qt::green}, {300, 100});
    m_fixture->page().selectObjects({m_film});
    m_fixture->trigger("play");
    QVERIFY(film().isPlaying());
    QVERIFY(!AnimatedObject(other).isPlaying());
    m_fixture->trigger("play");
    QVERIFY(!film().isPlaying());
}

void TestWindowPlay::spaceOnThePagePlaysWhenItIsLetGo()
{
    m_fixture->page().selectObjects({m_film});
    QTest::keyPress(&m_fixture->view(), Qt::Key_Space);
    QVERIFY(!film().isPlaying());
    QTest::keyRelease(&m_fixture->view(), Qt::Key_Space);
    QVERIFY(film().isPlaying());
}

void TestWindowPlay::withNothingSelectedAllFilmsPlay()
{
    CBaseObject &other = m_fixture->addFilm({Qt::red, Qt::green}, {300, 100});
    m_fixture->page().selectObjects({m_film});
    m_fixture->page().selectObjects({});
    m_fixture->trigger("play");
    QVERIFY(film().isPlaying());
    QVERIFY(AnimatedObject(other).isPlaying());
}

void TestWindowPlay::fullStopAndCommaStep()
{
    m_fixture->page().selectObjects({m_film});
    QTest::keyClick(&m_fixture->window(), Qt::Key_Period);
    QCOMPARE(film().shownIndex(), 1);
    QTest::keyClick(&m_fixture->window(), Qt::Key_Comma);
    QTest::keyClick(&m_fixture->window(), Qt::Key_Comma);
    QCOMPARE(film().shownIndex(), 2);
}

void TestWindowPlay::theButtonFollowsAFilmThatEndsByItself()
{
    m_fixture->page().selectObjects({m_film});
    AnimatedObject played = film();
    played.setLoopsForever(false);
    played.setInterval(1);
    const QAction *play = m_fixture->window().actions().action(QStringLiteral("play"));
    m_fixture->trigger("play");
    QCOMPARE(play->text(), QStringLiteral("Sto&p"));
    QTRY_COMPARE(play->text(), QStringLiteral("&Play"));
    QCOMPARE(film().shownIndex(), 2);
}

void TestWindowPlay::aDroppedFilmPlaysUnlessTheUserWantsNone()
{
    const QString path = m_fixture->path(QStringLiteral("a.gif"));
    GifBuilder(20, 10).loop(0).add(0, 10).add(1, 10).write(path);
    m_fixture->dropOnPage({300, 300}, {path});
    QVERIFY(!AnimatedObject(*m_fixture->session().film()).isPlaying());
    m_fixture->trigger("never-play");
    m_fixture->dropOnPage({300, 300}, {path});
    QVERIFY(AnimatedObject(*m_fixture->session().film()).isPlaying());
}

/// A style for people who have told their system that they want no motion.
class StillStyle : public QProxyStyle
{
public:
    using QProxyStyle::QProxyStyle;

    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *data) const override
    {
        return hint == SH_Widget_Animation_Duration
                   ? 0
                   : QProxyStyle::styleHint(hint, option, widget, data);
    }
};

void TestWindowPlay::reducedMotionIsRespected()
{
    const QString path = m_fixture->path(QStringLiteral("a.gif"));
    GifBuilder(20, 10).loop(0).add(0, 10).add(1, 10).write(path);
    m_fixture->trigger("never-play");
    const QString before = QApplication::style()->objectName();
    QApplication::setStyle(new StillStyle(before));
    m_fixture->dropOnPage({300, 300}, {path});
    const bool plays = AnimatedObject(*m_fixture->session().film()).isPlaying();
    QApplication::setStyle(before);
    QVERIFY(!plays);
}

Presentation &TestWindowPlay::present()
{
    m_fixture->trigger("present");
    return *m_fixture->window().presenter().presentation();
}

QPoint TestWindowPlay::pixelOf(const QPointF &place)
{
    return m_fixture->window().presenter().presentation()->mapFromScene(place);
}

void TestWindowPlay::aPresentationShowsThePageInTheAlternateMode()
{
    QCOMPARE(m_fixture->session().document().alternateMode(), 0);
    Presentation &presentation = present();
    QVERIFY(presentation.isFullScreen());
    QCOMPARE(m_fixture->session().document().alternateMode(), 1);
    presentation.resize(1200, 600);
    const QImage picture = presentation.grab().toImage();
    QCOMPARE(picture.pixelColor(pixelOf({120, 115})), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(pixelOf({300, 300})), QColor(Qt::white));
    QCOMPARE(picture.pixelColor(0, 0), QColor(Qt::black));
}

void TestWindowPlay::aClickOnAnOpaquePixelPlaysAndStops()
{
    Presentation &presentation = present();
    QTest::mouseClick(presentation.viewport(), Qt::LeftButton, {}, pixelOf({120, 115}));
    QVERIFY(film().isPlaying());
    QTest::mouseClick(presentation.viewport(), Qt::LeftButton, {}, pixelOf({120, 115}));
    QVERIFY(!film().isPlaying());
}

void TestWindowPlay::aClickOnATransparentPixelDoesNothing()
{
    CBaseObject &clear = m_fixture->addFilm({Qt::transparent, Qt::red}, {300, 100});
    Presentation &presentation = present();
    QTest::mouseClick(presentation.viewport(), Qt::LeftButton, {}, pixelOf({320, 115}));
    QVERIFY(!AnimatedObject(clear).isPlaying());
}

void TestWindowPlay::arrowKeysAndADragScrollABackground()
{
    FrameEditor(*m_film).setBackground(true);
    Presentation &presentation = present();
    presentation.grab();
    QTest::keyClick(&presentation, Qt::Key_Right);
    QTest::keyClick(&presentation, Qt::Key_Down);
    QCOMPARE(m_film->getPos(), QPointF(20, 20));
    const QPoint from = pixelOf({120, 115});
    const QPoint to = pixelOf({160, 115});
    QTest::mousePress(presentation.viewport(), Qt::LeftButton, {}, from);
    QMouseEvent drag(QEvent::MouseMove, to, Qt::NoButton, Qt::LeftButton, {});
    QApplication::sendEvent(presentation.viewport(), &drag);
    QTest::mouseRelease(presentation.viewport(), Qt::LeftButton, {}, to);
    QVERIFY(m_film->getPos().x() > 20);
    QCOMPARE(m_film->getPos().y(), 20.0);
    QVERIFY(!film().isPlaying());
    QTest::keyClick(&presentation, Qt::Key_Escape);
    // The object itself was not moved.
    QCOMPARE(m_film->getPos(), QPointF(100, 100));
}

QByteArray TestWindowPlay::bytes()
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    m_film->save(stream);
    return bytes;
}

void TestWindowPlay::escapeComesBackToThePageAsItWas()
{
    // An object saves which part of it the page shows, and computes that when a presentation
    // starts.
    present().close();
    film().showFrame(1);
    m_fixture->page().selectObjects({m_film});
    const QByteArray before = bytes();
    Presentation &presentation = present();
    QTest::mouseClick(presentation.viewport(), Qt::LeftButton, {}, pixelOf({120, 115}));
    QTest::keyClick(&presentation, Qt::Key_Escape);
    QCOMPARE(m_fixture->session().document().alternateMode(), 0);
    QCOMPARE(film().shownIndex(), 1);
    QVERIFY(!film().isPlaying());
    QCOMPARE(bytes(), before);
    QCOMPARE(m_fixture->session().film(), m_film);
    QCOMPARE(m_fixture->view().scene(), &m_fixture->page());
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowPlay::closingTheWindowEndsThePresentation()
{
    present();
    m_fixture->reopen();
    QCOMPARE(m_fixture->session().document().alternateMode(), 0);
}

/// Makes the timer of this name run out now, however long it is set.
static void runOut(Presentation &presentation, const char *timer, int expectedMs)
{
    auto *found = presentation.findChild<QTimer *>(QLatin1String(timer));
    QVERIFY2(found, timer);
    QVERIFY(found->isActive());
    QVERIFY(found->isSingleShot());
    QCOMPARE(found->interval(), expectedMs);
    found->start(0);
    QTRY_VERIFY(!found->isActive());
    found->setInterval(expectedMs);
}

void TestWindowPlay::thePointerHidesAndComesBackWhenItMoves()
{
    Presentation &presentation = present();
    const auto pointer = [&presentation] { return presentation.viewport()->cursor().shape(); };
    QCOMPARE(pointer(), Qt::ArrowCursor);
    runOut(presentation, "pointerTimer", 2000);
    QCOMPARE(pointer(), Qt::BlankCursor);
    const QPoint place = pixelOf({300, 300});
    QMouseEvent move(QEvent::MouseMove, place, Qt::NoButton, Qt::NoButton, {});
    QApplication::sendEvent(presentation.viewport(), &move);
    QCOMPARE(pointer(), Qt::ArrowCursor);
    // It hides again, and a click shows it too.
    runOut(presentation, "pointerTimer", 2000);
    QCOMPARE(pointer(), Qt::BlankCursor);
    QTest::mouseClick(presentation.viewport(), Qt::LeftButton, {}, place);
    QCOMPARE(pointer(), Qt::ArrowCursor);
    // Keys leave it hidden.
    runOut(presentation, "pointerTimer", 2000);
    QTest::keyClick(&presentation, Qt::Key_Right);
    QCOMPARE(pointer(), Qt::BlankCursor);
}

void TestWindowPlay::theFirstPresentationShowsAHintThatGoes()
{
    Presentation &first = present();
    auto *hint = first.findChild<QLabel *>(QStringLiteral("presentationHint"));
    QVERIFY(hint);
    QVERIFY(hint->isVisible());
    QCOMPARE(hint->text(), QStringLiteral("Click an animation to play or stop it. Press Escape to "
                                          "end the presentation."));
    QVERIFY(first.rect().contains(hint->geometry()));
    // On a small screen it takes several lines.
    const int heightOfOneLine = hint->height();
    first.resize(300, 200);
    QVERIFY(first.rect().contains(hint->geometry()));
    QVERIFY(hint->height() > heightOfOneLine);
    runOut(first, "hintTimer", 4000);
    QVERIFY(!hint->isVisible());
    QTest::keyClick(&first, Qt::Key_Escape);
    // The next one needs none, not even in another window.
    QVERIFY(!present().findChild<QLabel *>(QStringLiteral("presentationHint")));
    m_fixture->reopen();
    m_fixture->addFilm({Qt::red, Qt::green});
    QVERIFY(!present().findChild<QLabel *>(QStringLiteral("presentationHint")));
}

QTEST_MAIN(TestWindowPlay)
#include "tst_window_play.moc"
