#include "tests/support/pictures.h"
#include "tests/support/stage.h"
#include "tests/support/texts.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <limits>

namespace
{

const char twoFrames[] = R"({"ImageList":[{"filename":"a.png"},{"filename":"sub/b.png"}]})";

} // namespace

/// Frames from a folder with a config.json.
class TestFolderImport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aFolderGivesItsPicturesInOrder();
    void allThatWasThereIsReplaced();
    void thePlaybackTimerKeepsItsInterval();
    void elementsWithoutAFileLeaveAGapInTheNumbers();
    void aPictureThatIsNotThereIsStillAFrame();
    void aFileNameThatIsNoTextIsStillAFrame();
    void picturesAreKeptAsTheirFilesHoldThem_data();
    void picturesAreKeptAsTheirFilesHoldThem();
    void pathsMayLeadOutOfTheFolder();
    void settingsOfTheWrongTypeAreNothing_data();
    void settingsOfTheWrongTypeAreNothing();
    void missingSettingsStayAsTheyWere();
    void settingsWithoutPicturesAreRead();
    void theLiveMirrorAndFlipAreSet();
    void mirrorAndFlipAreReadEachByItsOwnName();
    void framesAreMeasuredMirroredAndFlipped();
    void textsThatAreNoUsableConfigLeaveNoFrames_data();
    void textsThatAreNoUsableConfigLeaveNoFrames();
    void textsThatAreStillUnderstood_data();
    void textsThatAreStillUnderstood();
    void aFolderWithoutConfigLeavesNoFrames();
    void thePathMayEndInAnything_data();
    void thePathMayEndInAnything();
    void theSampleFolderIsRead();
    void aRunningObjectGoesOnRunning();

private:
    void write(const QString &name, const QByteArray &content) const;
    void load(Stage &stage) const { QVERIFY(stage->loadFromFile(m_folder)); }

    std::unique_ptr<QTemporaryDir> m_place;
    QString m_folder;
};

void TestFolderImport::init()
{
    m_place = std::make_unique<QTemporaryDir>();
    m_folder = m_place->filePath(QStringLiteral("frames"));
    QVERIFY(QDir().mkpath(m_folder + QStringLiteral("/sub")));
    QVERIFY(Pictures::solid(6, 4, Qt::red).save(m_folder + QStringLiteral("/a.png")));
    QVERIFY(Pictures::solid(3, 5, Qt::blue).save(m_folder + QStringLiteral("/sub/b.png")));
}

void TestFolderImport::write(const QString &name, const QByteArray &content) const
{
    QFile file(m_folder + QLatin1Char('/') + name);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), qint64(content.size()));
}

void TestFolderImport::aFolderGivesItsPicturesInOrder()
{
    write(QStringLiteral("config.json"), twoFrames);
    Stage stage;
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1", "frames_2"}));
    QCOMPARE(stage.probe.frame(0).image.size(), QSize(6, 4));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(6, 4));
    QCOMPARE(stage.probe.frame(1).image.size(), QSize(3, 5));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(3, 5));
    QCOMPARE(stage.probe.frame(1).image.pixelColor(2, 4), QColor(Qt::blue));
    // Sized to the first; measured, all of them.
    QCOMPARE(stage->getSize(), QSizeF(6, 4));
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 5, 4)});
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>{QRect(0, 0, 2, 5)});
}

void TestFolderImport::allThatWasThereIsReplaced()
{
    write(QStringLiteral("config.json"), R"({"ImageList":[{"filename":"a.png"}]})");
    Stage stage(solidFrames({{1, 1}, {2, 2}}));
    stage.probe.runningIndex() = 1;
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1"}));
    QCOMPARE(stage.probe.runningIndex(), 0);
}

void TestFolderImport::thePlaybackTimerKeepsItsInterval()
{
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":"a.png"}],"ShiftInterval":100})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.probe.shiftInterval(), 100);
    QCOMPARE(stage.probe.timer()->interval(), 200);
}

void TestFolderImport::elementsWithoutAFileLeaveAGapInTheNumbers()
{
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":"a.png"},{"file":"a.png"},{"filename":"sub/b.png"},7]})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1", "frames_3"}));
}

