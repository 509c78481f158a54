#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/import/gifframes.h"
#include "flipbook/import/mediaimport.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/import/importcontroller.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QtTest>
#include <QtWidgets/QMessageBox>
#include <QtWidgets/QToolButton>

/// Films and pictures that are added to the page and to the frames of a film.
class TestWindowImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void aDroppedGifBecomesAnObjectWhereItWasDropped();
    void readingInPiecesGivesTheFilmThatTheObjectItselfImports();
    void anUnevenGifKeepsItsRhythmAndOffersOneTime();
    void anUnevenWebpFilmKeepsItsRhythm();
    void aFilmAmongPicturesIsAnObjectOfItsOwn();
    void aSheetWithItsDescriptionBecomesAFilm();
    void framesThatTakeLongToReadAreNotTakenForUnevenOnes();
    void picturesOfOneSizeBecomeOneFilmInNaturalOrder();
    void theyCanBecomeSingleObjectsInstead();
    void aFolderOfPicturesBecomesAFilm();
    void aFrameFolderIsReadAsItsFileSays();
    void filesDroppedOnTheStripBecomeFramesAtThatPlace();
    void photosKeepTheirNamesAndTakenOnesGetANumber();
    void aFileThatIsNoPictureIsNamedAndNothingChanges();
    void theGoodOnesAmongBadFilesAreImported();
    void beyondTheBudgetAQuestionIsAsked();
    void beyondTheUsualBudgetAQuestionIsAskedToo();
    void filesOfTheCommandLineAreOpenedOrAdded();
    void aCancelledImportLeavesTheDocumentAsItWas();
    void theHintOfTheEmptyPageGoesWithTheFirstObject();

private:
    QString gif(const QString &name, const QVector<int> &delaysCs);
    QString picture(const QString &name, const QColor &colour, int width = 40)
    {
        return m_fixture->writePicture(name, colour, {width, 30});
    }
    QList<CBaseObject *> objects() { return m_fixture->page().objects(); }

    std::unique_ptr<WindowFixture> m_fixture;
};

/// A GIF of 20 x 10 pixels with frames of red, green and blue in turn.
QString TestWindowImport::gif(const QString &name, const QVector<int> &delaysCs)
{
    GifBuilder builder(20, 10);
    builder.loop(0);
    for (int i = 0; i < delaysCs.size(); ++i)
        builder.add(i % 3, delaysCs.at(i));
    builder.write(m_fixture->path(name));
    return m_fixture->path(name);
}

void TestWindowImport::aDroppedGifBecomesAnObjectWhereItWasDropped()
{
    m_fixture->dropOnPage({200, 150}, {gif(QStringLiteral("a.gif"), {10, 10, 10})});
    QCOMPARE(objects().size(), 1);
    CBaseObject &object = *objects().constFirst();
    QCOMPARE(object.getPos(), QPointF(190, 145));
    QCOMPARE(object.getSize(), QSizeF(20, 10));
    QCOMPARE(AnimatedObject(object).frameCount(), 3);
    QCOMPARE(AnimatedObject(object).name(), QStringLiteral("a"));
    QCOMPARE(m_fixture->session().film(), &object);
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Add a.gif")}));
    m_fixture->trigger("undo");
    QVERIFY(objects().isEmpty());
    m_fixture->trigger("redo");
    QCOMPARE(objects(), QList<CBaseObject *>({&object}));
}

void TestWindowImport::readingInPiecesGivesTheFilmThatTheObjectItselfImports()
{
    const QString path = gif(QStringLiteral("a.gif"), {7, 7, 7, 7});
    const Plugin &plugin = m_fixture->session().plugin();
    Reading reading(1 << 30, false);
    const ImportedMedia media = importMedia(plugin, path, reading);
    const AnimatedObject own(*media.object);
    const GifFrames pieces = readGifFrames(path, QStringLiteral("a"), [](int) {});
    QCOMPARE(pieces.intervalMs, own.intervalMs());
    QCOMPARE(pieces.loopCount, own.loopCount());
    QCOMPARE(pieces.frames, plugin.frames(*media.object));

    m_fixture->dropOnPage({200, 150}, {path});
    const AnimatedObject dropped(*objects().constFirst());
    QCOMPARE(dropped.intervalMs(), 70);
    QCOMPARE(dropped.loopCount(), -1);
    QCOMPARE(m_fixture->frameNames(dropped.base()),
             QStringList({QStringLiteral("a_1"), QStringLiteral("a_2"), QStringLiteral("a_3"),
                          QStringLiteral("a_4")}));
}

