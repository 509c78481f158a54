#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>

/// Pages and frames that the mouse drags to other places in their lists. Three pages show a red, a
/// green and a blue film; the first is shown.
class TestWindowDragging : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aPageIsDraggedDown();
    void aPageIsDraggedToTheEnd();
    void aPageIsDraggedUp();
    void aPageThatIsDroppedWhereItWasMakesNoStep();
    void withCtrlThePageIsCopied();
    void aLineMarksWhereThePageGoes();
    void escapeEndsTheDragOfAPage();
    void pagesOfAnotherProcessAreNotTaken();
    void noClickTakesTheChoiceOfAPageAway();
    void pagesAreMovedByTheKeyboardToo();
    void framesAreDraggedWithTheMouse();
    void framesAreCopiedWithTheMouseAndCtrl();

private:
    QListView &list()
    {
        return *m_fixture->window().findChild<QListView *>(QStringLiteral("pageList"));
    }
    FrameStrip &strip() { return m_fixture->window().frames().strip(); }
    /// Above the middle of a page's thumbnail, or below it.
    QPoint above(int row) { return middle(row) - QPoint(0, 10); }
    QPoint below(int row) { return middle(row) + QPoint(0, 10); }
    QPoint middle(int row) { return list().visualRect(list().model()->index(row, 0)).center(); }
    QList<QColor> pages();
    int shown() { return m_fixture->session().document().pages().indexOf(&m_fixture->page()); }
    QColor markAt(int y);

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestWindowDragging::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->addFilm({Qt::red});
    for (const QColor &colour : {QColor(Qt::green), QColor(Qt::blue)}) {
        m_fixture->trigger("add-page");
        m_fixture->addFilm({colour});
    }
    m_fixture->session().showPage(m_fixture->session().document().pages().first());
    m_fixture->session().undoStack().clear();
    m_fixture->window().grab();
}

/// The colours of the films on the pages, from the first page.
QList<QColor> TestWindowDragging::pages()
{
    QList<QColor> colours;
    for (const Page *page : m_fixture->session().document().pages())
        colours << m_fixture->frameColours(*page->objects().constFirst()).constFirst();
    return colours;
}

void TestWindowDragging::aPageIsDraggedDown()
{
    m_fixture->dragRow(list(), 0, above(2));
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::red, Qt::blue}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move Page")}));
    QCOMPARE(shown(), 1);
    QCOMPARE(list().currentIndex().row(), 1);
    m_fixture->trigger("undo");
    QCOMPARE(pages(), QList<QColor>({Qt::red, Qt::green, Qt::blue}));
    m_fixture->trigger("redo");
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::red, Qt::blue}));
}

void TestWindowDragging::aPageIsDraggedToTheEnd()
{
    m_fixture->dragRow(list(), 0, below(2));
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::blue, Qt::red}));
    QCOMPARE(shown(), 2);
}

