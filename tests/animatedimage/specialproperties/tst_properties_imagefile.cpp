#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// The request that inserts a picture file as a frame.
class TestPropertiesImageFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileIsInsertedBehindItsIndex_data();
    void aFileIsInsertedBehindItsIndex();
    void aFrameIsNamedAfterItsFile_data();
    void aFrameIsNamedAfterItsFile();
    void aFileThatIsNoPictureGivesAnEmptyFrame_data();
    void aFileThatIsNoPictureGivesAnEmptyFrame();
    void theFormatIsThatOfTheContent();
    void aFilmGivesItsFirstFrame();
    void insertingTellsTheHostNothing();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir m_folder;
};

namespace
{

constexpr int insertFile = 5014;

} // namespace

void TestPropertiesImageFile::aFileIsInsertedBehindItsIndex_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("place");
    QTest::addRow("first") << 0 << 1;
    QTest::addRow("last") << 1 << 2;
    QTest::addRow("-1") << -1 << 2;
    QTest::addRow("-2") << -2 << 2;
    QTest::addRow("count") << 2 << 2;
    QTest::addRow("greatest") << 2147483647 << 2;
}

void TestPropertiesImageFile::aFileIsInsertedBehindItsIndex()
{
    QFETCH(int, index);
    QFETCH(int, place);
    const QImage picture = Pictures::fromText({"##..", ".##."});
    QVERIFY(picture.save(path("walk.png")));
    Stage stage(solidFrames({{300, 100}, {10, 20}}));
    Request request(Request::packed(qint32(index), path("walk.png")));
    request.from(4);

    QVERIFY(request.get(stage.image, insertFile));

    QStringList expected{QStringLiteral("f_1"), QStringLiteral("f_2")};
    expected.insert(place, QStringLiteral("walk"));
    QCOMPARE(stage.frameNames(), expected);
    const CAnimatedPortrait &frame = stage.probe.frame(place);
    QCOMPARE(frame.image, picture);
    QCOMPARE(frame.size, QSizeF(4.0, 2.0));
    QCOMPARE(frame.regionSize, QSize(4, 2));
    QCOMPARE(frame.rects, (QList<QRect>{QRect(0, 0, 2, 1), QRect(1, 1, 2, 1)}));
    // The buffer is longer than the answer may be: only its beginning is the answer.
    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(4), QByteArray::number(place).rightJustified(8, '0'));
    QCOMPARE(answer.picture(), picture);
    const QList<QPair<QString, QImage>> thumbnails = answer.thumbnails();
    QCOMPARE(thumbnails.size(), 3);
    QCOMPARE(thumbnails.at(place).first, QStringLiteral("walk"));
    QCOMPARE(thumbnails.at(place).second.size(), QSize(150, 75));
    QVERIFY(answer.isSound());
    QCOMPARE(request.position(), qint64(answer.place()));
}

void TestPropertiesImageFile::aFrameIsNamedAfterItsFile_data()
{
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("present");
    QTest::addColumn<QString>("expected");
    QTest::addRow("up to the first dot")
        << QByteArray("walk.cycle.png") << QStringLiteral("x") << QStringLiteral("walk");
    QTest::addRow("taken") << QByteArray("walk.png") << QStringLiteral("walk")
                           << QStringLiteral("walk_1");
    QTest::addRow("a number is cut off")
        << QByteArray("cat_7.png") << QStringLiteral("x") << QStringLiteral("cat");
    QTest::addRow("another case is another name")
        << QByteArray("Walk.png") << QStringLiteral("walk") << QStringLiteral("Walk");
    QTest::addRow("beyond ASCII") << QByteArray("\xc3\xa9t\xc3\xa9.png") << QStringLiteral("x")
                                  << QStringLiteral(u"\u00e9t\u00e9");
    QTest::addRow("a percent sign")
        << QByteArray("%1.png") << QStringLiteral("%1") << QStringLiteral("%1_1");
    QTest::addRow("nothing before the dot")
        << QByteArray(".png") << QStringLiteral("x") << QString();
}