void TestFolderImport::aPictureThatIsNotThereIsStillAFrame()
{
    write(QStringLiteral("text.png"), "no picture");
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":"none.png"},{"filename":"text.png"}]})");
    Stage stage;
    stage->setSize(QSizeF(9, 9), false, false);
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1", "frames_2"}));
    for (int i = 0; i < 2; ++i) {
        QVERIFY(stage.probe.frame(i).image.isNull());
        QCOMPARE(stage.probe.frame(i).size, QSizeF(0, 0));
    }
    QCOMPARE(stage->getSize(), QSizeF(0, 0));
}

void TestFolderImport::aFileNameThatIsNoTextIsStillAFrame()
{
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":7},{"filename":null},{"filename":["a.png"]},)"
          R"({"filename":""}]})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1", "frames_2", "frames_3", "frames_4"}));
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
        QVERIFY(frame.image.isNull());
}

void TestFolderImport::picturesAreKeptAsTheirFilesHoldThem_data()
{
    QTest::addColumn<QByteArray>("writtenAs");
    QTest::addColumn<QImage::Format>("format");
    QTest::newRow("grey") << QByteArray("png") << QImage::Format_Grayscale8;
    QTest::newRow("without alpha") << QByteArray("png") << QImage::Format_RGB32;
    QTest::newRow("with alpha") << QByteArray("png") << QImage::Format_ARGB32;
    QTest::newRow("of another kind than it is named") << QByteArray("bmp") << QImage::Format_RGB32;
}