void TestWindowImport::anUnevenGifKeepsItsRhythmAndOffersOneTime()
{
    // 100, 300 and 200 ms: six frames of 100 ms. With the first time for all, 0.3 s.
    m_fixture->dropOnPage({200, 150}, {gif(QStringLiteral("u.gif"), {10, 30, 20})});
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 6);
    QCOMPARE(AnimatedObject(*objects().constFirst()).intervalMs(), 100);
    QCOMPARE(m_fixture->frameColours(*objects().constFirst()),
             QList<QColor>({QColor(Qt::red), QColor(Qt::green), QColor(Qt::green),
                            QColor(Qt::green), QColor(Qt::blue), QColor(Qt::blue)}));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("The frames of u.gif have different durations, 0.6 s in "
                                         "total. Its timing is preserved with 6 frames.")}));
    m_fixture->choose(QStringLiteral("Same duration for all: 0.3 s"));
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 3);
    QCOMPARE(AnimatedObject(*objects().constFirst()).intervalMs(), 100);
    QCOMPARE(objects().constFirst()->getPos(), QPointF(190, 145));
    QCOMPARE(m_fixture->messages(), QStringList());
    m_fixture->trigger("undo");
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 6);
}

void TestWindowImport::anUnevenWebpFilmKeepsItsRhythm()
{
    // 100, 300 and 200 ms: six frames of 100 ms.
    const QString path = m_fixture->path(QStringLiteral("u.webp"));
    writeBytes(path, webpFilm(QSize(1, 1), 3,
                              {{pixelRow({0xffff0000}), {0, 0}, 100},
                               {pixelRow({0xff00ff00}), {0, 0}, 300},
                               {pixelRow({0xff0000ff}), {0, 0}, 200}}));
    m_fixture->dropOnPage({200, 150}, {path});
    QCOMPARE(objects().size(), 1);
    const AnimatedObject film(*objects().constFirst());
    QCOMPARE(film.frameCount(), 6);
    QCOMPARE(film.intervalMs(), 100);
    QCOMPARE(film.loopCount(), 2);
    QCOMPARE(film.name(), QStringLiteral("u"));
}

void TestWindowImport::aFilmAmongPicturesIsAnObjectOfItsOwn()
{
    const QString film = m_fixture->path(QStringLiteral("film.png"));
    const FilmFrame frame{Pictures::solid(40, 30, Qt::red), {0, 0}};
    writeBytes(film, ApngBuilder(QSize(40, 30), 0).add(frame).add(frame).data());
    const QString still = m_fixture->path(QStringLiteral("a.webp"));
    writeBytes(still, webpPicture(Pictures::solid(40, 30, Qt::green)));
    m_fixture->dropOnPage({200, 150}, {film, still, picture(QStringLiteral("b.png"), Qt::blue)});
    QCOMPARE(objects().size(), 2);
    // The two pictures are one film.
    const auto dropped = objects();
    for (CBaseObject *object : dropped)
        QCOMPARE(AnimatedObject(*object).frameCount(), 2);
}

void TestWindowImport::aSheetWithItsDescriptionBecomesAFilm()
{
    picture(QStringLiteral("sheet.png"), Qt::blue);
    const QString path = m_fixture->path(QStringLiteral("sheet.json"));
    writeBytes(path, R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 20, "h": 30}},
                                    {"frame": {"x": 20, "y": 0, "w": 20, "h": 30}}],
                         "meta": {"image": "sheet.png"}})");
    m_fixture->dropOnPage({200, 150}, {path});
    QCOMPARE(objects().size(), 1);
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 2);
    QCOMPARE(objects().constFirst()->getSize(), QSizeF(20, 30));
}

void TestWindowImport::framesThatTakeLongToReadAreNotTakenForUnevenOnes()
{
    GifBuilder builder(3000, 2000);
    for (int i = 0; i < 3; ++i)
        builder.add(i, 10);
    builder.write(m_fixture->path(QStringLiteral("large.gif")));
    m_fixture->dropOnPage({200, 150}, {m_fixture->path(QStringLiteral("large.gif"))});
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 3);
    QCOMPARE(AnimatedObject(*objects().constFirst()).intervalMs(), 100);
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowImport::picturesOfOneSizeBecomeOneFilmInNaturalOrder()
{
    const QStringList files = {picture(QStringLiteral("p10.png"), Qt::blue),
                               picture(QStringLiteral("p2.png"), Qt::green),
                               picture(QStringLiteral("p1.png"), Qt::red)};
    m_fixture->dropOnPage({200, 150}, files);
    QCOMPARE(objects().size(), 1);
    QCOMPARE(m_fixture->frameNames(*objects().constFirst()),
             QStringList({QStringLiteral("p1"), QStringLiteral("p2"), QStringLiteral("p10")}));
    QCOMPARE(AnimatedObject(*objects().constFirst()).name(), QStringLiteral("p"));
}

