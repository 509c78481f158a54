#include "flipbook/document/documentfile.h"
#include "flipbook/window/filecontroller.h"
#include "flipbook/window/output/exportcontroller.h"
#include "flipbook/window/recovery/openmarker.h"
#include "flipbook/window/recovery/recovery.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtCore/QDir>
#include <QtGui/QDesktopServices>
#include <QtTest/QtTest>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMessageBox>

/// The desktop, which is asked to open files and folders.
class Desktop : public QObject
{
    Q_OBJECT

public:
    Desktop() { QDesktopServices::setUrlHandler(QStringLiteral("file"), this, "open"); }
    ~Desktop() override { QDesktopServices::unsetUrlHandler(QStringLiteral("file")); }

    QStringList opened;

public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url.toLocalFile()); }
};

/// Exports, the copy of unsaved work, and documents that are open elsewhere. A film of 40 x 30 with
/// two frames, red and green, lies at (100, 100).
class TestWindowOutput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    // The test library changes the resolution of the screen, which pictures record.
    void initTestCase() { QApplication::setAttribute(Qt::AA_Use96Dpi, false); }
    void init();
    void cleanup() { m_fixture.reset(); }

    void aPageIsExportedAsAPicture();
    void theMessageOpensWhatWasWritten();
    void framesAreExportedAsTheCommandWritesThem();
    void aContactSheetIsPainted();
    void aRecordingHasTwentyFivePicturesASecond();
    void aSpriteAndAProjectAreWrittenAsTheCommandsWriteThem();
    void aWebPageIsWrittenAsTheCommandWritesIt();
    void animationsAreWrittenAsTheCommandsWriteThem();
    void theFormIsChosenWithTheFile_data();
    void theFormIsChosenWithTheFile();
    void aFileBesideTheSheetIsNotReplacedWithoutAQuestion();
    void aFolderThatIsNotEmptyIsRefused();
    void aFileThatCannotBeWrittenIsNamed();
    void unsavedWorkIsKeptAndOfferedAfterACrash();
    void savedWorkLeavesNoCopy();
    void aDocumentThatIsOpenElsewhereIsToldSo();

private:
    ExportController &exporter();
    Recovery &recovery() { return *m_fixture->window().findChild<Recovery *>(); }
    QStringList copies();
    QString path(const QString &name) { return m_fixture->path(name); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowOutput::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
}

ExportController &TestWindowOutput::exporter()
{
    return *m_fixture->window().findChild<ExportController *>();
}

void TestWindowOutput::aPageIsExportedAsAPicture()
{
    exporter().exportPicture(path(QStringLiteral("p.png")));
    const QImage picture(path(QStringLiteral("p.png")));
    QCOMPARE(picture.size(), QSize(960, 720));
    QCOMPARE(picture.pixelColor(120, 115), QColor(Qt::red));
    QCOMPARE(picture.pixelColor(90, 90), QColor(Qt::white));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("Written to ") + path(QStringLiteral("p.png"))}));
}

void TestWindowOutput::theMessageOpensWhatWasWritten()
{
    const Desktop desktop;
    exporter().exportFrames(path(QStringLiteral("frames")));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("Written to ") + path(QStringLiteral("frames"))}));
    m_fixture->choose(QStringLiteral("Open"));
    QCOMPARE(desktop.opened, QStringList({path(QStringLiteral("frames"))}));
    // A file may be of a type that nothing opens: its folder is opened.
    exporter().exportSprite(path(QStringLiteral("a.sprite3")));
    m_fixture->choose(QStringLiteral("Open folder"));
    QCOMPARE(desktop.opened.size(), 2);
    QCOMPARE(desktop.opened.last(), QFileInfo(path(QStringLiteral("a.sprite3"))).absolutePath());
}

