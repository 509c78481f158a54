#include "flipbook/editing/frameeditor.h"
#include "flipbook/object/filmstate.h"
#include "flipbook/object/objectprotocol.h"
#include "host/specialpropertyids.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QComboBox>
#include <QtWidgets/QDoubleSpinBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

/// The panel of the selected object: geometry, name, and the settings that the object describes
/// itself. A film of 40 x 30 with two frames lies at (100, 100).
class TestWindowPanels : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void placeAndSizeFollowTheObject();
    void typedPlacesMoveTheObject();
    void aTypedWidthKeepsTheRatioWhenTheObjectDoes();
    void withoutTheRatioOnlyThatSideChanges();
    void keepingTheRatioIsAStep();
    void theSwitchForTheRatioFollowsJumpsInTheHistory();
    void aTypedAngleTurnsTheObject();
    void aNewNameRenamesTheFrames();
    void undoingANameBringsTheOldFrameNamesBack();
    void severalObjectsAreChangedInOneStep();
    void whatSeveralObjectsDoNotShareIsBlank();
    void theTypeOfSeveralObjectsChangesInOneStep();
    void theTypeMovesTheObjectToTheBackground();
    void aBackgroundThatWasResizedComesBackWithItsFrames();
    void settingsAreDrawnFromTheObjectsDescription();
    void thePlaySwitchFollowsTheObject();
    void intervalsTypedInARowAreOneStep();
    void anIntervalIsToldAsARate();
    void switchingTheLoopOffAndBackGivesTheOldCount();
    void playingIsNoChangeOfTheDocument();

private:
    template<typename Widget>
    Widget &control(const char *name)
    {
        auto *widget = m_fixture->window().findChild<Widget *>(QLatin1String(name));
        if (!widget)
            qFatal("no control %s", name);
        return *widget;
    }
    double number(const char *name) { return control<QDoubleSpinBox>(name).value(); }
    void setNumber(const char *name, double value)
    {
        control<QDoubleSpinBox>(name).setValue(value);
    }
    CBaseObject &film() { return *m_film; }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowPanels::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
}

void TestWindowPanels::placeAndSizeFollowTheObject()
{
    QCOMPARE(number("x"), 100.0);
    QCOMPARE(number("height"), 30.0);
    m_fixture->drag({110, 110}, {160, 130});
    QTRY_COMPARE(number("x"), 150.0);
    QCOMPARE(number("y"), 120.0);
}

void TestWindowPanels::typedPlacesMoveTheObject()
{
    setNumber("x", 7.5);
    QCOMPARE(film().getPos(), QPointF(7.5, 100));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Change X")}));
    m_fixture->trigger("undo");
    QCOMPARE(film().getPos(), QPointF(100, 100));
}

void TestWindowPanels::aTypedWidthKeepsTheRatioWhenTheObjectDoes()
{
    QVERIFY(control<QCheckBox>("keepRatio").isChecked());
    setNumber("width", 80);
    QCOMPARE(film().getSize(), QSizeF(80, 60));
    QTRY_COMPARE(number("height"), 60.0);
}

void TestWindowPanels::withoutTheRatioOnlyThatSideChanges()
{
    control<QCheckBox>("keepRatio").click();
    setNumber("width", 80);
    QCOMPARE(film().getSize(), QSizeF(80, 30));
}

void TestWindowPanels::keepingTheRatioIsAStep()
{
    control<QCheckBox>("keepRatio").click();
    QVERIFY(!FilmState(film()).keepsRatio());
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Keep ratio")}));
    m_fixture->trigger("undo");
    QVERIFY(FilmState(film()).keepsRatio());
    m_fixture->trigger("redo");
    QVERIFY(!FilmState(film()).keepsRatio());
}

void TestWindowPanels::theSwitchForTheRatioFollowsJumpsInTheHistory()
{
    auto &ratio = control<QCheckBox>("keepRatio");
    ratio.click();
    QTest::keyClick(&m_fixture->view(), Qt::Key_Right);
    QTRY_COMPARE(number("x"), 101.0);
    QVERIFY(!ratio.isChecked());
    m_fixture->session().undoStack().setIndex(0);
    QTRY_VERIFY(ratio.isChecked());
    m_fixture->session().undoStack().setIndex(2);
    QTRY_VERIFY(!ratio.isChecked());
    // The step before the one that changed the ratio.
    QTest::keyClick(&m_fixture->view(), Qt::Key_Right);
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QTRY_VERIFY(ratio.isChecked());
}