void TestWindowImport::theyCanBecomeSingleObjectsInstead()
{
    m_fixture->dropOnPage({200, 150}, {picture(QStringLiteral("p1.png"), Qt::red),
                                       picture(QStringLiteral("p2.png"), Qt::green)});
    QCOMPARE(objects().size(), 1);
    // A step in between stays.
    QTest::keyClick(&m_fixture->view(), Qt::Key_Right);
    m_fixture->choose(QStringLiteral("One object for each picture"));
    QCOMPARE(objects().size(), 2);
    QCOMPARE(m_fixture->history(),
             QStringList({QStringLiteral("Add p1.png"), QStringLiteral("Nudge"),
                          QStringLiteral("One Object for Each Picture")}));
    QCOMPARE(objects().constFirst()->getPos(), QPointF(180, 135));
    QCOMPARE(objects().constLast()->getPos(), QPointF(204, 159));
    m_fixture->trigger("undo");
    QCOMPARE(objects().size(), 1);
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 2);
    QCOMPARE(objects().constFirst()->getPos(), QPointF(181, 135));
}

void TestWindowImport::aFolderOfPicturesBecomesAFilm()
{
    QDir(m_fixture->path(QString())).mkdir(QStringLiteral("walk"));
    picture(QStringLiteral("walk/b.png"), Qt::green, 50);
    picture(QStringLiteral("walk/a.png"), Qt::red);
    m_fixture->dropOnPage({200, 150}, {m_fixture->path(QStringLiteral("walk"))});
    QCOMPARE(objects().size(), 1);
    QCOMPARE(AnimatedObject(*objects().constFirst()).name(), QStringLiteral("walk"));
    QCOMPARE(m_fixture->frameNames(*objects().constFirst()),
             QStringList({QStringLiteral("a"), QStringLiteral("b")}));
    QCOMPARE(objects().constFirst()->getSize(), QSizeF(40, 30));
}

void TestWindowImport::aFrameFolderIsReadAsItsFileSays()
{
    QDir(m_fixture->path(QString())).mkdir(QStringLiteral("walk"));
    picture(QStringLiteral("walk/b.png"), Qt::green);
    picture(QStringLiteral("walk/a.png"), Qt::red);
    writeBytes(m_fixture->path(QStringLiteral("walk/config.json")),
               "{\"ImageList\":[{\"filename\":\"b.png\"}],\"ShiftInterval\":40}");
    m_fixture->dropOnPage({200, 150}, {m_fixture->path(QStringLiteral("walk"))});
    QCOMPARE(m_fixture->frameNames(*objects().constFirst()),
             QStringList({QStringLiteral("walk_1")}));
    QCOMPARE(AnimatedObject(*objects().constFirst()).intervalMs(), 40);
}

void TestWindowImport::filesDroppedOnTheStripBecomeFramesAtThatPlace()
{
    CBaseObject &film = m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({&film});
    FrameStrip &strip = m_fixture->window().frames().strip();
    const QPoint beforeSecond(strip.visualRect(strip.model()->index(1, 0)).left() + 2, 30);
    m_fixture->drop(*strip.viewport(), beforeSecond,
                    {picture(QStringLiteral("x10.png"), Qt::blue),
                     picture(QStringLiteral("x9.png"), Qt::white)});
    CBaseObject &now = *m_fixture->session().film();
    QCOMPARE(m_fixture->frameColours(now), QList<QColor>({QColor(Qt::red), QColor(Qt::white),
                                                          QColor(Qt::blue), QColor(Qt::green)}));
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Insert 2 Frames")}));
    QCOMPARE(now.getPos(), QPointF(100, 100));
    m_fixture->trigger("undo");
    QCOMPARE(m_fixture->session().film(), &film);
    QCOMPARE(m_fixture->frameColours(film), QList<QColor>({QColor(Qt::red), QColor(Qt::green)}));
}

void TestWindowImport::photosKeepTheirNamesAndTakenOnesGetANumber()
{
    CBaseObject &film = m_fixture->addFilm({Qt::red});
    m_fixture->page().selectObjects({&film});
    FrameStrip &strip = m_fixture->window().frames().strip();
    const QStringList photos = {picture(QStringLiteral("IMG_0001.png"), Qt::blue),
                                picture(QStringLiteral("IMG_0002.png"), Qt::white)};
    const QPoint beforeFirst(strip.visualRect(strip.model()->index(0, 0)).left() + 2, 30);
    m_fixture->drop(*strip.viewport(), beforeFirst, photos);
    QCOMPARE(m_fixture->frameNames(*m_fixture->session().film()).mid(0, 2),
             QStringList({QStringLiteral("IMG_0001"), QStringLiteral("IMG_0002")}));
    QCOMPARE(m_fixture->messages(), QStringList());
    m_fixture->drop(*strip.viewport(), beforeFirst, photos);
    QCOMPARE(m_fixture->frameNames(*m_fixture->session().film()).mid(0, 4),
             QStringList({QStringLiteral("IMG_0001 (2)"), QStringLiteral("IMG_0002 (2)"),
                          QStringLiteral("IMG_0001"), QStringLiteral("IMG_0002")}));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral(
                 "Names that were taken got a number: IMG_0001 (2), IMG_0002 (2)")}));
}

