#include "flipbook/document/documentfile.h"
#include "flipbook/window/filecontroller.h"
#include "flipbook/window/filewatch.h"
#include "flipbook/window/recentfiles.h"
#include "framework/framework.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtTest/QtTest>
#include <QtWidgets/QAction>
#include <QtWidgets/QDockWidget>
#include <QtWidgets/QFileDialog>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QMenu>
#include <QtWidgets/QMessageBox>

/// Documents in the window: the title, saving, opening, unsaved work, and what is remembered.
class TestWindowFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void aNewWindowHoldsAnEmptyPage();
    void theTitleTellsTheFileAndUnsavedWork();
    void whatIsSavedIsWhatTheCommandsWrite();
    void openingShowsTheDocumentAndForgetsTheHistory();
    void workIsUnsavedAlsoWhenTheHistoryIsLost();
    void aFileThatCannotBeOpenedIsNamedAndTheDocumentStays();
    void unsavedWorkIsNotLostWhenTheQuestionIsCancelled();
    void discardLosesIt();
    void aDocumentWithMissingPicturesIsNotSavedOverItsFile();
    void aChangeByAnotherProgramIsToldAndTheFileReadAgain();
    void ownSavesAreNoChangeByAnotherProgram();
    void aChangedFileIsNotOverwrittenWithoutAQuestion();
    void aFileThatIsGoneIsSavedAgain();
    void aNameWithoutAnEndingReplacesNoFileWithoutAQuestion();
    void recentFilesAreListedAndMissingOnesGreyed();
    void panelsCanBeHiddenAndComeBackByResetLayout();
    void theLayoutIsRemembered();

private:
    QString saved(const QString &name);

    std::unique_ptr<WindowFixture> m_fixture;
};

/// A document with one film at (100, 100), written by the shared code.
QString TestWindowFiles::saved(const QString &name)
{
    DocumentFixture fixture;
    const auto document = fixture.document({Qt::red, Qt::green, Qt::blue});
    saveDocument(*document, m_fixture->path(name));
    return m_fixture->path(name);
}