void TestWindowOutput::framesAreExportedAsTheCommandWritesThem()
{
    exporter().exportFrames(path(QStringLiteral("window")));
    saveDocument(m_fixture->session().document(), path(QStringLiteral("a.flipbook")));
    const FlipbookRun run = flipbook({QStringLiteral("frames"), path(QStringLiteral("a.flipbook")),
                                      QStringLiteral("-o"), path(QStringLiteral("command"))});
    QCOMPARE(run.status, 0);
    const QStringList files = QDir(path(QStringLiteral("command"))).entryList(QDir::Files);
    QCOMPARE(files, QStringList({QStringLiteral("1-film_1.png"), QStringLiteral("2-film_2.png"),
                                 QStringLiteral("config.json")}));
    for (const QString &file : files)
        QCOMPARE(bytesOf(path(QStringLiteral("window/") + file)),
                 bytesOf(path(QStringLiteral("command/") + file)));
}

void TestWindowOutput::aContactSheetIsPainted()
{
    exporter().exportSheet(path(QStringLiteral("s.png")));
    QVERIFY(!QImage(path(QStringLiteral("s.png"))).isNull());
    QCOMPARE(AnimatedObject(*m_film).shownIndex(), 0);
}

void TestWindowOutput::aRecordingHasTwentyFivePicturesASecond()
{
    exporter().exportRecording(path(QStringLiteral("r")), 0.2);
    QCOMPARE(QDir(path(QStringLiteral("r"))).entryList(QDir::Files).size(), 5);
    // 100 ms for each frame, a step every 40 ms: the third picture, at 80 ms, still shows the first
    // frame, the fourth the second.
    QCOMPARE(QImage(path(QStringLiteral("r/frame-00003.png"))).pixelColor(120, 115),
             QColor(Qt::red));
    QCOMPARE(QImage(path(QStringLiteral("r/frame-00004.png"))).pixelColor(120, 115),
             QColor(Qt::green));
    QCOMPARE(m_fixture->session().document().alternateMode(), 0);
    QCOMPARE(m_fixture->session().film(), m_film);
}

void TestWindowOutput::aSpriteAndAProjectAreWrittenAsTheCommandsWriteThem()
{
    const QString document = path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    exporter().exportSprite(path(QStringLiteral("w.sprite3")));
    exporter().exportProject(path(QStringLiteral("w.sb3")));
    QCOMPARE(flipbook({QStringLiteral("sprite"), document, QStringLiteral("-o"),
                       path(QStringLiteral("c.sprite3"))})
                 .status,
             0);
    QCOMPARE(flipbook({QStringLiteral("project"), document, QStringLiteral("-o"),
                       path(QStringLiteral("c.sb3"))})
                 .status,
             0);
    QVERIFY(!bytesOf(path(QStringLiteral("w.sprite3"))).isEmpty());
    QCOMPARE(bytesOf(path(QStringLiteral("w.sprite3"))),
             bytesOf(path(QStringLiteral("c.sprite3"))));
    QCOMPARE(bytesOf(path(QStringLiteral("w.sb3"))), bytesOf(path(QStringLiteral("c.sb3"))));
}

void TestWindowOutput::aWebPageIsWrittenAsTheCommandWritesIt()
{
    const QString document = path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    exporter().exportWebPage(path(QStringLiteral("a.html")));
    QCOMPARE(flipbook({QStringLiteral("web"), document, QStringLiteral("-o"),
                       path(QStringLiteral("c.html"))})
                 .status,
             0);
    QVERIFY(!bytesOf(path(QStringLiteral("a.html"))).isEmpty());
    QCOMPARE(bytesOf(path(QStringLiteral("a.html"))), bytesOf(path(QStringLiteral("c.html"))));
}

