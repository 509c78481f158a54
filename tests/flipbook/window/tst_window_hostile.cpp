#include "flipbook/document/documentjson.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/messagebar.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/quiet.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>

/// Damaged and foreign files dropped on the window: a message names the file, and the document is
/// as it was. Inputs of the fuzz targets are dropped too, and those of CORPUS if it is set.
class TestWindowHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void aBadFileIsNamedAndTheDocumentStays_data();
    void aBadFileIsNamedAndTheDocumentStays();
    void anyFileIsAddedOrNamed_data();
    void anyFileIsAddedOrNamed();

private:
    void addFiles(const QString &folder);
    QByteArray bytes() { return documentJson(m_fixture->session().document()); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
    QTimer m_refuser;
};

void TestWindowHostile::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
    // A question, such as that before a huge import, is answered with no.
    m_refuser.callOnTimeout(this, [] {
        if (auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget()))
            dialog->reject();
    });
    m_refuser.start(1);
}

void TestWindowHostile::aBadFileIsNamedAndTheDocumentStays_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("content");
    const QByteArray header("GIF89a\x01\x00\x01\x00\x80\x00\x00\x00\x00\x00\xff\xff\xff", 19);
    const QByteArray huge("GIF89a\xff\xff\xff\xff\x00\x00\x00,\x00\x00\x00\x00\xff\xff\xff\xff\x00",
                          23);
    QTest::newRow("an empty GIF") << "empty.gif" << QByteArray();
    QTest::newRow("only the letters") << "letters.gif" << QByteArray("GIF89a");
    QTest::newRow("no frames") << "none.gif" << header + ';';
    QTest::newRow("a frame that ends early")
        << "early.gif" << header + QByteArray(",\x00\x00\x00\x00\x01\x00", 7);
    QTest::newRow("65,535 pixels wide and high") << "huge.gif" << huge;
    QTest::newRow("a text") << "text.png" << QByteArray("not a picture");
    QTest::newRow("a drawing with links")
        << "drawing.svg"
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'><image href='/etc/passwd'/></svg>");
    QTest::newRow("zeros") << "zeros.jpg" << QByteArray(4096, '\0');
    QTest::newRow("a document that is no archive")
        << "a.flipbook" << QByteArray("neither archive nor document");
    QTest::newRow("an archive that ends early")
        << "b.flipbook" << QByteArray("PK\x03\x04\x14\x00\x00\x00", 8);
    QTest::newRow("a name with markup") << "<b>&amp;.gif" << QByteArray("GIF89a");
}

void TestWindowHostile::aBadFileIsNamedAndTheDocumentStays()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    const QByteArray before = bytes();
    const QString path = m_fixture->path(name);
    writeBytes(path, content);
    const Quiet quiet;
    m_fixture->dropOnPage({200, 150}, {path});
    QTRY_COMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().contains(name),
             qPrintable(m_fixture->messages().first()));
    m_fixture->window().messages().clear();
    FrameStrip &strip = m_fixture->window().frames().strip();
    m_fixture->drop(*strip.viewport(), QPoint(5, 30), {path});
    QTRY_COMPARE(m_fixture->messages().size(), 1);
    QVERIFY2(m_fixture->messages().first().contains(name),
             qPrintable(m_fixture->messages().first()));
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowHostile::addFiles(const QString &folder)
{
    QDirIterator files(folder, QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        QTest::newRow(qPrintable(path.mid(folder.size() + 1))) << path;
    }
}

void TestWindowHostile::anyFileIsAddedOrNamed_data()
{
    QTest::addColumn<QString>("path");
    addFiles(QStringLiteral(FUZZ_REGRESSIONS));
    const QString corpus = qEnvironmentVariable("CORPUS");
    if (!corpus.isEmpty())
        addFiles(corpus + QStringLiteral("/gif-hostile"));
}

void TestWindowHostile::anyFileIsAddedOrNamed()
{
    QFETCH(const QString, path);
    const QByteArray before = bytes();
    // The window goes by what is in a file; most of these names have no suffix.
    const QString copy = m_fixture->path(QFileInfo(path).fileName() + QStringLiteral(".gif"));
    QVERIFY(QFile::copy(path, copy));
    const Quiet quiet;
    m_fixture->dropOnPage({200, 150}, {copy});
    const bool wasAdded = m_fixture->page().objects().size() == 2;
    if (!wasAdded) {
        QCOMPARE(bytes(), before);
        QVERIFY(!m_fixture->session().isDirty());
        return;
    }
    m_fixture->trigger("undo");
    QCOMPARE(bytes(), before);
}

QTEST_MAIN(TestWindowHostile)
#include "tst_window_hostile.moc"
