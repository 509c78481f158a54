#include "flipbook/document/documentjson.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/messagebar.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/quiet.h"

#include <QtCore/QDir>
#include <QtCore/QDirIterator>
#include <QtCore/QTimer>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QDialog>
#include <QtWidgets/QMessageBox>

#include <sys/stat.h>

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
    void aBadFolderIsNamedAndTheDocumentStays_data();
    void aBadFolderIsNamedAndTheDocumentStays();
    void aPipeIsNamedAndNotWaitedFor();
    void anyFileIsAddedOrNamed_data();
    void anyFileIsAddedOrNamed();

private:
    void dropAndExpectItsName(const QString &name);
    void addFiles(const QString &folder);
    QByteArray bytes() { return documentJson(m_fixture->session().document()); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
    QTimer m_refuser;
    QStringList m_questions;
};

void TestWindowHostile::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_questions.clear();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
    // A question, such as that before a huge import, is answered with no.
    m_refuser.disconnect();
    m_refuser.callOnTimeout(this, [this] {
        auto *dialog = qobject_cast<QDialog *>(QApplication::activeModalWidget());
        if (const auto *box = qobject_cast<QMessageBox *>(dialog))
            m_questions << box->text();
        if (dialog)
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
    QVector<FilmFrame> frames(2);
    ApngBuilder apng(QSize(4, 3), 0);
    for (FilmFrame &frame : frames) {
        frame.picture = Pictures::solid(4, 3, Qt::red);
        apng.add(frame);
    }
    const QByteArray webp = webpFilm(QSize(4, 3), 0, frames);
    QTest::newRow("an animated WebP that ends early") << "early.webp" << webp.left(50);
    QTest::newRow("an animated WebP of the size 16,777,216")
        << "wide.webp" << webp.left(24) + QByteArray(6, '\xff') + webp.mid(30);
    QTest::newRow("a still WebP that ends early")
        << "still.webp" << webpPicture(Pictures::solid(4, 3, Qt::red)).left(24);
    QTest::newRow("an animated PNG that ends early") << "early.apng" << apng.data().left(70);
    QTest::newRow("a PNG of 60,000 x 60,000 pixels without any")
        << "huge.png"
        << QByteArray::fromHex("89504e470d0a1a0a") +
               Bombs::pngChunk("IHDR", QByteArray::fromHex("0000ea600000ea600806000000"));
    QTest::newRow("a bitmap of 65,535 pixels without any")
        << "huge.bmp"
        << QByteArray::fromHex("424d360000000000000036000000280000"
                               "00ffff0000ffff0000010018000000000000000000000000000000000000000000"
                               "00000000");
    QTest::newRow("a map of 65,535 pixels without any")
        << "huge.ppm" << QByteArray("P6 65535 65535 255\n");
    QTest::newRow("a sheet of a picture that is not there")
        << "sheet.json" << QByteArray(R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 2, "h": 3}}],
                                          "meta": {"image": "missing.png"}})");
    QTest::newRow("a sheet outside of its folder")
        << "outside.json" << QByteArray(R"({"frames": [{"frame": {"x": 0, "y": 0, "w": 2, "h": 3}}],
                          "meta": {"image": "/etc/passwd"}})");
    QTest::newRow("JSON in JSON in JSON") << "deep.json" << QByteArray(100000, '[');
    QTest::newRow("JSON of something else") << "other.json" << QByteArray("{\"frames\": 3}");
    QTest::newRow("a document of garbage")
        << "c.flipbook" << QByteArray("{\"format\": \"flipbook document\", \"version\": 99}");
    QTest::newRow("a document that is no archive")
        << "a.flipbook" << QByteArray("neither archive nor document");
    QTest::newRow("an archive that ends early")
        << "b.flipbook" << QByteArray("PK\x03\x04\x14\x00\x00\x00", 8);
    QTest::newRow("a name with markup") << "<b>&amp;.gif" << QByteArray("GIF89a");
}

/// Drops a file or folder on the page and on the strip. Each time a message or a question names it,
/// and the document stays.
void TestWindowHostile::dropAndExpectItsName(const QString &name)
{
    const QByteArray before = bytes();
    const Quiet quiet;
    for (const bool isStrip : {false, true}) {
        m_questions.clear();
        m_fixture->window().messages().clear();
        if (isStrip)
            m_fixture->drop(*m_fixture->window().frames().strip().viewport(), QPoint(5, 30),
                            {m_fixture->path(name)});
        else
            m_fixture->dropOnPage({200, 150}, {m_fixture->path(name)});
        QTRY_COMPARE((m_fixture->messages() + m_questions).size(), 1);
        const QString answer = (m_fixture->messages() + m_questions).constFirst();
        QVERIFY2(answer.contains(name), qPrintable(answer));
        // The name is followed by a reason.
        QVERIFY2(answer.size() > answer.indexOf(name) + name.size() + 10, qPrintable(answer));
    }
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowHostile::aBadFileIsNamedAndTheDocumentStays()
{
    QFETCH(const QString, name);
    QFETCH(const QByteArray, content);
    writeBytes(m_fixture->path(name), content);
    dropAndExpectItsName(name);
}

void TestWindowHostile::aBadFolderIsNamedAndTheDocumentStays_data()
{
    QTest::addColumn<QByteArray>("config");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("garbage") << QByteArray("garbage");
    QTest::newRow("pictures that are not there")
        << QByteArray(R"({"ImageList": [{"filename": "missing.png"}]})");
    QTest::newRow("a picture outside")
        << QByteArray(R"({"ImageList": [{"filename": "../../../../../../etc/passwd"}]})");
}

void TestWindowHostile::aBadFolderIsNamedAndTheDocumentStays()
{
    QFETCH(const QByteArray, config);
    const QString name = QStringLiteral("odd folder");
    QVERIFY(QDir().mkpath(m_fixture->path(name)));
    if (!config.isEmpty())
        writeBytes(m_fixture->path(name + QStringLiteral("/config.json")), config);
    dropAndExpectItsName(name);
}

void TestWindowHostile::aPipeIsNamedAndNotWaitedFor()
{
    const QString name = QStringLiteral("pipe.gif");
    QCOMPARE(::mkfifo(QFile::encodeName(m_fixture->path(name)).constData(), 0600), 0);
    dropAndExpectItsName(name);
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
