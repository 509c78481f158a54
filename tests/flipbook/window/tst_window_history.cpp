#include "flipbook/document/documentfile.h"
#include "flipbook/window/filecontroller.h"
#include "flipbook/window/panels/historyview.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>

/// Undo, redo and the list of all steps. The document is in a file, and shows a film of three
/// frames at (10, 20).
class TestWindowHistory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void theListNamesAllSteps();
    void aClickOnAStepGoesThereAndBack();
    void theArrowKeysGoThroughTheSteps();
    void theListFollowsUndoAndRedo();
    void theDiskMarksTheSavedStep();
    void aNewEditMakesTheSavedStepUnreachable();
    void menuAndToolTipNameTheStep();
    void theKeysUndoAndRedo();

private:
    void makeThreeSteps();
    HistoryView &view() { return *m_fixture->window().findChild<HistoryView *>(); }
    void clickRow(int row);
    QStringList rows();
    QVector<int> rowsWithDisk();
    CBaseObject &film() { return *m_fixture->page().objects().constFirst(); }
    int frameCount() { return AnimatedObject(film()).frameCount(); }

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestWindowHistory::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    const QString path = m_fixture->path(QStringLiteral("a.flipbook"));
    {
        DocumentFixture fixture;
        saveDocument(*fixture.document({Qt::red, Qt::green, Qt::blue}), path);
    }
    QVERIFY(m_fixture->window().files().open(path));
    film().setPos(QPointF(10, 20), false);
    m_fixture->page().selectObjects({&film()});
    m_fixture->view().setFocus();
}

/// Moved to (20, 20), mirrored, and with a fourth frame.
void TestWindowHistory::makeThreeSteps()
{
    QTest::keyClick(&m_fixture->view(), Qt::Key_Right, Qt::ShiftModifier);
    m_fixture->trigger("mirror");
    m_fixture->trigger("duplicate-frames");
}

QStringList TestWindowHistory::rows()
{
    QStringList texts;
    for (int row = 0; row < view().model()->rowCount(); ++row)
        texts << view().model()->index(row, 0).data().toString();
    return texts;
}

QVector<int> TestWindowHistory::rowsWithDisk()
{
    QVector<int> rows;
    for (int row = 0; row < view().model()->rowCount(); ++row) {
        const QVariant mark = view().model()->index(row, 0).data(Qt::DecorationRole);
        if (!mark.value<QIcon>().isNull())
            rows.append(row);
    }
    return rows;
}

void TestWindowHistory::clickRow(int row)
{
    const QModelIndex index = view().model()->index(row, 0);
    view().scrollTo(index);
    QTest::mouseClick(view().viewport(), Qt::LeftButton, {}, view().visualRect(index).center());
}

void TestWindowHistory::theListNamesAllSteps()
{
    QCOMPARE(rows(), QStringList({QStringLiteral("As opened")}));
    makeThreeSteps();
    QCOMPARE(rows(), QStringList({QStringLiteral("As opened"), QStringLiteral("Nudge"),
                                  QStringLiteral("Mirror"), QStringLiteral("Duplicate Frame")}));
}

void TestWindowHistory::aClickOnAStepGoesThereAndBack()
{
    makeThreeSteps();
    clickRow(1);
    QCOMPARE(film().getPos(), QPointF(20, 20));
    QVERIFY(!film().isMirrored());
    QCOMPARE(frameCount(), 3);
    clickRow(0);
    QCOMPARE(film().getPos(), QPointF(10, 20));
    clickRow(3);
    QCOMPARE(film().getPos(), QPointF(20, 20));
    QVERIFY(film().isMirrored());
    QCOMPARE(frameCount(), 4);
    clickRow(2);
    QVERIFY(film().isMirrored());
    QCOMPARE(frameCount(), 3);
    // Going there adds no step.
    QCOMPARE(rows().size(), 4);
}