void TestFolderImport::picturesAreKeptAsTheirFilesHoldThem()
{
    QFETCH(QByteArray, writtenAs);
    QFETCH(QImage::Format, format);
    QImage picture = Pictures::solid(300, 2, Qt::white, format);
    if (picture.hasAlphaChannel())
        picture.setPixelColor(0, 0, Qt::transparent);
    else
        picture.setPixelColor(0, 0, Qt::black);
    QVERIFY(picture.save(m_folder + QStringLiteral("/a.png"), writtenAs.constData()));
    write(QStringLiteral("config.json"), R"({"ImageList":[{"filename":"a.png"}]})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.probe.frame(0).image.format(), format);
    QCOMPARE(stage.probe.frame(0).image, picture);
}

void TestFolderImport::pathsMayLeadOutOfTheFolder()
{
    QVERIFY(Pictures::solid(2, 2, Qt::green).save(m_place->filePath(QStringLiteral("up.png"))));
    // Joined with a slash, so an absolute path leads to a place below the folder.
    QVERIFY(QDir().mkpath(m_folder + QStringLiteral("/etc")));
    QVERIFY(Pictures::solid(5, 1, Qt::red).save(m_folder + QStringLiteral("/etc/x.png")));
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":"../up.png"},{"filename":"/etc/x.png"}]})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.probe.frame(0).image.size(), QSize(2, 2));
    QCOMPARE(stage.probe.frame(1).image.size(), QSize(5, 1));
}

void TestFolderImport::settingsOfTheWrongTypeAreNothing_data()
{
    QTest::addColumn<QByteArray>("members");
    QTest::addColumn<int>("interval");
    QTest::addColumn<bool>("keepsRatio");
    QTest::addColumn<int>("loopCount");
    QTest::newRow("right") << QByteArray(R"("ShiftInterval":120,"LockScale":true,"LoopCount":4)")
                           << 120 << true << 4;
    QTest::newRow("fractions") << QByteArray(
                                      R"("ShiftInterval":120.5,"LockScale":true,"LoopCount":1.5)")
                               << 0 << true << 0;
    QTest::newRow("whole, written with a fraction or an exponent")
        << QByteArray(R"("LoopCount":3.0,"LockScale":true,"ShiftInterval":1.2e2)") << 120 << true
        << 3;
    QTest::newRow("more than an int holds")
        << QByteArray(R"("ShiftInterval":2147483648,"LockScale":[],"LoopCount":-2147483649)") << 0
        << false << 0;
    QTest::newRow("the largest and the smallest int")
        << QByteArray(R"("ShiftInterval":2147483647,"LockScale":{},"LoopCount":-2147483648)")
        << std::numeric_limits<int>::max() << false << std::numeric_limits<int>::min();
    QTest::newRow("texts") << QByteArray(
                                  R"("ShiftInterval":"120","LockScale":"true","LoopCount":"4")")
                           << 0 << false << 0;
    QTest::newRow("null") << QByteArray(R"("ShiftInterval":null,"LockScale":null,"LoopCount":null)")
                          << 0 << false << 0;
    QTest::newRow("a number for a switch")
        << QByteArray(R"("ShiftInterval":-5,"LockScale":1,"LoopCount":-1)") << -5 << false << -1;
}

void TestFolderImport::settingsOfTheWrongTypeAreNothing()
{
    QFETCH(QByteArray, members);
    write(QStringLiteral("config.json"), R"({"ImageList":[],)" + members + "}");
    Stage stage;
    load(stage);
    QTEST(stage.probe.shiftInterval(), "interval");
    QTEST(stage.probe.keepRatio(), "keepsRatio");
    QTEST(stage.probe.loopCount(), "loopCount");
}

void TestFolderImport::missingSettingsStayAsTheyWere()
{
    write(QStringLiteral("config.json"), twoFrames);
    Stage stage;
    stage.probe.shiftInterval() = 77;
    stage.probe.keepRatio() = false;
    stage.probe.loopCount() = 9;
    stage.probe.isMirrored() = true;
    stage.probe.isFlipped() = true;
    load(stage);
    QCOMPARE(stage.probe.shiftInterval(), 77);
    QVERIFY(!stage.probe.keepRatio());
    QCOMPARE(stage.probe.loopCount(), 9);
    QVERIFY(stage.probe.isMirrored());
    QVERIFY(stage.probe.isFlipped());
}

void TestFolderImport::settingsWithoutPicturesAreRead()
{
    write(QStringLiteral("config.json"), R"({"ImageList":"none","ShiftInterval":60})");
    Stage stage;
    stage->setSize(QSizeF(9, 9), false, false);
    load(stage);
    QVERIFY(stage.probe.frames().isEmpty());
    QCOMPARE(stage.probe.shiftInterval(), 60);
    QCOMPARE(stage->getSize(), QSizeF(9, 9));
}

void TestFolderImport::theLiveMirrorAndFlipAreSet()
{
    write(QStringLiteral("config.json"),
          R"({"ImageList":[{"filename":"a.png"}],"ImageMirror":true,"ImageFlip":true})");
    Stage stage;
    load(stage);
    QVERIFY(stage.probe.isMirrored());
    QVERIFY(stage.probe.isFlipped());
    // The saved ones are their own values.
    QVERIFY(!stage.probe.mirror());
    QVERIFY(!stage.probe.flip());
    QCOMPARE(stage.log.entries(), QStringList());

    write(QStringLiteral("config.json"), R"({"ImageList":[],"ImageMirror":0,"ImageFlip":"yes"})");
    load(stage);
    QVERIFY(!stage.probe.isMirrored());
    QVERIFY(!stage.probe.isFlipped());
}

void TestFolderImport::mirrorAndFlipAreReadEachByItsOwnName()
{
    Stage stage;
    write(QStringLiteral("config.json"), R"({"ImageList":[],"ImageMirror":true})");
    load(stage);
    QVERIFY(stage.probe.isMirrored());
    QVERIFY(!stage.probe.isFlipped());

    write(QStringLiteral("config.json"),
          R"({"ImageList":[],"ImageMirror":false,"ImageFlip":true})");
    load(stage);
    QVERIFY(!stage.probe.isMirrored());
    QVERIFY(stage.probe.isFlipped());
}

void TestFolderImport::framesAreMeasuredMirroredAndFlipped()
{
    // Columns 0 and 1 of 6 go to 6 - 1 - 1 = 4 and on, row 0 of 2 to 2 - 1 - 0 = 1.
    const QImage picture = Pictures::fromText({"##....", "......"});
    QVERIFY(picture.save(m_folder + QStringLiteral("/a.png")));
    write(QStringLiteral("config.json"),
          R"({"ImageMirror":true,"ImageFlip":true,"ImageList":[{"filename":"a.png"}]})");
    Stage stage;
    load(stage);
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{QRect(4, 1, 2, 1)});
    QCOMPARE(stage.probe.frame(0).image, picture);
}

void TestFolderImport::textsThatAreNoUsableConfigLeaveNoFrames_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("frames");
    QTest::newRow("an array") << QByteArray(R"([{"ImageList":[{"filename":"a.png"}]}])");
    QTest::newRow("without the list") << QByteArray(R"({"ShiftInterval":50})");
    QTest::newRow("something after the end") << twoFrames + QByteArray("x");
    QTest::newRow("a zero byte in the middle") << QByteArray("{\"ImageList\":\0[]}", 17);
    QTest::newRow("too deep") << QByteArray(R"({"ImageList":)") + QByteArray(5000, '[') +
                                     QByteArray(5000, ']') + "}";
}

