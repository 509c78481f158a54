#include "flipbook/editing/frameeditor.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "framework/objecthandles.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/pictures.h"

#include <QtCore/QMimeData>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>

/// Cut, copy, paste, stacking and pages. Two films of 40 x 30 lie at (100, 100) and
/// (200, 150).
class TestWindowEdit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aCopiedObjectIsPastedBesideItself();
    void copiesAreWholeObjects();
    void thePasteboardHoldsAPictureForOthers();
    void aPictureOfAnotherProgramIsPasted();
    void aDamagedPasteboardPastesNothing();
    void cutTakesTheObjectAway();
    void deleteRemovesWhatIsSelectedInOneStep();
    void duplicateMakesACopyBesideTheOriginal();
    void framesAreCopiedWhileTheStripHasTheFocus();
    void deleteDeletesFramesWhileTheStripHasTheFocus();
    void objectsAreRaisedAndLowered();
    void severalKeepTheirOrderWhenTheyRise();
    void backgroundsStayBelowWhileOthersRise();
    void mirrorAndFlipAreSteps();
    void pagesAreAddedDeletedAndMoved();
    void aDeletedPageComesBackWithItsObjects();
    void aStepAfterAnUndoneNewPageKeepsTheHistory();
    void aDuplicatedPageHoldsCopies();

private:
    QList<CBaseObject *> objects() { return m_fixture->page().objects(); }
    const QList<Page *> &pages() { return m_fixture->session().document().pages(); }
    FrameStrip &strip() { return m_fixture->window().frames().strip(); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_one = nullptr;
    CBaseObject *m_two = nullptr;
};

void TestWindowEdit::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_one = &m_fixture->addFilm({Qt::red, Qt::green});
    m_two = &m_fixture->addFilm({Qt::blue, Qt::white}, {200, 150});
    m_fixture->page().selectObjects({m_one});
    m_fixture->view().setFocus();
}

void TestWindowEdit::aCopiedObjectIsPastedBesideItself()
{
    m_fixture->trigger("copy");
    m_fixture->trigger("paste");
    QCOMPARE(objects().size(), 3);
    QCOMPARE(objects().constLast()->getPos(), QPointF(116, 116));
    QCOMPARE(m_fixture->session().film(), objects().constLast());
    m_fixture->trigger("paste");
    QCOMPARE(objects().constLast()->getPos(), QPointF(132, 132));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Paste"), QStringLiteral("Paste")}));
}

