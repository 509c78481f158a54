#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/animatedimage/specialproperties/answerbytes.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// The request that replaces all frames by one picture file.
class TestPropertiesReplaceAll : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void theFileBecomesTheOnlyFrame();
    void thereIsNoAnswer();
    void theHostIsToldAndNotified();
    void theNameIsFreeAmongTheOldFrames_data();
    void theNameIsFreeAmongTheOldFrames();
    void anUnreadableFileGivesAnEmptyFrame();
    void playbackStopsFirst();
    void playbackStopsEvenWhenThePathIsCutShort();
    void theBackgroundTypeDrawsItsTile();
    void theCommandIsNamedInTheUsersLanguage_data();
    void theCommandIsNamedInTheUsersLanguage();
    void theCommandKeepsTheNewFrameAndAllOldOnes();
    void undoBringsNamesPicturesAndSizesBack();
    void aFrameBroughtBackIsMeasuredWhenShown();
    void undoAndRedoTellTheHostAlike();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir m_folder;
};

namespace
{

constexpr int replaceAll = 5020;

const QString geometry = QStringLiteral("changed 104");
const QString shown = QStringLiteral("changed 1002");
const QString replaced = QStringLiteral("notified 309 0 0 -1");
const QString stopped =
    QStringLiteral("posted 100 0 {\"settings\":[{\"id\":\"idImagePlay\",\"value\":\"false\"}]} -1");

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

QImage walkPicture()
{
    return Pictures::fromText({"##..", ".##."});
}

} // namespace

void TestPropertiesReplaceAll::init()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
    QVERIFY(walkPicture().save(path("walk.png")));
}

void TestPropertiesReplaceAll::cleanup()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
}

void TestPropertiesReplaceAll::theFileBecomesTheOnlyFrame()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}, {7, 2}}));
    stage.probe.runningIndex() = 2;
    Request request(Request::packed(path("walk.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("walk")});
    const CAnimatedPortrait &frame = stage.probe.frame(0);
    QCOMPARE(frame.image, walkPicture());
    QCOMPARE(frame.size, QSizeF(4.0, 2.0));
    QCOMPARE(frame.regionSize, QSize(4, 2));
    QCOMPARE(frame.rects, (QList<QRect>{QRect(0, 0, 2, 1), QRect(1, 1, 2, 1)}));
    QCOMPARE(stage.probe.runningIndex(), 0);
    // The object keeps its size.
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 3.0));
    QCOMPARE(stack().count(), 1);
}

void TestPropertiesReplaceAll::thereIsNoAnswer()
{
    Stage stage(solidFrames({{4, 3}}));
    const QByteArray input = Request::packed(path("walk.png"));
    Request request(input);
    request.from(5);

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("walk")});
    QCOMPARE(request.bytes(), input);
    QCOMPARE(request.position(), qint64(input.size()));
}

void TestPropertiesReplaceAll::theHostIsToldAndNotified()
{
    Stage stage(solidFrames({{4, 3}}));
    Request request(Request::packed(path("walk.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stage.log.entries(), (QStringList{shown, replaced}));
}

void TestPropertiesReplaceAll::theNameIsFreeAmongTheOldFrames_data()
{
    QTest::addColumn<QString>("present");
    QTest::addColumn<QByteArray>("file");
    QTest::addColumn<QString>("expected");
    QTest::addRow("free") << QStringLiteral("x") << QByteArray("walk.png")
                          << QStringLiteral("walk");
    QTest::addRow("taken") << QStringLiteral("walk") << QByteArray("walk.png")
                           << QStringLiteral("walk_1");
    QTest::addRow("a number is cut off")
        << QStringLiteral("x") << QByteArray("walk_9.b.png") << QStringLiteral("walk");
}

void TestPropertiesReplaceAll::theNameIsFreeAmongTheOldFrames()
{
    QFETCH(QString, present);
    QFETCH(QByteArray, file);
    QFETCH(QString, expected);
    QVERIFY(walkPicture().save(path(file.constData())));
    Stage stage;
    stage.addFrame(present, walkPicture());
    Request request(Request::packed(path(file.constData())));

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stage.frameNames(), QStringList{expected});
}

void TestPropertiesReplaceAll::anUnreadableFileGivesAnEmptyFrame()
{
    Stage stage(solidFrames({{4, 3}}));
    Request request(Request::packed(path("missing.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("missing")});
    QVERIFY(stage.probe.frame(0).image.isNull());
    QCOMPARE(stage.probe.frame(0).size, QSizeF(0.0, 0.0));
    stack().undo();
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(4, 3, Qt::red));
}

void TestPropertiesReplaceAll::playbackStopsFirst()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.image->playImage(true);
    stage.probe.tick();
    stage.log.clear();
    Request request(Request::packed(path("walk.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(),
             (QStringList{geometry, geometry, shown, shown, stopped, shown, replaced}));
}

void TestPropertiesReplaceAll::playbackStopsEvenWhenThePathIsCutShort()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.image->playImage(true);
    stage.log.clear();
    Request request(QByteArray::fromHex("000000"));

    QVERIFY(request.get(stage.image, replaceAll));

    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), (QStringList{shown, stopped}));
    QCOMPARE(stage.probe.frames().size(), 2);
    QCOMPARE(stack().count(), 0);
}

void TestPropertiesReplaceAll::theBackgroundTypeDrawsItsTile()
{
    QVERIFY(Pictures::solid(5, 5, Qt::yellow).save(path("sun.png")));
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.probe.animatedType() = 1;
    Request request(Request::packed(path("sun.png")));

    QVERIFY(request.get(stage.image, replaceAll));
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(8, 8, Qt::yellow));

    stack().undo();
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(8, 8, Qt::red));
}