void TestWindowHistory::theArrowKeysGoThroughTheSteps()
{
    makeThreeSteps();
    view().setFocus();
    QTest::keyClick(&view(), Qt::Key_Up);
    QCOMPARE(frameCount(), 3);
    QTest::keyClick(&view(), Qt::Key_Up);
    QVERIFY(!film().isMirrored());
    QTest::keyClick(&view(), Qt::Key_Home);
    QCOMPARE(film().getPos(), QPointF(10, 20));
    QTest::keyClick(&view(), Qt::Key_End);
    QCOMPARE(frameCount(), 4);
}

void TestWindowHistory::theListFollowsUndoAndRedo()
{
    makeThreeSteps();
    QCOMPARE(view().currentIndex().row(), 3);
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QCOMPARE(view().currentIndex().row(), 1);
    m_fixture->trigger("redo");
    QCOMPARE(view().currentIndex().row(), 2);
}

void TestWindowHistory::theDiskMarksTheSavedStep()
{
    QCOMPARE(rowsWithDisk(), QVector<int>({0}));
    makeThreeSteps();
    QCOMPARE(rowsWithDisk(), QVector<int>({0}));
    QVERIFY(m_fixture->window().isWindowModified());
    clickRow(2);
    m_fixture->trigger("save");
    QCOMPARE(rowsWithDisk(), QVector<int>({2}));
    QVERIFY(!m_fixture->window().isWindowModified());
    // Beyond it in both directions, and back.
    clickRow(0);
    QCOMPARE(rowsWithDisk(), QVector<int>({2}));
    QVERIFY(m_fixture->window().isWindowModified());
    clickRow(3);
    QVERIFY(m_fixture->window().isWindowModified());
    clickRow(2);
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowHistory::aNewEditMakesTheSavedStepUnreachable()
{
    makeThreeSteps();
    m_fixture->trigger("save");
    QCOMPARE(rowsWithDisk(), QVector<int>({3}));
    clickRow(1);
    m_fixture->trigger("flip");
    QCOMPARE(rows(), QStringList({QStringLiteral("As opened"), QStringLiteral("Nudge"),
                                  QStringLiteral("Flip")}));
    QCOMPARE(rowsWithDisk(), QVector<int>());
    for (const int row : {1, 0, 2}) {
        clickRow(row);
        QVERIFY(m_fixture->window().isWindowModified());
    }
    m_fixture->trigger("save");
    QCOMPARE(rowsWithDisk(), QVector<int>({2}));
}

void TestWindowHistory::menuAndToolTipNameTheStep()
{
    const QAction &undo = *m_fixture->window().actions().action(QStringLiteral("undo"));
    const QAction &redo = *m_fixture->window().actions().action(QStringLiteral("redo"));
    QCOMPARE(undo.text(), QStringLiteral("&Undo"));
    QVERIFY(!undo.isEnabled());
    m_fixture->trigger("delete-frames");
    QCOMPARE(undo.text(), QStringLiteral("&Undo Delete Frame"));
    QCOMPARE(undo.toolTip(), QStringLiteral("Undo Delete Frame (Ctrl+Z)"));
    QVERIFY(!redo.isEnabled());
    m_fixture->trigger("undo");
    QCOMPARE(redo.text(), QStringLiteral("&Redo Delete Frame"));
    QCOMPARE(redo.toolTip(), QStringLiteral("Redo Delete Frame (Ctrl+Shift+Z)"));
    QCOMPARE(undo.toolTip(), QStringLiteral("Undo (Ctrl+Z)"));
}

void TestWindowHistory::theKeysUndoAndRedo()
{
    makeThreeSteps();
    MainWindow &window = m_fixture->window();
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier);
    QVERIFY(!film().isMirrored());
    QTest::keyClick(&window, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
    QVERIFY(film().isMirrored());
    QCOMPARE(frameCount(), 3);
    QTest::keyClick(&window, Qt::Key_Y, Qt::ControlModifier);
    QCOMPARE(frameCount(), 4);
}

QTEST_MAIN(TestWindowHistory)
#include "tst_window_history.moc"
