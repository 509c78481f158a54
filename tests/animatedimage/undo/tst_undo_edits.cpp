#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

constexpr int setType = 5008;
constexpr int replaceAll = 5020;
constexpr int background = 1;

const QString postedFalse =
    QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idImagePlay","value":"false"}]} -1)");

QString postedType(int type)
{
    return QStringLiteral(R"(posted 100 0 {"settings":[{"id":"idAnimatedType","value":%1}]} -1)")
        .arg(type);
}

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

void changeType(Stage &stage, int type)
{
    Request request(Request::packed(qint32(type), true));
    QVERIFY(request.set(stage.image, setType));
    stage.log.clear();
}

/// A command on the stack, or a part of a macro there, to be run out of turn.
CAnimatedUndoRedoCommand *runnable(const QUndoCommand *command)
{
    return dynamic_cast<CAnimatedUndoRedoCommand *>(const_cast<QUndoCommand *>(command));
}

} // namespace

/// The commands that requests push: the animation type and the replacement of all frames.
class TestUndoEdits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void everyStepOfATypeIsTold();
    void aTypeRunTwiceIsTheTypeRunOnce();
    void becomingABackgroundStopsWhetherByUndoOrRedo_data();
    void becomingABackgroundStopsWhetherByUndoOrRedo();
    void leavingTheBackgroundPlaysOn();
    void theTypeIsAMacroNamedForTheUser_data();
    void theTypeIsAMacroNamedForTheUser();
    void typesDoNotMerge();

    void framesReplacedTwiceAreReplacedOnce();
    void framesBroughtBackTwiceAreThereOnce();
    void aReplacementIsNamedForTheUser_data();
    void aReplacementIsNamedForTheUser();
    void replacementsDoNotMerge();
    void aReplacementPlaysOnAtTheFirstFrame();
    void theTileFollowsAReplacement();
    void everyFrameBroughtBackCanBeHitWhenShown_data();
    void everyFrameBroughtBackCanBeHitWhenShown();

private:
    void replace(Stage &stage);

    QTemporaryDir m_folder;
};

void TestUndoEdits::init()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
    QVERIFY(Pictures::solid(4, 2, Qt::cyan).save(m_folder.filePath(QStringLiteral("walk.png"))));
}

void TestUndoEdits::cleanup()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
}

void TestUndoEdits::replace(Stage &stage)
{
    Request request(Request::packed(m_folder.filePath(QStringLiteral("walk.png"))));
    QVERIFY(request.get(stage.image, replaceAll));
    stage.log.clear();
}

void TestUndoEdits::everyStepOfATypeIsTold()
{
    Stage stage(solidFrames({{4, 4}}));
    stage.probe.animatedType() = 2;
    changeType(stage, 0);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), 2);
    stack().redo();
    QCOMPARE(stage.probe.animatedType(), 0);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), 2);
    QCOMPARE(stage.log.entries(), QStringList({postedType(2), postedType(0), postedType(2)}));
}

void TestUndoEdits::aTypeRunTwiceIsTheTypeRunOnce()
{
    Stage stage(solidFrames({{4, 4}}));
    changeType(stage, background);
    // The move to the other layer comes first in the macro.
    QCOMPARE(stack().command(0)->childCount(), 2);
    CAnimatedUndoRedoCommand *command = runnable(stack().command(0)->child(1));
    QVERIFY(command);
    command->redo();
    command->redo();
    QCOMPARE(stage.probe.animatedType(), 1);
    command->undo();
    command->undo();
    QCOMPARE(stage.probe.animatedType(), -1);
    QCOMPARE(stage.log.entries(),
             QStringList({postedType(1), postedType(1), postedType(-1), postedType(-1)}));
    QCOMPARE(*command->data_ptr(), QByteArray::fromHex("ffffffff00000001"));
}

void TestUndoEdits::becomingABackgroundStopsWhetherByUndoOrRedo_data()
{
    QTest::addColumn<bool>("byUndo");
    QTest::newRow("undo") << true;
    QTest::newRow("redo") << false;
}

void TestUndoEdits::becomingABackgroundStopsWhetherByUndoOrRedo()
{
    QFETCH(bool, byUndo);
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    if (byUndo)
        stage.probe.animatedType() = background;
    changeType(stage, byUndo ? 0 : background);
    if (!byUndo)
        stack().undo();
    QCOMPARE(stage.probe.animatedType(), byUndo ? 0 : -1);
    stage->playImage(true);
    stage.log.clear();

    if (byUndo)
        stack().undo();
    else
        stack().redo();

    QCOMPARE(stage.probe.animatedType(), 1);
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.log.entries(),
             QStringList({QStringLiteral("changed 1002"), postedFalse, postedType(1)}));
}

void TestUndoEdits::leavingTheBackgroundPlaysOn()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    changeType(stage, background);
    stage->playImage(true);
    stage.probe.tick();
    stage.log.clear();
    stack().undo();
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList({postedType(-1)}));
}

void TestUndoEdits::theTypeIsAMacroNamedForTheUser_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QLocale(QLocale::English)
                             << QStringLiteral("Change Animation Type");
    QTest::newRow("Simplified Chinese") << QLocale(QStringLiteral("zh_CN"))
                                        << QStringLiteral(u"\u66f4\u6539\u52a8\u753b\u7c7b\u578b");
    // In a language without texts the user reads English.
    QTest::newRow("Icelandic") << QLocale(QLocale::Icelandic)
                               << QStringLiteral("Change Animation Type");
}