void TestWindowDragging::aPageIsDraggedUp()
{
    m_fixture->dragRow(list(), 2, above(0));
    QCOMPARE(pages(), QList<QColor>({Qt::blue, Qt::red, Qt::green}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move Page")}));
    QCOMPARE(shown(), 0);
}

void TestWindowDragging::aPageThatIsDroppedWhereItWasMakesNoStep()
{
    m_fixture->dragRow(list(), 1, above(1));
    m_fixture->dragRow(list(), 1, below(1));
    QCOMPARE(pages(), QList<QColor>({Qt::red, Qt::green, Qt::blue}));
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowDragging::withCtrlThePageIsCopied()
{
    m_fixture->dragRow(list(), 0, below(2), Qt::ControlModifier);
    QCOMPARE(pages(), QList<QColor>({Qt::red, Qt::green, Qt::blue, Qt::red}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Duplicate Page")}));
    QCOMPARE(shown(), 3);
    m_fixture->trigger("undo");
    QCOMPARE(pages(), QList<QColor>({Qt::red, Qt::green, Qt::blue}));
}

/// The colour of the list at its middle.
QColor TestWindowDragging::markAt(int y)
{
    const QImage picture = list().viewport()->grab().toImage();
    return picture.pixelColor(list().visualRect(list().model()->index(0, 0)).center().x(), y);
}

void TestWindowDragging::aLineMarksWhereThePageGoes()
{
    const QColor line = list().palette().color(QPalette::Highlight);
    const int top = list().visualRect(list().model()->index(1, 0)).top();
    QColor during;
    m_fixture->dragRow(list(), 2, above(1), Qt::NoModifier, [&] {
        during = markAt(top);
        return true;
    });
    QCOMPARE(during, line);
    QVERIFY(markAt(top) != line);
}

void TestWindowDragging::escapeEndsTheDragOfAPage()
{
    m_fixture->dragRow(list(), 0, below(2), Qt::NoModifier, [] { return false; });
    QCOMPARE(pages(), QList<QColor>({Qt::red, Qt::green, Qt::blue}));
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowDragging::pagesOfAnotherProcessAreNotTaken()
{
    QByteArray rows;
    QDataStream stream(&rows, QIODevice::WriteOnly);
    stream << QCoreApplication::applicationPid() + 1 << QVector<int>({0});
    QMimeData data;
    data.setData(QStringLiteral("application/x-flipbook-page-rows"), rows);
    QDropEvent event(below(2), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &event);
    QCOMPARE(m_fixture->history(), QStringList());
    // Frames cannot be dropped among pages, and files are dropped on the page itself.
    data.clear();
    data.setData(QStringLiteral("application/x-flipbook-frame-rows"), rows);
    data.setUrls({QUrl::fromLocalFile(m_fixture->path(QStringLiteral("a.gif")))});
    QDragEnterEvent enter(below(2), Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(list().viewport(), &enter);
    QVERIFY(!enter.isAccepted());
}

void TestWindowDragging::noClickTakesTheChoiceOfAPageAway()
{
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, middle(1));
    QCOMPARE(shown(), 1);
    QTest::mouseClick(list().viewport(), Qt::LeftButton, Qt::ControlModifier, middle(1));
    QVERIFY(list().selectionModel()->isRowSelected(1, {}));
    QTest::mouseClick(list().viewport(), Qt::LeftButton, {}, below(2) + QPoint(0, 60));
    QVERIFY(list().selectionModel()->isRowSelected(1, {}));
    QCOMPARE(shown(), 1);
}

void TestWindowDragging::pagesAreMovedByTheKeyboardToo()
{
    const Qt::KeyboardModifiers keys = Qt::ControlModifier | Qt::ShiftModifier;
    QTest::keyClick(&m_fixture->window(), Qt::Key_PageDown, keys);
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::red, Qt::blue}));
    QTest::keyClick(&m_fixture->window(), Qt::Key_PageDown, keys);
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::blue, Qt::red}));
    QVERIFY(!m_fixture->isEnabled("move-page-down"));
    QTest::keyClick(&m_fixture->window(), Qt::Key_PageUp, keys);
    QCOMPARE(pages(), QList<QColor>({Qt::green, Qt::red, Qt::blue}));
    QCOMPARE(m_fixture->history().size(), 3);
}

void TestWindowDragging::framesAreDraggedWithTheMouse()
{
    CBaseObject &film = m_fixture->addFilm({Qt::red, Qt::green, Qt::blue}, {300, 300});
    m_fixture->page().selectObjects({&film});
    m_fixture->window().grab();
    const QRect last = strip().visualRect(strip().model()->index(2, 0));
    m_fixture->dragRow(strip(), 0, QPoint(last.right() - 5, last.center().y()));
    QCOMPARE(m_fixture->frameColours(*m_fixture->session().film()),
             QList<QColor>({Qt::green, Qt::blue, Qt::red}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move Frame")}));
    QCOMPARE(strip().selectedRows(), QVector<int>({2}));
}

void TestWindowDragging::framesAreCopiedWithTheMouseAndCtrl()
{
    CBaseObject &film = m_fixture->addFilm({Qt::red, Qt::green, Qt::blue}, {300, 300});
    m_fixture->page().selectObjects({&film});
    m_fixture->window().grab();
    const QRect second = strip().visualRect(strip().model()->index(1, 0));
    m_fixture->dragRow(strip(), 2, QPoint(second.left() + 5, second.center().y()),
                       Qt::ControlModifier);
    QCOMPARE(m_fixture->frameColours(*m_fixture->session().film()),
             QList<QColor>({Qt::red, Qt::blue, Qt::green, Qt::blue}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Duplicate Frame")}));
}

int main(int argc, char *argv[])
{
    // The platform "offscreen" drags nothing.
    qputenv("QT_QPA_PLATFORM", "minimal");
    QApplication application(argc, argv);
    QTEST_SET_MAIN_SOURCE_PATH
    TestWindowDragging test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_window_dragging.moc"