void TestWindowFiles::aNewWindowHoldsAnEmptyPage()
{
    QCOMPARE(m_fixture->session().document().pages().size(), 1);
    QCOMPARE(m_fixture->page().pageRect(), QRectF(0, 0, 960, 720));
    QVERIFY(m_fixture->page().objects().isEmpty());
    QCOMPARE(m_fixture->window().windowTitle(), QStringLiteral("Untitled[*] - Flipbook"));
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowFiles::theTitleTellsTheFileAndUnsavedWork()
{
    QVERIFY(m_fixture->window().files().open(saved(QStringLiteral("a.flipbook"))));
    QCOMPARE(m_fixture->window().windowTitle(), QStringLiteral("a.flipbook[*] - Flipbook"));
    m_fixture->drag({12, 21}, {62, 71});
    QVERIFY(m_fixture->window().isWindowModified());
    m_fixture->trigger("undo");
    QVERIFY(!m_fixture->window().isWindowModified());
    m_fixture->trigger("redo");
    m_fixture->trigger("save");
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowFiles::whatIsSavedIsWhatTheCommandsWrite()
{
    const QString path = saved(QStringLiteral("a.flipbook"));
    const QByteArray before = bytesOf(path);
    QVERIFY(m_fixture->window().files().open(path));
    QFile::remove(path);
    m_fixture->trigger("save");
    QCOMPARE(bytesOf(path), before);
}

void TestWindowFiles::openingShowsTheDocumentAndForgetsTheHistory()
{
    const QString path = saved(QStringLiteral("a.flipbook"));
    m_fixture->addFilm({Qt::red});
    m_fixture->drag({110, 110}, {160, 130});
    QCOMPARE(m_fixture->history().size(), 1);
    m_fixture->answerNext(QMessageBox::Discard);
    QVERIFY(m_fixture->window().files().open(path));
    QCOMPARE(m_fixture->history().size(), 0);
    QCOMPARE(m_fixture->page().pageRect(), QRectF(0, 0, 200, 100));
    QCOMPARE(m_fixture->page().objects().size(), 1);
    QCOMPARE(m_fixture->session().path(), path);
}

void TestWindowFiles::workIsUnsavedAlsoWhenTheHistoryIsLost()
{
    m_fixture->addFilm({Qt::red});
    m_fixture->drag({110, 110}, {160, 130});
    Framework::instance().dropUndoCommands();
    QVERIFY(m_fixture->window().isWindowModified());
}

void TestWindowFiles::aFileThatCannotBeOpenedIsNamedAndTheDocumentStays()
{
    m_fixture->addFilm({Qt::red});
    const QString path = m_fixture->path(QStringLiteral("bad.flipbook"));
    writeBytes(path, "no document");
    QVERIFY(!m_fixture->window().files().open(path));
    QCOMPARE(
        m_fixture->messages(),
        QStringList({path + QStringLiteral(": not a flipbook document: it is not a zip archive")}));
    QCOMPARE(m_fixture->page().objects().size(), 1);
}

void TestWindowFiles::unsavedWorkIsNotLostWhenTheQuestionIsCancelled()
{
    m_fixture->addFilm({Qt::red});
    m_fixture->drag({110, 110}, {160, 130});
    m_fixture->answerNext(QMessageBox::Cancel);
    m_fixture->trigger("new");
    QCOMPARE(m_fixture->page().objects().size(), 1);
    QCOMPARE(m_fixture->history().size(), 1);
    m_fixture->answerNext(QMessageBox::Cancel);
    QVERIFY(!m_fixture->window().close());
    QVERIFY(m_fixture->window().isVisible());
}

void TestWindowFiles::discardLosesIt()
{
    m_fixture->addFilm({Qt::red});
    m_fixture->drag({110, 110}, {160, 130});
    m_fixture->answerNext(QMessageBox::Discard);
    m_fixture->trigger("new");
    QVERIFY(m_fixture->page().objects().isEmpty());
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowFiles::aDocumentWithMissingPicturesIsNotSavedOverItsFile()
{
    // One picture of the archive is damaged: its first byte after the header of its entry.
    const QString path = saved(QStringLiteral("a.flipbook"));
    QByteArray bytes = bytesOf(path);
    const int png = bytes.indexOf("\x89PNG");
    QVERIFY(png > 0);
    bytes[png + 60] = char(bytes[png + 60] ^ 0xff);
    writeBytes(path, bytes);
    QVERIFY(m_fixture->window().files().open(path));
    QCOMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().startsWith(QLatin1String("a.flipbook: frame ")),
             qPrintable(m_fixture->messages().first()));
    // Saving asks for another name; without one nothing is written.
    bool asked = false;
    QTimer::singleShot(0, qApp, [&asked] {
        QWidget *dialog = QApplication::activeModalWidget();
        asked = dialog != nullptr;
        if (dialog)
            dialog->close();
    });
    m_fixture->window().files().save();
    QVERIFY(asked);
    QCOMPARE(bytesOf(path), bytes);
}

void TestWindowFiles::aChangeByAnotherProgramIsToldAndTheFileReadAgain()
{
    const QString path = saved(QStringLiteral("a.flipbook"));
    QVERIFY(m_fixture->window().files().open(path));
    QCOMPARE(m_fixture->page().objects().size(), 1);
    saveDocument(*Session::newDocument(), path);
    QTRY_COMPARE(m_fixture->messages(),
                 QStringList({QStringLiteral("Another program has changed a.flipbook.")}));
    m_fixture->choose(QStringLiteral("Reload"));
    QVERIFY(m_fixture->page().objects().isEmpty());
    QVERIFY(m_fixture->messages().isEmpty());
}

void TestWindowFiles::ownSavesAreNoChangeByAnotherProgram()
{
    QVERIFY(m_fixture->window().files().open(saved(QStringLiteral("a.flipbook"))));
    QSignalSpy changes(m_fixture->window().findChild<FileWatch *>(), &FileWatch::changed);
    m_fixture->drag({12, 21}, {62, 71});
    m_fixture->trigger("save");
    saveDocument(*Session::newDocument(), m_fixture->session().path());
    // The events of the own save come before those of the other.
    QTRY_COMPARE(changes.count(), 1);
    QCOMPARE(m_fixture->messages(),
             QStringList({QStringLiteral("Another program has changed a.flipbook.")}));
}

void TestWindowFiles::aChangedFileIsNotOverwrittenWithoutAQuestion()
{
    const QString path = saved(QStringLiteral("a.flipbook"));
    QVERIFY(m_fixture->window().files().open(path));
    saveDocument(*Session::newDocument(), path);
    const QByteArray others = bytesOf(path);
    m_fixture->drag({12, 21}, {62, 71});
    m_fixture->answerNext(QMessageBox::Cancel);
    m_fixture->trigger("save");
    QCOMPARE(bytesOf(path), others);
    QVERIFY(m_fixture->window().isWindowModified());
    m_fixture->answerNext(QMessageBox::Save);
    m_fixture->trigger("save");
    QVERIFY(bytesOf(path) != others);
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowFiles::aFileThatIsGoneIsSavedAgain()
{
    const QString path = saved(QStringLiteral("a.flipbook"));
    QVERIFY(m_fixture->window().files().open(path));
    QFile::remove(path);
    m_fixture->drag({12, 21}, {62, 71});
    m_fixture->trigger("save");
    QVERIFY(QFile::exists(path));
    QVERIFY(!m_fixture->window().isWindowModified());
}

void TestWindowFiles::aNameWithoutAnEndingReplacesNoFileWithoutAQuestion()
{
    const QString path = saved(QStringLiteral("lesson.flipbook"));
    const QByteArray before = bytesOf(path);
    const auto saveAsLesson = [this](QMessageBox::StandardButton answer) {
        QTimer::singleShot(0, qApp, [this, answer] {
            auto *dialog = qobject_cast<QFileDialog *>(QApplication::activeModalWidget());
            QVERIFY2(dialog, "no file was asked for");
            dialog->findChild<QLineEdit *>(QStringLiteral("fileNameEdit"))
                ->setText(m_fixture->path(QStringLiteral("lesson")));
            m_fixture->answerNext(answer);
            QMetaObject::invokeMethod(dialog, "accept");
        });
        m_fixture->trigger("save-as");
    };
    saveAsLesson(QMessageBox::Cancel);
    QCOMPARE(bytesOf(path), before);
    QVERIFY(m_fixture->session().path().isEmpty());
    saveAsLesson(QMessageBox::Save);
    QVERIFY(bytesOf(path) != before);
    QCOMPARE(m_fixture->session().path(), path);
}

void TestWindowFiles::recentFilesAreListedAndMissingOnesGreyed()
{
    QVERIFY(m_fixture->window().files().open(saved(QStringLiteral("one.flipbook"))));
    QVERIFY(m_fixture->window().files().open(saved(QStringLiteral("two.flipbook"))));
    QFile::remove(m_fixture->path(QStringLiteral("one.flipbook")));
    QMenu *menu = m_fixture->window().actions().action(QStringLiteral("open-recent"))->menu();
    Q_EMIT menu->aboutToShow();
    const QList<QAction *> entries = menu->actions();
    QCOMPARE(entries.size(), 4);
    QCOMPARE(entries.at(0)->text(), QStringLiteral("two.flipbook"));
    QVERIFY(entries.at(0)->isEnabled());
    QCOMPARE(entries.at(1)->text(), QStringLiteral("one.flipbook"));
    QVERIFY(!entries.at(1)->isEnabled());
    QCOMPARE(entries.at(3)->text(), QStringLiteral("&Clear"));
    entries.at(3)->trigger();
    QVERIFY(!menu->isEnabled());
}

void TestWindowFiles::panelsCanBeHiddenAndComeBackByResetLayout()
{
    auto *dock = m_fixture->window().findChild<QDockWidget *>(QStringLiteral("framesDock"));
    QVERIFY(dock->isVisible());
    m_fixture->trigger("show-framesDock");
    QVERIFY(!dock->isVisible());
    m_fixture->trigger("reset-layout");
    QVERIFY(dock->isVisible());
}

void TestWindowFiles::theLayoutIsRemembered()
{
    m_fixture->trigger("show-historyDock");
    m_fixture->reopen();
    const auto *dock = m_fixture->window().findChild<QDockWidget *>(QStringLiteral("historyDock"));
    QVERIFY(!dock->isVisible());
}

QTEST_MAIN(TestWindowFiles)
#include "tst_window_files.moc"
