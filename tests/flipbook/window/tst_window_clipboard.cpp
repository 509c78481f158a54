#include "flipbook/document/documentjson.h"
#include "flipbook/window/frames/framepanel.h"
#include "flipbook/window/frames/framestrip.h"
#include "flipbook/window/import/importcontroller.h"
#include "flipbook/window/messagebar.h"
#include "tests/flipbook/bombs.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QBuffer>
#include <QtCore/QMimeData>
#include <QtCore/QUrl>
#include <QtGui/QClipboard>
#include <QtTest/QtTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QMessageBox>

/// Pictures that other programs put on the clipboard or drop: they are read as files are, and
/// nothing is decoded before it is known how much memory it needs.
class TestWindowClipboard : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup() { m_fixture.reset(); }

    void picturesAreReadByTheirContent_data();
    void picturesAreReadByTheirContent();
    void copiedFilesAreReadLikeDroppedOnes();
    void whatIsNoPictureIsNamedAndTheDocumentStays_data();
    void whatIsNoPictureIsNamedAndTheDocumentStays();
    void aHugePictureRaisesAQuestion();
    void aDecodedPictureIsCountedToo();
    void theFilmIsTakenWhereAPictureIsOfferedToo();
    void droppedPicturesAreReadInTheSameWay();
    void framesOfAHostileClipboardAreCounted();

private:
    static void put(const QString &format, const QByteArray &bytes);
    static QByteArray png(const QImage &picture);
    /// A PNG file that claims 14 GB of pixels and holds none.
    static QByteArray hugePng();
    QByteArray bytes() { return documentJson(m_fixture->session().document()); }
    QList<CBaseObject *> objects() { return m_fixture->page().objects(); }
    FrameStrip &strip() { return m_fixture->window().frames().strip(); }

    std::unique_ptr<WindowFixture> m_fixture;
    CBaseObject *m_film = nullptr;
};

void TestWindowClipboard::init()
{
    m_fixture = std::make_unique<WindowFixture>();
    m_film = &m_fixture->addFilm({Qt::red, Qt::green});
    m_fixture->page().selectObjects({m_film});
    m_fixture->view().setFocus();
}

void TestWindowClipboard::put(const QString &format, const QByteArray &bytes)
{
    auto *data = new QMimeData;
    data->setData(format, bytes);
    QApplication::clipboard()->setMimeData(data);
}

QByteArray TestWindowClipboard::png(const QImage &picture)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

QByteArray TestWindowClipboard::hugePng()
{
    // 60,000 x 60,000 pixels of 8-bit RGBA.
    return QByteArray::fromHex("89504e470d0a1a0a") +
           Bombs::pngChunk("IHDR", QByteArray::fromHex("0000ea600000ea600806000000"));
}

void TestWindowClipboard::picturesAreReadByTheirContent_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<int>("frames");
    const QByteArray picture = png(Pictures::solid(60, 20, Qt::black));
    const QByteArray film = GifBuilder(60, 20).add(0, 10).add(1, 10).add(2, 10).data();
    QTest::newRow("a PNG") << "image/png" << picture << 1;
    QTest::newRow("a PNG that claims another format") << "image/jpeg" << picture << 1;
    QTest::newRow("in a format unknown to us") << "image/x-unknown" << picture << 1;
    QTest::newRow("a film") << "image/gif" << film << 3;
}