void TestWindowOutput::animationsAreWrittenAsTheCommandsWriteThem()
{
    exporter().exportGif(path(QStringLiteral("w.gif")));
    exporter().exportWebp(path(QStringLiteral("w.webp")));
    exporter().exportApng(path(QStringLiteral("w.png")));
    exporter().exportAtlas(path(QStringLiteral("sheet.png")));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("Written to ") + path(QStringLiteral("sheet.png"))}));
    const QByteArray sheet = bytesOf(path(QStringLiteral("sheet.png")));
    const QByteArray description = bytesOf(path(QStringLiteral("sheet.json")));
    saveDocument(m_fixture->session().document(), path(QStringLiteral("a.flipbook")));
    const QString document = path(QStringLiteral("a.flipbook"));
    const QString output = QStringLiteral("-o");
    for (const char *form : {"gif", "webp", "apng"}) {
        const QString suffix =
            QString::fromLatin1(form).replace(QLatin1String("apng"), QLatin1String("png"));
        const QString file = path(QStringLiteral("c.") + suffix);
        QCOMPARE(flipbook({QString::fromLatin1(form), document, output, file}).status, 0);
        QCOMPARE(bytesOf(path(QStringLiteral("w.") + suffix)), bytesOf(file));
    }
    QCOMPARE(flipbook({QStringLiteral("atlas"), document, output, path(QStringLiteral("sheet.png")),
                       QStringLiteral("--json"), path(QStringLiteral("sheet.json"))})
                 .status,
             0);
    QCOMPARE(sheet, bytesOf(path(QStringLiteral("sheet.png"))));
    QCOMPARE(description, bytesOf(path(QStringLiteral("sheet.json"))));
}

void TestWindowOutput::theFormIsChosenWithTheFile_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("filter");
    QTest::addColumn<QString>("suffix");
    QTest::addColumn<QString>("command");
    QTest::addColumn<QString>("option");
    const auto row = [](const char *action, const char *filter, const char *suffix,
                        const char *command, const char *option) {
        QTest::newRow(option) << QByteArray(action) << QString::fromLatin1(filter)
                              << QString::fromLatin1(suffix) << QString::fromLatin1(command)
                              << QString::fromLatin1(option);
    };
    row("export-gif", "GIF animations with dithered colours (*.gif)", "gif", "gif", "--dither");
    row("export-webp", "WebP animations of quality 75 (*.webp)", "webp", "webp", "--quality 75");
    row("export-atlas", "PNG pictures with trimmed frames (*.png)", "png", "atlas", "--trim");
}

void TestWindowOutput::theFormIsChosenWithTheFile()
{
    QFETCH(QByteArray, action);
    QFETCH(QString, filter);
    QFETCH(QString, suffix);
    QFETCH(QString, command);
    QFETCH(QString, option);
    // 900 colours, and a border around them: each option makes a difference.
    QImage picture(50, 50, QImage::Format_ARGB32);
    picture.fill(Qt::transparent);
    for (int y = 0; y < 30; ++y) {
        for (int x = 0; x < 30; ++x)
            picture.setPixelColor(10 + x, 10 + y, QColor(8 * x, 8 * y, 100));
    }
    QVERIFY(picture.save(path(QStringLiteral("colours.png"))));
    m_fixture->dropOnPage({300, 300}, {path(QStringLiteral("colours.png"))});
    const QString document = path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    const QString output = path(QStringLiteral("out.") + suffix);
    QTimer::singleShot(0, qApp, [&] {
        auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
        QVERIFY2(dialog, "no file was asked for");
        dialog->selectNameFilter(filter);
        dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))->setText(output);
        QMetaObject::invokeMethod(dialog, "accept");
    });
    m_fixture->trigger(action.constData());
    const QByteArray written = bytesOf(output);
    const auto byCommand = [&](const QString &options) {
        QStringList arguments = {command,
                                 document,
                                 QStringLiteral("-o"),
                                 output,
                                 QStringLiteral("--object"),
                                 QStringLiteral("2")};
        arguments += options.split(QLatin1Char(' '), Qt::SkipEmptyParts);
        if (command == QLatin1String("atlas"))
            arguments << QStringLiteral("--json") << path(QStringLiteral("out.json"));
        return flipbook(arguments).status == 0 ? bytesOf(output) : QByteArray();
    };
    QVERIFY(!written.isEmpty());
    QVERIFY(written == byCommand(option));
    QVERIFY(written != byCommand(QString()));
}

