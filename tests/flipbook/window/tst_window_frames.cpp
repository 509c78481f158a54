#include "flipbook/window/frames/framecontroller.h"
#include "flipbook/window/frames/framemodel.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/historybudget.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>

namespace
{

constexpr auto red = Qt::red;
constexpr auto green = Qt::green;
constexpr auto blue = Qt::blue;
constexpr auto white = Qt::white;

} // namespace

/// The strip of frames. The selected film has the frames film_1 to film_4: red, green, blue, white.
class TestWindowFrames : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void theStripShowsTheFramesOfTheSelectedFilm();
    void framesReadForAScreenReader();
    void aClickShowsAFrameAndMarksIt();
    void theMarkFollowsAFilmThatPlays();
    void insertedBlanksComeAfterTheSelection();
    void duplicatesComeAfterTheSelectionWithNamesOfTheirOwn();
    void deletingSeveralFramesIsOneStep();
    void theFrameThatIsShownStaysWhenAnotherIsDeleted();
    void aFilmKeepsAtLeastOneFrame();
    void framesAreReversed();
    void selectedFramesAloneAreReversed();
    void altWithAnArrowMovesFrames();
    void framesDraggedWithinTheStripMove();
    void withCtrlTheyAreCopied();
    void rowsOfAnotherProcessAreNotTaken();
    void aFrameIsRenamedInPlace();
    void aDoubleClickRenamesAFrame();
    void aClickOnAnotherFilmEndsTheRenamingOfAFrame();
    void aReplacedFrameKeepsItsNameAndItsSizeOnThePage();
    void undoneEditsGiveTheFirstBytes();
    void theSelectionInTheStripFollowsEdits();
    void aFilmThatWasResizedKeepsItsScale();
    void theHistoryCountsPicturesThatObjectsShareOnce();
    void aHistoryThatNeedsTooMuchMemoryIsCleared();

private:
    CBaseObject &film() { return *m_fixture->session().film(); }
    FrameStrip &strip() { return m_fixture->window().frames().strip(); }
    QStringList names() { return m_fixture->frameNames(film()); }
    QList<QColor> colours() { return m_fixture->frameColours(film()); }
    QByteArray bytes();
    void dropRows(qint64 process, const QVector<int> &rows, int before,
                  Qt::KeyboardModifiers modifiers);

    std::unique_ptr<WindowFixture> m_fixture;
};

void TestWindowFrames::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_fixture->page().selectObjects({&m_fixture->addFilm({red, green, blue, white})});
}

/// The saved form of the film.
QByteArray TestWindowFrames::bytes()
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    film().save(stream);
    return bytes;
}

void TestWindowFrames::theStripShowsTheFramesOfTheSelectedFilm()
{
    QCOMPARE(strip().model()->rowCount(), 4);
    QCOMPARE(strip().model()->index(2, 0).data().toString(), QStringLiteral("film_3"));
    QVERIFY(strip().isVisible());
    m_fixture->page().selectObjects({});
    QVERIFY(!strip().isVisible());
    QCOMPARE(strip().model()->rowCount(), 0);
}

void TestWindowFrames::framesReadForAScreenReader()
{
    QCOMPARE(strip().model()->index(2, 0).data(Qt::AccessibleTextRole).toString(),
             QStringLiteral("Frame 3 of 4, film_3"));
}