void TestWindowClipboard::picturesAreReadByTheirContent()
{
    QFETCH(const QString, format);
    QFETCH(const QByteArray, content);
    QFETCH(const int, frames);
    put(format, content);
    m_fixture->trigger("paste");
    QTRY_COMPARE(objects().size() + m_fixture->messages().size(), 2);
    QCOMPARE(m_fixture->messages(), QStringList());
    QCOMPARE(AnimatedObject(*objects().constLast()).frameCount(), frames);
    QCOMPARE(objects().constLast()->getPos(), QPointF(450, 350));
    QCOMPARE(objects().constLast()->getSize(), QSizeF(60, 20));
    QCOMPARE(AnimatedObject(*objects().constLast()).name(), QStringLiteral("picture"));
    QCOMPARE(m_fixture->history().size(), 1);

    m_fixture->trigger("undo");
    m_fixture->page().selectObjects({m_film});
    strip().setFocus();
    m_fixture->trigger("paste");
    QTRY_COMPARE(strip().model()->rowCount(), 2 + frames);
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowClipboard::copiedFilesAreReadLikeDroppedOnes()
{
    const QString film = m_fixture->path(QStringLiteral("a.gif"));
    GifBuilder(60, 20).add(0, 10).add(1, 10).add(2, 10).write(film);
    const auto copy = [&film] {
        auto *data = new QMimeData;
        data->setUrls({QUrl::fromLocalFile(film)});
        QApplication::clipboard()->setMimeData(data);
    };
    copy();
    m_fixture->trigger("paste");
    QTRY_COMPARE(objects().size(), 2);
    QCOMPARE(AnimatedObject(*objects().constLast()).frameCount(), 3);
    QCOMPARE(m_fixture->history(), QStringList({QStringLiteral("Add a.gif")}));
    m_fixture->page().selectObjects({m_film});
    strip().setFocus();
    copy();
    m_fixture->trigger("paste");
    QTRY_COMPARE(strip().model()->rowCount(), 5);
}

void TestWindowClipboard::whatIsNoPictureIsNamedAndTheDocumentStays_data()
{
    QTest::addColumn<QString>("format");
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("a drawing with links")
        << "image/svg+xml"
        << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'><image href='/etc/passwd'/></svg>");
    QTest::newRow("a drawing that claims to be a PNG")
        << "image/png" << QByteArray("<svg xmlns='http://www.w3.org/2000/svg'/>");
    QTest::newRow("garbage") << "image/png" << QByteArray("\x01\x02\x03\x00garbage", 11);
    QTest::newRow("a PNG that ends early")
        << "image/png" << png(Pictures::solid(60, 20, Qt::black)).left(40);
    QTest::newRow("a GIF without frames") << "image/gif" << QByteArray("GIF89a");
    QTest::newRow("a PNG that claims 14 GB of pixels and has none") << "image/png" << hugePng();
    QTest::newRow("an archive") << "image/png" << QByteArray("PK\x03\x04\x14\x00\x00\x00", 8);
}

void TestWindowClipboard::whatIsNoPictureIsNamedAndTheDocumentStays()
{
    QFETCH(const QString, format);
    QFETCH(const QByteArray, content);
    const QByteArray before = bytes();
    for (const bool isStrip : {false, true}) {
        put(format, content);
        if (isStrip)
            strip().setFocus();
        m_fixture->trigger("paste");
        QTRY_COMPARE(m_fixture->messages().size(), 1);
        QVERIFY2(m_fixture->messages().first().startsWith(QStringLiteral("picture")),
                 qPrintable(m_fixture->messages().first()));
        m_fixture->window().messages().clear();
    }
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowClipboard::aHugePictureRaisesAQuestion()
{
    const QByteArray before = bytes();
    m_fixture->window().importer().work().setMemoryBudget(9599);
    put(QStringLiteral("image/png"), png(Pictures::solid(60, 20, Qt::black)));
    for (const bool isStrip : {false, true}) {
        if (isStrip)
            strip().setFocus();
        m_fixture->trigger("paste");
        m_fixture->answerNext(QMessageBox::Cancel);
        QCoreApplication::processEvents();
    }
    QCOMPARE(bytes(), before);
    QVERIFY(!m_fixture->session().isDirty());
    QCOMPARE(m_fixture->messages(), QStringList());
}

void TestWindowClipboard::aDecodedPictureIsCountedToo()
{
    // 60 x 20 pixels of four bytes, for the object and for the clipboard.
    m_fixture->window().importer().work().setMemoryBudget(9599);
    QApplication::clipboard()->setImage(
        Pictures::solid(60, 20, Qt::black).convertToFormat(QImage::Format_ARGB32));
    m_fixture->trigger("paste");
    m_fixture->answerNext(QMessageBox::Cancel);
    QCoreApplication::processEvents();
    QCOMPARE(objects().size(), 1);
    m_fixture->trigger("paste");
    m_fixture->answerNext(QMessageBox::Yes);
    QTRY_COMPARE(objects().size(), 2);
    m_fixture->window().importer().work().setMemoryBudget(9600);
    m_fixture->trigger("paste");
    QTRY_COMPARE(objects().size(), 3);
}

void TestWindowClipboard::theFilmIsTakenWhereAPictureIsOfferedToo()
{
    auto *data = new QMimeData;
    data->setData(QStringLiteral("image/png"), png(Pictures::solid(60, 20, Qt::black)));
    data->setData(QStringLiteral("image/gif"), GifBuilder(60, 20).add(0, 10).add(1, 10).data());
    QApplication::clipboard()->setMimeData(data);
    m_fixture->trigger("paste");
    QTRY_COMPARE(objects().size(), 2);
    QCOMPARE(AnimatedObject(*objects().constLast()).frameCount(), 2);
}

void TestWindowClipboard::droppedPicturesAreReadInTheSameWay()
{
    QMimeData picture;
    picture.setData(QStringLiteral("image/png"), png(Pictures::solid(60, 20, Qt::black)));
    QMimeData drawing;
    drawing.setData(QStringLiteral("image/svg+xml"), "<svg/>");
    const auto drop = [](QWidget *on, const QMimeData &data) {
        QDragEnterEvent enter(QPoint(5, 30), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(on, &enter);
        QVERIFY(enter.isAccepted());
        QDropEvent event(QPoint(5, 30), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(on, &event);
        QCoreApplication::processEvents();
    };
    drop(strip().viewport(), drawing);
    QCOMPARE(m_fixture->messages().size(), 1);
    QCOMPARE(strip().model()->rowCount(), 2);
    drop(strip().viewport(), picture);
    QCOMPARE(strip().model()->rowCount(), 3);
    drop(m_fixture->view().viewport(), picture);
    QCOMPARE(objects().size(), 2);
}

void TestWindowClipboard::framesOfAHostileClipboardAreCounted()
{
    const QByteArray before = bytes();
    m_fixture->window().importer().work().setMemoryBudget(9599);
    const auto paste = [this](const QByteArray &picture, bool raisesAQuestion) {
        QByteArray frames;
        QDataStream stream(&frames, QIODevice::WriteOnly);
        stream.setVersion(QDataStream::Qt_5_15);
        stream << quint32(1) << QStringLiteral("odd") << picture;
        put(QStringLiteral("application/x-flipbook-encoded-frames"), frames);
        m_fixture->window().activateWindow();
        strip().setFocus();
        QTRY_VERIFY(strip().hasFocus());
        // The question comes while the frames are read.
        if (raisesAQuestion)
            m_fixture->answerNext(QMessageBox::Cancel);
        m_fixture->trigger("paste");
    };
    for (const QByteArray &hostile : {hugePng(), QByteArray("garbage"), QByteArray("<svg/>")}) {
        paste(hostile, false);
        QCOMPARE(m_fixture->messages().size(), 1);
        QVERIFY(m_fixture->messages().first().startsWith(QStringLiteral("odd: ")));
        m_fixture->window().messages().clear();
    }
    paste(png(Pictures::solid(60, 20, Qt::black)), true);
    QCOMPARE(m_fixture->messages(), QStringList());
    QCOMPARE(bytes(), before);
}

QTEST_MAIN(TestWindowClipboard)
#include "tst_window_clipboard.moc"