void TestWindowEdit::copiesAreWholeObjects()
{
    m_one->setRotate(30.0, false);
    AnimatedObject(*m_one).setInterval(70);
    m_fixture->trigger("copy");
    m_fixture->trigger("paste");
    CBaseObject &copy = *objects().constLast();
    QCOMPARE(m_fixture->frameColours(copy), QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
    QCOMPARE(m_fixture->frameNames(copy), m_fixture->frameNames(*m_one));
    QCOMPARE(copy.getRotate(), 30.0);
    QCOMPARE(AnimatedObject(copy).intervalMs(), 70);
}

void TestWindowEdit::thePasteboardHoldsAPictureForOthers()
{
    m_fixture->trigger("copy");
    const QImage picture = QApplication::clipboard()->image();
    QCOMPARE(picture.size(), QSize(40, 30));
    QCOMPARE(picture.pixelColor(20, 15), QColor(Qt::red));
}

void TestWindowEdit::aPictureOfAnotherProgramIsPasted()
{
    QApplication::clipboard()->setImage(Pictures::solid(60, 20, Qt::black));
    m_fixture->trigger("paste");
    QTRY_COMPARE(objects().size(), 3);
    QCOMPARE(objects().constLast()->getPos(), QPointF(450, 350));
    QCOMPARE(objects().constLast()->getSize(), QSizeF(60, 20));
}

void TestWindowEdit::aDamagedPasteboardPastesNothing()
{
    for (const QByteArray &bytes :
         {QByteArray(), QByteArray("\xff\xff\xff\xff"), QByteArray("\0\0\0\1\0\0\0\4abcd", 12)}) {
        auto *data = new QMimeData;
        data->setData(QStringLiteral("application/x-flipbook-objects"), bytes);
        QApplication::clipboard()->setMimeData(data);
        m_fixture->trigger("paste");
        QCOMPARE(objects().size(), 2);
        QCOMPARE(m_fixture->messages().size(), 1);
    }
}

void TestWindowEdit::cutTakesTheObjectAway()
{
    m_fixture->trigger("cut");
    QCOMPARE(objects(), QList<CBaseObject *>({m_two}));
    m_fixture->trigger("paste");
    QCOMPARE(objects().constLast()->getPos(), QPointF(100, 100));
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QCOMPARE(objects(), QList<CBaseObject *>({m_one, m_two}));
}

void TestWindowEdit::deleteRemovesWhatIsSelectedInOneStep()
{
    m_fixture->trigger("select-all");
    m_fixture->trigger("delete");
    QVERIFY(objects().isEmpty());
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Delete 2 Objects")}));
    QVERIFY(!m_fixture->isEnabled("delete"));
    m_fixture->trigger("undo");
    QCOMPARE(objects(), QList<CBaseObject *>({m_one, m_two}));
    QCOMPARE(m_fixture->session().selection().size(), 2);
}

void TestWindowEdit::duplicateMakesACopyBesideTheOriginal()
{
    m_fixture->trigger("duplicate");
    QCOMPARE(objects().size(), 3);
    QCOMPARE(objects().constLast()->getPos(), QPointF(116, 116));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Duplicate")}));
}

void TestWindowEdit::framesAreCopiedWhileTheStripHasTheFocus()
{
    strip().setFocus();
    strip().selectRows({1});
    m_fixture->trigger("copy");
    strip().selectRows({0});
    m_fixture->trigger("paste");
    QCOMPARE(m_fixture->frameColours(*m_fixture->session().film()),
             QList<QColor>({QColor(Qt::red), QColor(Qt::green), QColor(Qt::green)}));
    QCOMPARE(strip().selectedRows(), QVector<int>({1}));
    QCOMPARE(objects().size(), 2);
}

void TestWindowEdit::deleteDeletesFramesWhileTheStripHasTheFocus()
{
    strip().setFocus();
    strip().selectRows({0});
    m_fixture->trigger("delete");
    QCOMPARE(m_fixture->frameColours(*m_fixture->session().film()),
             QList<QColor>({QColor(Qt::green)}));
    QCOMPARE(objects().size(), 2);
}

void TestWindowEdit::objectsAreRaisedAndLowered()
{
    m_fixture->trigger("raise");
    QCOMPARE(objects(), QList<CBaseObject *>({m_two, m_one}));
    m_fixture->trigger("raise");
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Raise")}));
    m_fixture->trigger("lower-to-bottom");
    QCOMPARE(objects(), QList<CBaseObject *>({m_one, m_two}));
    m_fixture->trigger("undo");
    QCOMPARE(objects(), QList<CBaseObject *>({m_two, m_one}));
}

void TestWindowEdit::severalKeepTheirOrderWhenTheyRise()
{
    CBaseObject &three = m_fixture->addFilm({Qt::black}, {300, 300});
    m_fixture->page().selectObjects({m_one, m_two});
    m_fixture->trigger("raise");
    QCOMPARE(objects(), QList<CBaseObject *>({&three, m_one, m_two}));
    m_fixture->trigger("lower");
    QCOMPARE(objects(), QList<CBaseObject *>({m_one, m_two, &three}));
}

void TestWindowEdit::backgroundsStayBelowWhileOthersRise()
{
    FrameEditor(*m_two).setBackground(true);
    CBaseObject &third = m_fixture->addFilm({Qt::yellow}, {300, 50});
    m_fixture->page().selectObjects({m_two});
    for (const char *id : {"raise", "lower", "raise-to-top", "lower-to-bottom"})
        m_fixture->trigger(id);
    QCOMPARE(objects(), QList<CBaseObject *>({m_two, m_one, &third}));
    m_fixture->page().selectObjects({m_one, m_two});
    m_fixture->trigger("raise");
    QCOMPARE(objects(), QList<CBaseObject *>({m_two, &third, m_one}));
    m_fixture->trigger("lower-to-bottom");
    QCOMPARE(objects(), QList<CBaseObject *>({m_two, m_one, &third}));
}

void TestWindowEdit::mirrorAndFlipAreSteps()
{
    m_fixture->trigger("mirror");
    QVERIFY(m_one->isMirrored());
    m_fixture->trigger("flip");
    QVERIFY(m_one->isFlipped());
    m_fixture->trigger("undo");
    m_fixture->trigger("undo");
    QVERIFY(!m_one->isMirrored());
    QVERIFY(!m_one->isFlipped());
    m_fixture->trigger("redo");
    QVERIFY(m_one->isMirrored());
}

void TestWindowEdit::pagesAreAddedDeletedAndMoved()
{
    Page *first = &m_fixture->page();
    QVERIFY(!m_fixture->isEnabled("delete-page"));
    m_fixture->trigger("add-page");
    QCOMPARE(pages().size(), 2);
    QVERIFY(&m_fixture->page() != first);
    QCOMPARE(m_fixture->page().pageRect(), QRectF(0, 0, 960, 720));
    m_fixture->trigger("move-page-up");
    QCOMPARE(pages().last(), first);
    m_fixture->trigger("undo");
    QCOMPARE(pages().first(), first);
    m_fixture->trigger("previous-page");
    QCOMPARE(&m_fixture->page(), first);
    m_fixture->trigger("next-page");
    m_fixture->trigger("delete-page");
    QCOMPARE(pages(), QList<Page *>({first}));
    QCOMPARE(&m_fixture->page(), first);
}

void TestWindowEdit::aDeletedPageComesBackWithItsObjects()
{
    Page *first = &m_fixture->page();
    m_fixture->trigger("add-page");
    m_fixture->trigger("previous-page");
    m_fixture->trigger("delete-page");
    QVERIFY(objects().isEmpty());
    m_fixture->trigger("undo");
    QCOMPARE(&m_fixture->page(), first);
    QCOMPARE(objects(), QList<CBaseObject *>({m_one, m_two}));
}

void TestWindowEdit::aStepAfterAnUndoneNewPageKeepsTheHistory()
{
    m_fixture->trigger("duplicate");
    m_fixture->trigger("duplicate-page");
    m_fixture->trigger("undo");
    m_fixture->page().selectObjects({m_one});
    m_fixture->trigger("mirror");
    QCOMPARE(m_fixture->history(),
             QStringList({QStringLiteral("Duplicate"), QStringLiteral("Mirror")}));
}

void TestWindowEdit::aDuplicatedPageHoldsCopies()
{
    m_fixture->trigger("duplicate-page");
    QCOMPARE(objects().size(), 2);
    QVERIFY(objects().constFirst() != m_one);
    QCOMPARE(objects().constFirst()->getPos(), QPointF(100, 100));
    QCOMPARE(m_fixture->frameColours(*objects().constLast()),
             QList<QColor>({QColor(Qt::blue), QColor(Qt::white)}));
}

QTEST_MAIN(TestWindowEdit)
#include "tst_window_edit.moc"