void TestWindowPanels::aTypedAngleTurnsTheObject()
{
    setNumber("angle", 30);
    QCOMPARE(film().getRotate(), 30.0);
    QCOMPARE(film().getPos(), QPointF(100, 100));
}

void TestWindowPanels::aNewNameRenamesTheFrames()
{
    auto &name = control<QLineEdit>("name");
    QCOMPARE(name.text(), QStringLiteral("film"));
    name.selectAll();
    QTest::keyClicks(&name, QStringLiteral("cat"));
    QTest::keyClick(&name, Qt::Key_Return);
    QCOMPARE(AnimatedObject(film()).name(), QStringLiteral("cat"));
    QCOMPARE(m_fixture->frameNames(film()),
             QStringList({QStringLiteral("cat_1"), QStringLiteral("cat_2")}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Rename Object")}));
}

void TestWindowPanels::undoingANameBringsTheOldFrameNamesBack()
{
    ObjectProtocol::tell(film(), SpecialPropertyId::FrameName, qint32(1), QStringLiteral("jump"));
    auto &name = control<QLineEdit>("name");
    name.selectAll();
    QTest::keyClicks(&name, QStringLiteral("cat"));
    QTest::keyClick(&name, Qt::Key_Return);
    m_fixture->trigger("undo");
    QCOMPARE(AnimatedObject(film()).name(), QStringLiteral("film"));
    QCOMPARE(m_fixture->frameNames(film()),
             QStringList({QStringLiteral("film_1"), QStringLiteral("jump")}));
}

void TestWindowPanels::severalObjectsAreChangedInOneStep()
{
    CBaseObject &other = m_fixture->addFilm({Qt::blue}, {200, 150});
    m_fixture->page().selectObjects({m_film, &other});
    setNumber("y", 20);
    QCOMPARE(film().getPos(), QPointF(100, 20));
    QCOMPARE(other.getPos(), QPointF(200, 20));
    QCOMPARE(m_fixture->history().size(), 1);
    control<QCheckBox>("mirror").click();
    QVERIFY(film().isMirrored());
    QVERIFY(other.isMirrored());
    QCOMPARE(m_fixture->history().size(), 2);
}

void TestWindowPanels::whatSeveralObjectsDoNotShareIsBlank()
{
    CBaseObject &other = m_fixture->addFilm({Qt::green}, {300, 100});
    m_fixture->page().selectObjects({m_film, &other});
    auto *x = m_fixture->window().findChild<QDoubleSpinBox *>(QStringLiteral("x"));
    auto *y = m_fixture->window().findChild<QDoubleSpinBox *>(QStringLiteral("y"));
    QCOMPARE(x->text(), QString());
    QCOMPARE(y->text(), QStringLiteral("100.0"));
    // The value of the first one, typed for all.
    QTest::keyClicks(x, QStringLiteral("100"));
    QTest::keyClick(x, Qt::Key_Return);
    QCOMPARE(other.getPos(), QPointF(100, 100));
    QCOMPARE(x->text(), QStringLiteral("100.0"));

    other.setOtherParams(QStringLiteral("object_name"), QStringLiteral("another"));
    m_fixture->page().selectObjects({m_film, &other});
    QCOMPARE(control<QLineEdit>("name").text(), QString());
    QCOMPARE(control<QComboBox>("type").currentText(), QStringLiteral("Normal"));
    FrameEditor(other).setBackground(true);
    m_fixture->page().selectObjects({m_film, &other});
    QCOMPARE(control<QComboBox>("type").currentText(), QString());
}

void TestWindowPanels::theTypeOfSeveralObjectsChangesInOneStep()
{
    CBaseObject &other = m_fixture->addFilm({Qt::green}, {300, 100});
    m_fixture->page().selectObjects({m_film, &other});
    auto &type = control<QComboBox>("type");
    type.setCurrentIndex(1);
    Q_EMIT type.activated(1);
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Change Type")}));
    const QList<CBaseObject *> backgrounds = m_fixture->page().objects();
    QCOMPARE(m_fixture->session().selection(), backgrounds);
    for (CBaseObject *background : backgrounds)
        QVERIFY(m_fixture->page().placeOf(background).layer == Page::Layer::Background);
    m_fixture->trigger("undo");
    QVERIFY(m_fixture->page().placeOf(m_film).layer == Page::Layer::Normal);
    QVERIFY(m_fixture->page().placeOf(&other).layer == Page::Layer::Normal);
}

void TestWindowPanels::theTypeMovesTheObjectToTheBackground()
{
    auto &type = control<QComboBox>("type");
    QCOMPARE(type.currentText(), QStringLiteral("Normal"));
    type.setCurrentIndex(1);
    Q_EMIT type.activated(1);
    CBaseObject &background = *m_fixture->session().film();
    QVERIFY(m_fixture->page().placeOf(&background).layer == Page::Layer::Background);
    QCOMPARE(m_fixture->frameColours(background),
             QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Change Type")}));
    type.setCurrentIndex(0);
    Q_EMIT type.activated(0);
    QVERIFY(m_fixture->page().placeOf(m_fixture->session().film()).layer == Page::Layer::Normal);
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QCOMPARE(m_fixture->session().film(), m_film);
    QVERIFY(m_fixture->page().placeOf(m_film).layer == Page::Layer::Normal);
    QTRY_COMPARE(type.currentText(), QStringLiteral("Normal"));
}

void TestWindowPanels::aBackgroundThatWasResizedComesBackWithItsFrames()
{
    const auto bytes = [this] {
        QByteArray form;
        QDataStream stream(&form, QIODevice::WriteOnly);
        m_fixture->session().film()->save(stream);
        return form;
    };
    const QByteArray before = bytes();
    setNumber("width", 111);
    auto &type = control<QComboBox>("type");
    type.setCurrentIndex(1);
    Q_EMIT type.activated(1);
    // A background gives all its frames its own size when it is moved or resized.
    QTest::keyClick(&m_fixture->view(), Qt::Key_Right);
    setNumber("height", 60);
    while (m_fixture->session().undoStack().canUndo())
        m_fixture->trigger("undo");
    QCOMPARE(bytes(), before);
}

void TestWindowPanels::settingsAreDrawnFromTheObjectsDescription()
{
    QVERIFY(!control<QCheckBox>("idImagePlay").isChecked());
    QCOMPARE(control<QCheckBox>("idImagePlay").text(), QStringLiteral("Play"));
    QCOMPARE(control<QSpinBox>("idShiftInterval").value(), 100);
    QVERIFY(control<QCheckBox>("idLoopCount").isChecked());
    m_fixture->page().selectObjects({});
    QVERIFY(!m_fixture->window().findChild<QSpinBox *>(QStringLiteral("idShiftInterval")));
}

void TestWindowPanels::thePlaySwitchFollowsTheObject()
{
    AnimatedObject(film()).setPlaying(true);
    QVERIFY(control<QCheckBox>("idImagePlay").isChecked());
    control<QCheckBox>("idImagePlay").click();
    QVERIFY(!AnimatedObject(film()).isPlaying());
}

void TestWindowPanels::intervalsTypedInARowAreOneStep()
{
    auto &interval = control<QSpinBox>("idShiftInterval");
    interval.setValue(90);
    interval.setValue(80);
    QCOMPARE(AnimatedObject(film()).intervalMs(), 80);
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Change Frame interval (ms)")}));
    m_fixture->trigger("undo");
    QCOMPARE(AnimatedObject(film()).intervalMs(), 100);
    QCOMPARE(interval.value(), 100);
}

void TestWindowPanels::anIntervalIsToldAsARate()
{
    QCOMPARE(control<QLabel>("rate").text(), QStringLiteral("10 fps"));
    control<QSpinBox>("idShiftInterval").setValue(40);
    QCOMPARE(control<QLabel>("rate").text(), QStringLiteral("25 fps"));
}

void TestWindowPanels::switchingTheLoopOffAndBackGivesTheOldCount()
{
    FilmState state(film());
    state.setLoopCount(3);
    state.giveTo(m_fixture->session().plugin(), film());
    m_fixture->page().selectObjects({});
    m_fixture->page().selectObjects({m_film});
    QVERIFY(!control<QCheckBox>("idLoopCount").isChecked());
    control<QCheckBox>("idLoopCount").click();
    QCOMPARE(AnimatedObject(film()).loopCount(), -1);
    m_fixture->trigger("undo");
    QCOMPARE(AnimatedObject(film()).loopCount(), 3);
    m_fixture->trigger("redo");
    QCOMPARE(AnimatedObject(film()).loopCount(), -1);
}

void TestWindowPanels::playingIsNoChangeOfTheDocument()
{
    control<QCheckBox>("idImagePlay").click();
    QVERIFY(AnimatedObject(film()).isPlaying());
    QVERIFY(!m_fixture->session().isDirty());
    QCOMPARE(m_fixture->history(), QStringList());
}

QTEST_MAIN(TestWindowPanels)
#include "tst_window_panels.moc"
