#include "flipbook/window/output/exportcontroller.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>

using WriteTo = std::function<void(ExportController &exporter, const QString &path)>;
Q_DECLARE_METATYPE(WriteTo)

/// Exports that the user cancels, of a film with six frames that shows its third.
class TestWindowCancel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aCancelledExportWritesNothing_data() { addForms(); }
    void aCancelledExportWritesNothing();
    void aCancelledExportLeavesWhatWasThere_data() { addForms(); }
    void aCancelledExportLeavesWhatWasThere();

private:
    static void addForms();
    void pressEscapeSoon();
    void run();
    QString target();
    QString told();
    QStringList files();

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowCancel::addForms()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<WriteTo>("write");
    const auto row = [](const char *form, const char *name, const WriteTo &write) {
        QTest::newRow(form) << QString::fromLatin1(name) << write;
    };
    using Exporter = ExportController;
    row("picture", "out.png", [](Exporter &to, const QString &path) { to.exportPicture(path); });
    row("frames", "out", [](Exporter &to, const QString &path) { to.exportFrames(path); });
    row("sheet", "out.png", [](Exporter &to, const QString &path) { to.exportSheet(path); });
    row("recording", "out",
        [](Exporter &to, const QString &path) { to.exportRecording(path, 0.4); });
    row("gif", "out.gif", [](Exporter &to, const QString &path) { to.exportGif(path); });
    row("webp", "out.webp", [](Exporter &to, const QString &path) { to.exportWebp(path); });
    row("apng", "out.png", [](Exporter &to, const QString &path) { to.exportApng(path); });
    row("atlas", "out.png", [](Exporter &to, const QString &path) { to.exportAtlas(path); });
    row("sprite", "out.sprite3", [](Exporter &to, const QString &path) { to.exportSprite(path); });
    row("project", "out.sb3", [](Exporter &to, const QString &path) { to.exportProject(path); });
    row("web page", "out.html", [](Exporter &to, const QString &path) { to.exportWebPage(path); });
}

void TestWindowCancel::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green, Qt::blue, Qt::cyan, Qt::magenta, Qt::yellow});
    AnimatedObject(*m_film).showFrame(2);
    m_fixture->page().selectObjects({m_film});
    QCoreApplication::processEvents();
}

/// Escape waits in the event queue for the first time that the export looks at it.
void TestWindowCancel::pressEscapeSoon()
{
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        QCoreApplication::postEvent(&m_fixture->window(),
                                    new QKeyEvent(type, Qt::Key_Escape, Qt::NoModifier));
}

QString TestWindowCancel::target()
{
    QFETCH(QString, name);
    return m_fixture->path(name);
}

void TestWindowCancel::run()
{
    QFETCH(WriteTo, write);
    write(*m_fixture->window().findChild<ExportController *>(), target());
}

QString TestWindowCancel::told()
{
    return QStringLiteral("Export to %1 cancelled. Nothing was written.").arg(target());
}

/// All files that may come of an export, hidden and temporary ones too.
QStringList TestWindowCancel::files()
{
    return QDir(m_fixture->path(QString()))
        .entryList({QStringLiteral("*out*")}, QDir::AllEntries | QDir::Hidden | QDir::System);
}

void TestWindowCancel::aCancelledExportWritesNothing()
{
    pressEscapeSoon();
    run();
    QCOMPARE(files(), QStringList());
    QCOMPARE(m_fixture->messages(), QStringList({told()}));
    QCOMPARE(AnimatedObject(*m_film).shownIndex(), 2);
    QVERIFY(!AnimatedObject(*m_film).isPlaying());
    QCOMPARE(m_fixture->session().document().alternateMode(), 0);
    QCOMPARE(m_fixture->session().film(), m_film);
    QCOMPARE(m_fixture->history(), QStringList());
    // The next export is not cancelled, and shows the same frame afterwards.
    run();
    QVERIFY(QFileInfo::exists(target()));
    QCOMPARE(m_fixture->messages(), QStringList({QStringLiteral("Written to ") + target()}));
    QCOMPARE(AnimatedObject(*m_film).shownIndex(), 2);
}

void TestWindowCancel::aCancelledExportLeavesWhatWasThere()
{
    // Folders are written only where nothing is yet: an empty one.
    const bool isFolder = QFileInfo(target()).suffix().isEmpty();
    if (isFolder)
        QVERIFY(QDir().mkdir(target()));
    else
        writeBytes(target(), "mine");
    const QStringList before = files();
    pressEscapeSoon();
    run();
    QCOMPARE(files(), before);
    QCOMPARE(m_fixture->messages(), QStringList({told()}));
    if (isFolder)
        QVERIFY(QDir(target()).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    else
        QCOMPARE(bytesOf(target()), QByteArray("mine"));
}

QTEST_MAIN(TestWindowCancel)
#include "tst_window_cancel.moc"