void TestUndoEdits::theTypeIsAMacroNamedForTheUser()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    Framework::instance().setLanguage(locale);
    Stage stage(solidFrames({{4, 4}}));
    changeType(stage, 2);
    QCOMPARE(stack().count(), 1);
    QCOMPARE(stack().undoText(), text);
    QCOMPARE(stack().command(0)->childCount(), 1);
    // The command itself has no name.
    const CAnimatedUndoRedoCommand *command = runnable(stack().command(0)->child(0));
    QVERIFY(command);
    QCOMPARE(command->text(), QString());
}

void TestUndoEdits::typesDoNotMerge()
{
    Stage stage(solidFrames({{4, 4}}));
    changeType(stage, 5);
    changeType(stage, 6);
    changeType(stage, 6);
    QCOMPARE(stack().count(), 3);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), 6);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), 5);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), -1);
}

void TestUndoEdits::framesReplacedTwiceAreReplacedOnce()
{
    Stage stage(solidFrames({{4, 3}, {5, 6}}));
    replace(stage);
    CAnimatedUndoRedoCommand *command = runnable(stack().command(0));
    QVERIFY(command);
    command->redo();
    command->redo();
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("walk")}));
    QCOMPARE(stage.probe.frame(0).image, Pictures::solid(4, 2, Qt::cyan));
    QCOMPARE(stage.probe.frame(0).rects, QList<QRect>({QRect(0, 0, 3, 2)}));
}

void TestUndoEdits::framesBroughtBackTwiceAreThereOnce()
{
    const QList<QImage> pictures = solidFrames({{4, 3}, {5, 6}});
    Stage stage(pictures);
    replace(stage);
    CAnimatedUndoRedoCommand *command = runnable(stack().command(0));
    QVERIFY(command);
    command->undo();
    command->undo();
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("f_1"), QStringLiteral("f_2")}));
    QCOMPARE(stage.probe.frame(0).image, pictures.at(0));
    QCOMPARE(stage.probe.frame(1).image, pictures.at(1));
    QCOMPARE(stage.probe.frame(1).size, QSizeF(5.0, 6.0));
}

void TestUndoEdits::aReplacementIsNamedForTheUser_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::newRow("English") << QLocale(QLocale::English) << QStringLiteral("Replace Portrait");
    QTest::newRow("Simplified Chinese")
        << QLocale(QStringLiteral("zh_CN")) << QStringLiteral(u"\u66ff\u6362\u9020\u578b");
}

void TestUndoEdits::aReplacementIsNamedForTheUser()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    Framework::instance().setLanguage(locale);
    Stage stage(solidFrames({{4, 4}}));
    replace(stage);
    const CAnimatedUndoRedoCommand *command = runnable(stack().command(0));
    QVERIFY(command);
    QCOMPARE(command->text(), text);
    // It keeps the name that it was given.
    Framework::instance().setLanguage(QLocale(QLocale::English));
    QCOMPARE(stack().undoText(), text);
}

void TestUndoEdits::replacementsDoNotMerge()
{
    Stage stage(solidFrames({{4, 4}}));
    replace(stage);
    replace(stage);
    replace(stage);
    QCOMPARE(stack().count(), 3);
    // Each name is free among the frames that it replaces.
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("walk")}));
    stack().undo();
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("walk_1")}));
    stack().undo();
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("walk")}));
    stack().undo();
    QCOMPARE(stage.frameNames(), QStringList({QStringLiteral("f_1")}));
}

void TestUndoEdits::aReplacementPlaysOnAtTheFirstFrame()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    replace(stage);
    stack().undo();
    stage->playImage(true);
    stage.probe.tick();
    QCOMPARE(stage.probe.runningIndex(), 1);
    stack().redo();
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    stage.probe.tick();
    stack().undo();
    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
}

void TestUndoEdits::theTileFollowsAReplacement()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.probe.animatedType() = background;
    replace(stage);
    QCOMPARE(stage.probe.bgImage().pixelColor(1, 1), QColor(Qt::cyan));
    stack().undo();
    QCOMPARE(stage.probe.bgImage().pixelColor(1, 1), QColor(Qt::red));
    stack().redo();
    QCOMPARE(stage.probe.bgImage().pixelColor(1, 1), QColor(Qt::cyan));
}

void TestUndoEdits::everyFrameBroughtBackCanBeHitWhenShown_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("byAttribute");
    QTest::newRow("normal, by a tick") << -1 << false;
    QTest::newRow("background, by a tick") << background << false;
    QTest::newRow("normal, by the end of presenting") << -1 << true;
    QTest::newRow("background, by the end of presenting") << background << true;
}

void TestUndoEdits::everyFrameBroughtBackCanBeHitWhenShown()
{
    QFETCH(int, type);
    QFETCH(bool, byAttribute);
    Stage stage(solidFrames({{4, 3}, {4, 3}}));
    stage.probe.animatedType() = type;
    stage->setCurrentIndex(byAttribute ? 1 : 0);
    QDataStream noInput{QByteArray()};
    stage->SetAttribute(2804, noInput, false);
    stage.document.setAlternateMode(1);
    replace(stage);
    stack().undo();
    if (byAttribute) {
        stage->SetAttribute(2805, noInput, false);
    } else {
        stage->playImage(true);
        stage.probe.tick();
    }
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage->shape().boundingRect(), QRectF(0.0, 0.0, 3.0, 3.0));
}

QTEST_MAIN(TestUndoEdits)
#include "tst_undo_edits.moc"