void TestWindowImport::aFileThatIsNoPictureIsNamedAndNothingChanges()
{
    const QString path = m_fixture->path(QStringLiteral("bad.gif"));
    writeBytes(path, "GIF89a");
    m_fixture->dropOnPage({200, 150}, {path});
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(path + QStringLiteral(": ")),
             qPrintable(m_fixture->messages().first()));
    QVERIFY(objects().isEmpty());
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowImport::theGoodOnesAmongBadFilesAreImported()
{
    const QString bad = m_fixture->path(QStringLiteral("bad.png"));
    writeBytes(bad, "no picture");
    m_fixture->dropOnPage({200, 150}, {bad, gif(QStringLiteral("a.gif"), {10})});
    QCOMPARE(objects().size(), 1);
    QCOMPARE(
        m_fixture->messages(),
        QStringList({bad + QStringLiteral(": not a picture that can be read; those are PNG, JPEG, "
                                          "GIF, BMP, PBM, PGM, PPM and WebP")}));
}

void TestWindowImport::beyondTheBudgetAQuestionIsAsked()
{
    m_fixture->window().importer().work().setMemoryBudget(1000);
    const QString path = gif(QStringLiteral("a.gif"), {10, 10});
    m_fixture->answerNext(QMessageBox::Cancel);
    m_fixture->window().importer().importToPage({path});
    QVERIFY(objects().isEmpty());
    m_fixture->answerNext(QMessageBox::Yes);
    m_fixture->window().importer().importToPage({path});
    QCOMPARE(objects().size(), 1);
}

void TestWindowImport::beyondTheUsualBudgetAQuestionIsAskedToo()
{
    // A hundred bytes that claim 30,000 x 30,000 pixels of four bytes, which are 3.4 GiB.
    const QString path = m_fixture->path(QStringLiteral("poster.png"));
    writeBytes(path, Bombs::claimingPng(30000, 30000));
    for (const bool isStrip : {false, true}) {
        QString question;
        QTimer::singleShot(0, qApp, [&question] {
            auto *box = qobject_cast<QMessageBox *>(QApplication::activeModalWidget());
            question = box ? box->text() : QString();
            if (box)
                box->reject();
        });
        if (isStrip) {
            m_fixture->page().selectObjects({&m_fixture->addFilm({Qt::red})});
            m_fixture->window().importer().importToFilm({path}, 0);
        } else {
            m_fixture->window().importer().importToPage({path});
        }
        QVERIFY2(question.startsWith(QLatin1String("poster.png would need ")) &&
                     question.endsWith(QLatin1String("GiB of memory, which is more than the limit "
                                                     "of 2.0 GiB.")),
                 qPrintable(question));
        QCOMPARE(objects().size(), isStrip ? 1 : 0);
    }
    QCOMPARE(m_fixture->history(), QStringList());
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowImport::filesOfTheCommandLineAreOpenedOrAdded()
{
    const QString document = m_fixture->path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    const QString film = gif(QStringLiteral("a.gif"), {10, 10});
    m_fixture->window().openFiles({film, document});
    QCOMPARE(m_fixture->session().path(), document);
    QCOMPARE(objects().size(), 1);
    QCOMPARE(AnimatedObject(*objects().constFirst()).frameCount(), 2);
}

void TestWindowImport::aCancelledImportLeavesTheDocumentAsItWas()
{
    // Escape waits in the queue and is heard when the first of the frames have been read.
    GifBuilder builder(200, 200);
    for (int i = 0; i < 600; ++i)
        builder.add(i % 3, 10);
    builder.write(m_fixture->path(QStringLiteral("long.gif")));
    CBaseObject &film = m_fixture->addFilm({Qt::red});
    QCoreApplication::postEvent(&m_fixture->view(),
                                new QKeyEvent(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier));
    m_fixture->window().importer().importToPage({m_fixture->path(QStringLiteral("long.gif"))});
    QCOMPARE(objects(), QList<CBaseObject *>({&film}));
    QCOMPARE(m_fixture->history(), QStringList());
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowImport::theHintOfTheEmptyPageGoesWithTheFirstObject()
{
    auto *hint = m_fixture->window().findChild<QWidget *>(QStringLiteral("emptyHint"));
    QVERIFY(hint->isVisible());
    m_fixture->dropOnPage({200, 150}, {gif(QStringLiteral("a.gif"), {10})});
    QVERIFY(!hint->isVisible());
    m_fixture->trigger("undo");
    QVERIFY(hint->isVisible());
}

QTEST_MAIN(TestWindowImport)
#include "tst_window_import.moc"