void TestWindowFrames::aClickShowsAFrameAndMarksIt()
{
    const QModelIndex third = strip().model()->index(2, 0);
    QTest::mouseClick(strip().viewport(), Qt::LeftButton, {}, strip().visualRect(third).center());
    QCOMPARE(AnimatedObject(film()).shownIndex(), 2);
    QTRY_VERIFY(third.data(FrameModel::RunningRole).toBool());
    QCOMPARE(strip().selectedRows(), QVector<int>({2}));
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowFrames::theMarkFollowsAFilmThatPlays()
{
    AnimatedObject(film()).setInterval(1);
    QSignalSpy marks(&m_fixture->window().frames().model(), &FrameModel::runningRowChanged);
    m_fixture->trigger("play");
    QTRY_VERIFY(marks.count() >= 5);
    m_fixture->trigger("play");
    QCoreApplication::processEvents();
    const int shown = AnimatedObject(film()).shownIndex();
    for (int row = 0; row < 4; ++row)
        QCOMPARE(strip().model()->index(row, 0).data(FrameModel::RunningRole).toBool(),
                 row == shown);
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowFrames::insertedBlanksComeAfterTheSelection()
{
    strip().selectRows({1});
    m_fixture->trigger("insert-blank-frame");
    QCOMPARE(names(), QStringList({QStringLiteral("film_1"), QStringLiteral("film_2"),
                                   QStringLiteral("film_5"), QStringLiteral("film_3"),
                                   QStringLiteral("film_4")}));
    QCOMPARE(colours().at(2).alpha(), 0);
    QCOMPARE(AnimatedObject(film()).shownIndex(), 2);
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Insert Blank Frame")}));
}

void TestWindowFrames::duplicatesComeAfterTheSelectionWithNamesOfTheirOwn()
{
    strip().selectRows({0, 1});
    m_fixture->trigger("duplicate-frames");
    QCOMPARE(colours(), QList<QColor>({red, green, red, green, blue, white}));
    QCOMPARE(names().mid(2, 2), QStringList({QStringLiteral("film_5"), QStringLiteral("film_6")}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Duplicate 2 Frames")}));
}

void TestWindowFrames::deletingSeveralFramesIsOneStep()
{
    strip().selectRows({0, 2});
    m_fixture->trigger("delete-frames");
    QCOMPARE(colours(), QList<QColor>({green, white}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Delete 2 Frames")}));
    m_fixture->trigger("undo");
    QCOMPARE(colours(), QList<QColor>({red, green, blue, white}));
    m_fixture->trigger("redo");
    QCOMPARE(colours(), QList<QColor>({green, white}));
}

void TestWindowFrames::theFrameThatIsShownStaysWhenAnotherIsDeleted()
{
    AnimatedObject(film()).showFrame(2);
    strip().selectRows({0});
    m_fixture->trigger("delete-frames");
    QCOMPARE(AnimatedObject(film()).shownIndex(), 1);
    strip().selectRows({1});
    m_fixture->trigger("delete-frames");
    QCOMPARE(AnimatedObject(film()).shownIndex(), 1);
    QCOMPARE(colours(), QList<QColor>({green, white}));
}

void TestWindowFrames::aFilmKeepsAtLeastOneFrame()
{
    strip().selectRows({0, 1, 2, 3});
    m_fixture->trigger("delete-frames");
    QCOMPARE(colours().size(), 4);
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("An animation needs at least one frame. To remove the "
                                         "animation, delete it on the page.")}));
}

void TestWindowFrames::framesAreReversed()
{
    AnimatedObject(film()).showFrame(1);
    m_fixture->trigger("reverse-frames");
    QCOMPARE(colours(), QList<QColor>({white, blue, green, red}));
    QCOMPARE(names().constFirst(), QStringLiteral("film_4"));
    QCOMPARE(AnimatedObject(film()).shownIndex(), 2);
}

void TestWindowFrames::selectedFramesAloneAreReversed()
{
    strip().selectRows({0, 2});
    m_fixture->trigger("reverse-frames");
    QCOMPARE(colours(), QList<QColor>({blue, green, red, white}));
}

void TestWindowFrames::altWithAnArrowMovesFrames()
{
    strip().selectRows({1, 2});
    m_fixture->trigger("move-frames-left");
    QCOMPARE(colours(), QList<QColor>({green, blue, red, white}));
    m_fixture->trigger("move-frames-left");
    QCOMPARE(colours(), QList<QColor>({green, blue, red, white}));
    m_fixture->trigger("move-frames-right");
    m_fixture->trigger("move-frames-right");
    QCOMPARE(colours(), QList<QColor>({red, white, green, blue}));
    QCOMPARE(strip().selectedRows(), QVector<int>({2, 3}));
}

void TestWindowFrames::dropRows(qint64 process, const QVector<int> &rows, int before,
                                Qt::KeyboardModifiers modifiers)
{
    QByteArray encoded;
    QDataStream stream(&encoded, QIODevice::WriteOnly);
    stream << process << rows;
    QMimeData data;
    data.setData(QStringLiteral("application/x-flipbook-frame-rows"), encoded);
    const QRect place = strip().visualRect(strip().model()->index(before, 0));
    const QPoint position(place.left() + 2, place.center().y());
    QDragEnterEvent enter(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton,
                          modifiers);
    QApplication::sendEvent(strip().viewport(), &enter);
    QDropEvent event(position, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, modifiers);
    QApplication::sendEvent(strip().viewport(), &event);
}

void TestWindowFrames::framesDraggedWithinTheStripMove()
{
    dropRows(QCoreApplication::applicationPid(), {2, 3}, 1, Qt::NoModifier);
    QCOMPARE(colours(), QList<QColor>({red, blue, white, green}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Move 2 Frames")}));
}

void TestWindowFrames::withCtrlTheyAreCopied()
{
    dropRows(QCoreApplication::applicationPid(), {3}, 1, Qt::ControlModifier);
    QCOMPARE(colours(), QList<QColor>({red, white, green, blue, white}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Duplicate Frame")}));
}

void TestWindowFrames::rowsOfAnotherProcessAreNotTaken()
{
    dropRows(QCoreApplication::applicationPid() + 1, {3}, 1, Qt::NoModifier);
    dropRows(QCoreApplication::applicationPid(), {3, 4}, 1, Qt::NoModifier);
    QCOMPARE(m_fixture->history(), QStringList());
}

void TestWindowFrames::aFrameIsRenamedInPlace()
{
    strip().selectRows({1});
    m_fixture->trigger("rename-frame");
    auto *editor = strip().findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText(QStringLiteral("jump"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(names().at(1), QStringLiteral("jump"));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Rename Frame")}));
    m_fixture->trigger("undo");
    QCOMPARE(names().at(1), QStringLiteral("film_2"));
}

void TestWindowFrames::aDoubleClickRenamesAFrame()
{
    const QPoint middle = strip().visualRect(strip().model()->index(2, 0)).center();
    QTest::mouseClick(strip().viewport(), Qt::LeftButton, {}, middle);
    QTest::mouseDClick(strip().viewport(), Qt::LeftButton, {}, middle);
    auto *editor = strip().findChild<QLineEdit *>();
    QVERIFY(editor);
    QCOMPARE(editor->text(), QStringLiteral("film_3"));
    QTest::keyClicks(editor, QStringLiteral("land"));
    QTest::keyClick(editor, Qt::Key_Return);
    QTRY_COMPARE(names().at(2), QStringLiteral("land"));
}

void TestWindowFrames::aClickOnAnotherFilmEndsTheRenamingOfAFrame()
{
    CBaseObject &other = m_fixture->addFilm({white}, {300, 200});
    strip().selectRows({1});
    m_fixture->trigger("rename-frame");
    auto *editor = strip().findChild<QLineEdit *>();
    QVERIFY(editor);
    editor->setText(QStringLiteral("jump"));
    m_fixture->view().setFocus();
    m_fixture->click({310, 210});
    QTRY_COMPARE(m_fixture->history(), QStringList({QStringLiteral("Rename Frame")}));
    QCOMPARE(&film(), &other);
    QCOMPARE(names(), QStringList({QStringLiteral("film_1")}));
    QCOMPARE(m_fixture->frameNames(*m_fixture->page().objects().first()).at(1),
             QStringLiteral("jump"));
}

void TestWindowFrames::aReplacedFrameKeepsItsNameAndItsSizeOnThePage()
{
    const QString path = m_fixture->writePicture(QStringLiteral("new.png"), Qt::black, {80, 60});
    strip().selectRows({0});
    m_fixture->window().findChild<FrameController *>()->replaceSelected(path);
    QCOMPARE(colours().constFirst(), QColor(Qt::black));
    QCOMPARE(names().constFirst(), QStringLiteral("film_1"));
    QCOMPARE(film().getSize(), QSizeF(40, 30));
}

void TestWindowFrames::undoneEditsGiveTheFirstBytes()
{
    const QByteArray before = bytes();
    strip().selectRows({1, 2});
    for (const char *id : {"duplicate-frames", "reverse-frames", "insert-blank-frame",
                           "move-frames-left", "delete-frames", "next-frame"})
        m_fixture->trigger(id);
    QVERIFY(bytes() != before);
    while (m_fixture->session().undoStack().canUndo())
        m_fixture->trigger("undo");
    QCOMPARE(bytes(), before);
}

void TestWindowFrames::theSelectionInTheStripFollowsEdits()
{
    strip().selectRows({1});
    m_fixture->trigger("duplicate-frames");
    QCOMPARE(strip().selectedRows(), QVector<int>({2}));
    m_fixture->trigger("delete-frames");
    QCOMPARE(strip().selectedRows(), QVector<int>({2}));
}

void TestWindowFrames::aFilmThatWasResizedKeepsItsScale()
{
    film().setSize(QSizeF(80, 60), false, false);
    strip().selectRows({0});
    m_fixture->trigger("duplicate-frames");
    QCOMPARE(film().getSize(), QSizeF(80, 60));
    QCOMPARE(film().getPos(), QPointF(100, 100));
    m_fixture->trigger("next-frame");
    QCOMPARE(film().getSize(), QSizeF(80, 60));
}

void TestWindowFrames::theHistoryCountsPicturesThatObjectsShareOnce()
{
    const HistoryBudget &budget = *m_fixture->window().findChild<HistoryBudget *>();
    const int frames = AnimatedObject(*m_fixture->session().film()).frameCount();
    constexpr qint64 picture = qint64(40) * 30 * 4;
    m_fixture->trigger("reverse-frames");
    QCOMPARE(budget.keptBytes(), 0);
    m_fixture->window().frames().strip().selectRows({0});
    m_fixture->trigger("delete-frames");
    QCOMPARE(budget.keptBytes(), picture);
    m_fixture->page().selectObjects(m_fixture->page().objects());
    m_fixture->trigger("delete");
    QCOMPARE(budget.keptBytes(), frames * picture);
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QCOMPARE(budget.keptBytes(), 0);
}

void TestWindowFrames::aHistoryThatNeedsTooMuchMemoryIsCleared()
{
    m_fixture->window().findChild<HistoryBudget *>()->setBytes(qint64(40) * 30 * 4);
    m_fixture->trigger("reverse-frames");
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Reverse Frames")}));
    m_fixture->page().selectObjects(m_fixture->page().objects());
    m_fixture->trigger("delete");
    QTRY_COMPARE(m_fixture->history(), QStringList());
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(QLatin1String("The history was cleared")),
             qPrintable(m_fixture->messages().first()));
    QVERIFY(m_fixture->page().objects().isEmpty());
    QVERIFY(m_fixture->session().isDirty());
}

QTEST_MAIN(TestWindowFrames)
#include "tst_window_frames.moc"