void TestPropertiesReplaceAll::theCommandIsNamedInTheUsersLanguage_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addRow("English") << QLocale(QLocale::English) << QStringLiteral("Replace Portrait");
    QTest::addRow("Simplified Chinese")
        << QLocale(QStringLiteral("zh_CN")) << QStringLiteral(u"\u66ff\u6362\u9020\u578b");
}

void TestPropertiesReplaceAll::theCommandIsNamedInTheUsersLanguage()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    Framework::instance().setLanguage(locale);
    Stage stage(solidFrames({{4, 4}}));
    Request request(Request::packed(path("walk.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    QCOMPARE(stack().undoText(), text);
    QCOMPARE(stack().command(0)->childCount(), 0);
}

void TestPropertiesReplaceAll::theCommandKeepsTheNewFrameAndAllOldOnes()
{
    Stage stage(solidFrames({{4, 3}}));
    stage.addFrame(QStringLiteral("b"), QImage());
    stage.probe.frame(0).size = QSizeF(0.5, -2.0);
    Request request(Request::packed(path("walk.png")));

    QVERIFY(request.get(stage.image, replaceAll));

    auto *command =
        dynamic_cast<CAnimatedUndoRedoCommand *>(const_cast<QUndoCommand *>(stack().command(0)));
    QVERIFY(command);
    AnswerBytes bytes(*command->data_ptr());
    // One new frame: name, picture, and the size as two doubles, 4 and 2.
    QCOMPARE(bytes.hex(4), QByteArray("00000001"));
    QCOMPARE(bytes.hex(12), QByteArray("0000000800770061006c006b"));
    QCOMPARE(bytes.picture(), walkPicture());
    QCOMPARE(bytes.hex(16), QByteArray("40100000000000004000000000000000"));
    // Two old frames: 0.5 and -2, then one without a picture.
    QCOMPARE(bytes.hex(4), QByteArray("00000002"));
    QCOMPARE(bytes.hex(10), QByteArray("000000060066005f0031"));
    QCOMPARE(bytes.picture(), Pictures::solid(4, 3, Qt::red));
    QCOMPARE(bytes.hex(16), QByteArray("3fe0000000000000c000000000000000"));
    QCOMPARE(bytes.hex(6), QByteArray("000000020062"));
    QVERIFY(bytes.picture().isNull());
    QCOMPARE(bytes.hex(16), QByteArray("00000000000000000000000000000000"));
    QVERIFY(bytes.isSound() && bytes.atEnd());
}

void TestPropertiesReplaceAll::undoBringsNamesPicturesAndSizesBack()
{
    const QList<QImage> pictures = solidFrames({{4, 3}, {5, 6}});
    Stage stage(pictures);
    stage.probe.frame(1).size = QSizeF(50.25, 60.5);
    stage.probe.runningIndex() = 1;
    Request request(Request::packed(path("walk.png")));
    QVERIFY(request.get(stage.image, replaceAll));

    stack().undo();

    QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("f_1"), QStringLiteral("f_2")}));
    QCOMPARE(stage.probe.frame(0).image, pictures.at(0));
    QCOMPARE(stage.probe.frame(1).image, pictures.at(1));
    QCOMPARE(stage.probe.frame(0).size, QSizeF(4.0, 3.0));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(50.25, 60.5));
    QCOMPARE(stage.probe.runningIndex(), 0);

    stack().redo();
    QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("walk")});
    QCOMPARE(stage.probe.frame(0).image, walkPicture());
}

void TestPropertiesReplaceAll::aFrameBroughtBackIsMeasuredWhenShown()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    Request request(Request::packed(path("walk.png")));
    QVERIFY(request.get(stage.image, replaceAll));

    stack().undo();

    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 3, 3)});
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(-1, -1));
    stage.image->setCurrentIndex(1);
    QCOMPARE(stage.probe.frame(1).regionSize, QSize(5, 6));
    QCOMPARE(stage.probe.frame(1).rects, QList<QRect>{QRect(0, 0, 4, 6)});
    QVERIFY(!stage.probe.frame(1).path.isEmpty());
}

void TestPropertiesReplaceAll::undoAndRedoTellTheHostAlike()
{
    Stage stage(solidFrames({{4, 3}}));
    Request request(Request::packed(path("walk.png")));
    QVERIFY(request.get(stage.image, replaceAll));
    for (int i = 0; i < 3; ++i) {
        stage.log.clear();
        stack().undo();
        QCOMPARE(stage.log.entries(), (QStringList{shown, replaced}));
        stage.log.clear();
        stack().redo();
        QCOMPARE(stage.log.entries(), (QStringList{shown, replaced}));
    }
}

QTEST_MAIN(TestPropertiesReplaceAll)
#include "tst_properties_replaceall.moc"