void TestPropertiesImageFile::aFrameIsNamedAfterItsFile()
{
    QFETCH(QByteArray, file);
    QFETCH(QString, present);
    QFETCH(QString, expected);
    QVERIFY(Pictures::transparent(2, 2).save(path(file), "PNG"));
    Stage stage;
    stage.addFrame(present, Pictures::transparent(2, 2));
    Request request(Request::packed(qint32(0), path(file)));

    QVERIFY(request.get(stage.image, insertFile));

    QCOMPARE(stage.frameNames(), (QStringList{present, expected}));
    QCOMPARE(stage.probe.frame(1).image.size(), QSize(2, 2));
}

void TestPropertiesImageFile::aFileThatIsNoPictureGivesAnEmptyFrame_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("name");
    QTest::addRow("missing") << path("missing_3.png") << QStringLiteral("missing");
    QTest::addRow("a folder") << m_folder.path() + QStringLiteral("/sub_1")
                              << QStringLiteral("sub");
    QTest::addRow("a text") << path("text.png") << QStringLiteral("text");
    QTest::addRow("no path") << QString() << QString();
}

void TestPropertiesImageFile::aFileThatIsNoPictureGivesAnEmptyFrame()
{
    QFETCH(QString, file);
    QFETCH(QString, name);
    QDir(m_folder.path()).mkdir(QStringLiteral("sub_1"));
    QFile text(path("text.png"));
    QVERIFY(text.open(QIODevice::WriteOnly));
    QCOMPARE(text.write("no picture"), qint64(10));
    text.close();
    Stage stage({QImage()});
    Request request(Request::packed(qint32(-1), file));
    if (file.isEmpty())
        QTest::ignoreMessage(QtWarningMsg, "QFSFileEngine::open: No file name specified");

    QVERIFY(request.get(stage.image, insertFile));

    QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("f_1"), name}));
    QVERIFY(stage.probe.frame(1).image.isNull());
    QCOMPARE(stage.probe.frame(1).size, QSizeF(0.0, 0.0));
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>());
    // Index, no picture, and a list of two names without pictures.
    AnswerBytes answer(request.bytes());
    QCOMPARE(answer.hex(12), QByteArray("000000010000000000000002"));
    QCOMPARE(answer.hex(14), QByteArray("000000060066005f003100000000"));
}

void TestPropertiesImageFile::theFormatIsThatOfTheContent()
{
    const QImage picture = Pictures::solid(3, 3, Qt::blue);
    QVERIFY(picture.save(path("film.jpg"), "PNG"));
    Stage stage;
    Request request(Request::packed(qint32(0), path("film.jpg")));

    QVERIFY(request.get(stage.image, insertFile));

    QCOMPARE(stage.probe.frame(0).image, picture);
}

void TestPropertiesImageFile::aFilmGivesItsFirstFrame()
{
    GifBuilder(3, 2).add(2, 10).add(0, 10).write(path("film.gif"));
    Stage stage;
    Request request(Request::packed(qint32(0), path("film.gif")));

    QVERIFY(request.get(stage.image, insertFile));

    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("film")});
    QCOMPARE(stage.probe.frame(0).image.size(), QSize(3, 2));
    QCOMPARE(stage.probe.frame(0).image.pixel(0, 0), qRgb(0, 0, 255));
}

void TestPropertiesImageFile::insertingTellsTheHostNothing()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    stage.probe.runningIndex() = 1;
    Request request(Request::packed(qint32(0), path("missing.png")));

    QVERIFY(request.get(stage.image, insertFile));

    QCOMPARE(stage.log.entries(), QStringList());
    QCOMPARE(stage.probe.runningIndex(), 1);
}

QTEST_MAIN(TestPropertiesImageFile)
#include "tst_properties_imagefile.moc"