void TestWindowOutput::aFileBesideTheSheetIsNotReplacedWithoutAQuestion()
{
    writeBytes(path(QStringLiteral("sheet.json")), "mine");
    m_fixture->answerNext(QMessageBox::Cancel);
    exporter().exportAtlas(path(QStringLiteral("sheet.png")));
    QCOMPARE(bytesOf(path(QStringLiteral("sheet.json"))), QByteArray("mine"));
    QVERIFY(!QFile::exists(path(QStringLiteral("sheet.png"))));
    m_fixture->answerNext(QMessageBox::Save);
    exporter().exportAtlas(path(QStringLiteral("sheet.png")));
    QVERIFY(bytesOf(path(QStringLiteral("sheet.json"))).startsWith('{'));
    QVERIFY(QFile::exists(path(QStringLiteral("sheet.png"))));
}

void TestWindowOutput::aFolderThatIsNotEmptyIsRefused()
{
    QDir().mkpath(path(QStringLiteral("full")));
    writeBytes(path(QStringLiteral("full/mine")), "mine");
    exporter().exportFrames(path(QStringLiteral("full")));
    QCOMPARE(QDir(path(QStringLiteral("full"))).entryList(QDir::Files),
             QStringList({QStringLiteral("mine")}));
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(path(QStringLiteral("full: "))),
             qPrintable(m_fixture->messages().first()));
}

void TestWindowOutput::aFileThatCannotBeWrittenIsNamed()
{
    const QString missing = path(QStringLiteral("no/such/p.png"));
    exporter().exportPicture(missing);
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(missing + QStringLiteral(": ")),
             qPrintable(m_fixture->messages().first()));
}

/// The copies of unsaved work, but for their locks.
QStringList TestWindowOutput::copies()
{
    return QDir(path(QStringLiteral("flipbook/recovery")))
        .entryList({QStringLiteral("*.flipbook")}, QDir::Files);
}

void TestWindowOutput::unsavedWorkIsKeptAndOfferedAfterACrash()
{
    m_fixture->trigger("mirror");
    recovery().update();
    QCOMPARE(copies().size(), 1);
    // A process that has crashed leaves its copy, and nobody holds the lock.
    const QString folder = path(QStringLiteral("flipbook/recovery/"));
    QVERIFY(QFile::copy(folder + copies().constFirst(), folder + QStringLiteral("1-1.flipbook")));
    m_fixture->trigger("undo");
    QCOMPARE(copies(), QStringList({QStringLiteral("1-1.flipbook")}));
    m_fixture->reopen();
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(
                 QLatin1String("Flipbook ended unexpectedly. A copy of unsaved changes from ")),
             qPrintable(m_fixture->messages().first()));
    m_fixture->choose(QStringLiteral("Recover"));
    QCOMPARE(m_fixture->page().objects().size(), 1);
    QVERIFY(m_fixture->page().objects().first()->isMirrored());
    QVERIFY(m_fixture->session().isDirty());
    QVERIFY(!copies().contains(QStringLiteral("1-1.flipbook")));
    QCOMPARE(copies().size(), 1);
}

void TestWindowOutput::savedWorkLeavesNoCopy()
{
    const QString document = path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    QVERIFY(m_fixture->window().files().open(document));
    m_fixture->page().selectObjects(m_fixture->page().objects());
    m_fixture->trigger("mirror");
    recovery().update();
    QCOMPARE(copies().size(), 1);
    m_fixture->trigger("save");
    QCOMPARE(copies(), QStringList());
}

void TestWindowOutput::aDocumentThatIsOpenElsewhereIsToldSo()
{
    const QString document = path(QStringLiteral("a.flipbook"));
    saveDocument(m_fixture->session().document(), document);
    OpenMarker other;
    QVERIFY(other.take(document));
    QVERIFY(m_fixture->window().files().open(document));
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral(
                 "a.flipbook is also open in another window. The window that saves last overwrites "
                 "the other's changes.")}));
}

QTEST_MAIN(TestWindowOutput)
#include "tst_window_output.moc"