void TestFolderImport::textsThatAreNoUsableConfigLeaveNoFrames()
{
    QFETCH(QByteArray, text);
    write(QStringLiteral("config.json"), text);
    Stage stage(solidFrames({{7, 7}}));
    load(stage);
    QVERIFY(stage.probe.frames().isEmpty());
    QCOMPARE(stage.probe.shiftInterval(), 200);
    QCOMPARE(stage->getSize(), QSizeF(7, 7));
}

void TestFolderImport::textsThatAreStillUnderstood_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::newRow("a byte-order mark") << QByteArray("\xEF\xBB\xBF") + twoFrames;
    QTest::newRow("a zero byte and more after the end") << twoFrames + QByteArray("\0rest", 5);
    QTest::newRow("bytes that are no UTF-8")
        << QByteArray("{\"Note\":\"\xFF\xC3\",") + QByteArray(twoFrames).mid(1);
    QTest::newRow("the list in the middle") << QByteArray(R"({"ShiftInterval":5,)") +
                                                   QByteArray(twoFrames).mid(1).chopped(1) +
                                                   R"(,"LoopCount":2})";
    QTest::newRow("white space around") << QByteArray("\n  ") + twoFrames + "\n";
    QTest::newRow("a thousand levels deep")
        << QByteArray(R"({"ImageList":[{"filename":"a.png"},{"filename":"sub/b.png"}],"More":)") +
               QByteArray(1000, '[') + QByteArray(1000, ']') + "}";
}

void TestFolderImport::textsThatAreStillUnderstood()
{
    QFETCH(QByteArray, text);
    write(QStringLiteral("config.json"), text);
    Stage stage;
    load(stage);
    QCOMPARE(stage.frameNames(), texts({"frames_1", "frames_2"}));
}

void TestFolderImport::aFolderWithoutConfigLeavesNoFrames()
{
    Stage stage(solidFrames({{7, 7}}));
    load(stage);
    QVERIFY(stage.probe.frames().isEmpty());
    QVERIFY(QDir().mkpath(m_folder + QStringLiteral("/config.json")));
    stage.addFrame(QStringLiteral("f"), Pictures::solid(1, 1, Qt::red));
    load(stage);
    QVERIFY(stage.probe.frames().isEmpty());
    QVERIFY(stage->loadFromFile(QStringLiteral("/none/at/all")));
    QVERIFY(stage->loadFromFile(QString()));
    QVERIFY(stage.probe.frames().isEmpty());
}

void TestFolderImport::thePathMayEndInAnything_data()
{
    QTest::addColumn<QString>("rest");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("plain") << QString() << texts({"frames_1", "frames_2"});
    QTest::newRow("a dot") << QStringLiteral("/.") << texts({"._1", "._2"});
    QTest::newRow("a slash") << QStringLiteral("/") << texts({"frames_1", "frames_2"});
}

void TestFolderImport::thePathMayEndInAnything()
{
    QFETCH(QString, rest);
    write(QStringLiteral("config.json"), twoFrames);
    Stage stage;
    stage->loadFromFile(m_folder + rest);
    QTEST(stage.frameNames(), "expected");
}

void TestFolderImport::theSampleFolderIsRead()
{
    Stage stage;
    stage->loadFromFile(QStringLiteral(SAMPLES_FOLDER "/bounce"));
    QCOMPARE(stage.probe.frames().size(), 10);
    QCOMPARE(stage.probe.frame(0).name, QStringLiteral("bounce_1"));
    QCOMPARE(stage.probe.frame(9).name, QStringLiteral("bounce_10"));
    QCOMPARE(stage.probe.shiftInterval(), 60);
    QCOMPARE(stage.probe.loopCount(), -1);
}

void TestFolderImport::aRunningObjectGoesOnRunning()
{
    write(QStringLiteral("config.json"), twoFrames);
    Stage stage(solidFrames({{1, 1}, {1, 1}}));
    stage->playImage(true);
    load(stage);
    QVERIFY(stage.probe.isRunning());
    QVERIFY(stage.probe.timer()->isActive());
}

QTEST_MAIN(TestFolderImport)
#include "tst_folder_import.moc"
