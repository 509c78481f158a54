#include "flipbook/document/documentjson.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QtTest>
#include <QtWidgets/QAction>

/// A user who does anything in any order. Undoing all of it gives the first bytes.
class TestWindowWalk : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void undoingAllGivesTheFirstBytes_data();
    void undoingAllGivesTheFirstBytes();

private:
    static int steps();
    void doSomething();
    void select();
    void dragSomething();
    QByteArray bytes();
    int below(int bound) { return int(m_random.bounded(quint32(bound))); }

    std::unique_ptr<WindowFixture> m_fixture;
    QRandomGenerator m_random;
};

/// FLIPBOOK_WALK_STEPS asks for longer walks.
int TestWindowWalk::steps()
{
    constexpr int usual = 300;
    const int wanted = qEnvironmentVariableIntValue("FLIPBOOK_WALK_STEPS");
    return wanted > 0 ? wanted : usual;
}

void TestWindowWalk::undoingAllGivesTheFirstBytes_data()
{
    QTest::addColumn<quint32>("seed");
    for (const quint32 seed : {1U, 2U, 3U})
        QTest::addRow("seed %u", seed) << seed;
}

QByteArray TestWindowWalk::bytes()
{
    return documentJson(m_fixture->session().document());
}

void TestWindowWalk::select()
{
    QList<CBaseObject *> chosen;
    const QList<CBaseObject *> objects = m_fixture->page().objects();
    for (CBaseObject *object : objects) {
        if (below(2) == 0)
            chosen.append(object);
    }
    if (below(2) == 0 && !objects.isEmpty())
        chosen = {objects.at(below(objects.size()))};
    m_fixture->page().selectObjects(chosen);
}

void TestWindowWalk::dragSomething()
{
    const QPointF from(below(400), below(300));
    const QPointF to(below(400), below(300));
    const auto modifiers =
        below(3) == 0 ? Qt::KeyboardModifiers(Qt::ShiftModifier) : Qt::KeyboardModifiers();
    m_fixture->press(from, modifiers);
    m_fixture->moveTo(to, modifiers);
    if (below(4) == 0)
        QTest::keyClick(&m_fixture->view(), Qt::Key_Escape);
    m_fixture->release(to, modifiers);
}

void TestWindowWalk::doSomething()
{
    // Actions that ask nothing, and that undo knows.
    static const char *const actions[] = {"undo",
                                          "redo",
                                          "copy",
                                          "paste",
                                          "cut",
                                          "duplicate",
                                          "delete",
                                          "raise",
                                          "lower",
                                          "raise-to-top",
                                          "lower-to-bottom",
                                          "align-left",
                                          "align-middle",
                                          "mirror",
                                          "flip",
                                          "add-page",
                                          "duplicate-page",
                                          "delete-page",
                                          "move-page-up",
                                          "move-page-down",
                                          "previous-page",
                                          "next-page",
                                          "insert-blank-frame",
                                          "duplicate-frames",
                                          "reverse-frames",
                                          "move-frames-left",
                                          "move-frames-right",
                                          "delete-frames"};
    FrameStrip &strip = m_fixture->window().frames().strip();
    switch (below(6)) {
    case 0:
        select();
        break;
    case 1:
        dragSomething();
        break;
    case 2: {
        const int count = strip.model()->rowCount();
        if (count > 0)
            strip.selectRows({below(count)});
        below(2) == 0 ? strip.setFocus() : m_fixture->view().setFocus();
        break;
    }
    default: {
        const char *id = actions[below(int(std::size(actions)))];
        const bool grows = m_fixture->page().objects().size() > 12;
        if (m_fixture->isEnabled(id) && !(grows && qstrcmp(id, "paste") == 0))
            m_fixture->trigger(id);
    }
    }
}

void TestWindowWalk::undoingAllGivesTheFirstBytes()
{
    QFETCH(quint32, seed);
    m_random.seed(seed);
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->addFilm({Qt::red, Qt::green, Qt::blue});
    m_fixture->addFilm({Qt::white, Qt::black}, {200, 120});
    const QByteArray before = bytes();
    for (int i = 0; i < steps(); ++i) {
        doSomething();
        if (QTest::currentTestFailed())
            return;
    }
    while (m_fixture->session().undoStack().canUndo())
        m_fixture->trigger("undo");
    QCOMPARE(bytes(), before);
    m_fixture.reset();
}

QTEST_MAIN(TestWindowWalk)
#include "tst_window_walk.moc"
