#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/animatedimage/undo/walkmodel.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

constexpr int stepsOfAWalk = 500;

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

/// A picture file that may become the only frame.
struct PictureFile {
    QString baseName;
    QString path;
    QImage picture; ///< null where it cannot be read
};

QByteArray streamForm(Stage &stage)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stage->save(stream);
    return bytes;
}

QImage pixels(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32);
}

/// Two other objects on the page, below and above the edited one.
struct Neighbours {
    explicit Neighbours(Stage &stage)
        : below(new CAnimatedImage(2, true, nullptr))
        , above(new CAnimatedImage(3, true, nullptr))
    {
        stage.page->takeObject(stage.image);
        stage.page->addObject(below);
        stage.page->addObject(stage.image);
        stage.page->addObject(above);
    }

    QStringList names(Stage &stage) const
    {
        const QHash<CBaseObject *, QString> names{{below, QStringLiteral("below")},
                                                  {above, QStringLiteral("above")},
                                                  {stage.image, WalkModel::edited()}};
        QStringList list;
        const QList<CBaseObject *> objects = stage.page->objects();
        for (CBaseObject *object : objects)
            list.append(names.value(object));
        return list;
    }

    CAnimatedImage *below;
    CAnimatedImage *above;
};

WalkModel::State stateOf(Stage &stage)
{
    WalkModel::State state;
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
        state.frames.append({frame.name, frame.image, frame.size});
    state.normal =
        QStringList{QStringLiteral("below"), WalkModel::edited(), QStringLiteral("above")};
    return state;
}

/// What the frames have that the model does not expect; nothing when they are equal.
QString differenceOfFrames(Stage &stage, const QList<ModelFrame> &expected)
{
    const QList<CAnimatedPortrait> &frames = stage.probe.frames();
    if (frames.size() != expected.size())
        return QStringLiteral("%1 frames").arg(frames.size());
    for (int i = 0; i < frames.size(); ++i) {
        if (frames.at(i).name != expected.at(i).name)
            return QStringLiteral("name %1 is %2").arg(QString::number(i), frames.at(i).name);
        if (frames.at(i).size != expected.at(i).size)
            return QStringLiteral("the size of frame %1").arg(i);
        if (pixels(frames.at(i).image) != pixels(expected.at(i).picture))
            return QStringLiteral("the pixels of frame %1").arg(i);
    }
    return {};
}

/// What is not as the model says; nothing when all is.
QString difference(Stage &stage, const Neighbours &neighbours, const WalkModel &model)
{
    const WalkModel::State &expected = model.state();
    const QString frames = differenceOfFrames(stage, expected.frames);
    if (!frames.isEmpty())
        return frames;
    const QList<QPair<QString, QPair<int, int>>> numbers{
        {QStringLiteral("index"), {stage.probe.runningIndex(), expected.index}},
        {QStringLiteral("running"), {stage.probe.isRunning(), expected.isRunning}},
        {QStringLiteral("type"), {stage.probe.animatedType(), expected.type}},
        {QStringLiteral("interval"), {stage.probe.shiftInterval(), expected.interval}},
        {QStringLiteral("keep ratio"), {stage.probe.keepRatio(), expected.keepRatio}},
        {QStringLiteral("loop count"), {stage.probe.loopCount(), expected.loopCount}},
        {QStringLiteral("done steps"), {stack().index(), model.doneSteps()}},
        {QStringLiteral("all steps"), {stack().count(), model.allSteps()}},
    };
    for (const auto &number : numbers) {
        if (number.second.first != number.second.second)
            return QStringLiteral("%1 is %2, not %3")
                .arg(number.first)
                .arg(number.second.first)
                .arg(number.second.second);
    }
    if (neighbours.names(stage) != expected.background + expected.normal)
        return QStringLiteral("the place on the page");
    const CAnimatedPortrait &shown = stage.probe.frames().at(stage.probe.runningIndex());
    if (shown.regionSize != shown.image.size())
        return QStringLiteral("the frame shown is not measured");
    return {};
}

} // namespace

/// Random walks of edits, undos and redos, beside a model in plain values.
class TestUndoWalks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aWalkEqualsItsModelAndLeadsBack_data();
    void aWalkEqualsItsModelAndLeadsBack();
    void aPictureOfAnyFormatComesBackByteForByte_data();
    void aPictureOfAnyFormatComesBackByteForByte();

private:
    void edit(Stage &stage, WalkModel &model, QRandomGenerator &random);
    void change(Stage &stage, WalkModel &model, QRandomGenerator &random);
    void replaceAllFrames(Stage &stage, const QString &path);

    QTemporaryDir m_folder;
    QList<PictureFile> m_files;
};

void TestUndoWalks::initTestCase()
{
    const auto add = [this](const char *baseName, const QImage &picture) {
        const QString name = QString::fromLatin1(baseName);
        const QString path = m_folder.filePath(name + QStringLiteral(".png"));
        if (!picture.isNull())
            QVERIFY(picture.save(path));
        m_files.append({name, path, picture});
    };
    add("walk", Pictures::fromText({"##..", ".##.", "..##"}));
    add("walk_2", Pictures::solid(9, 4, QColor(10, 200, 30, 77)));
    add("f_9", Pictures::solid(1, 1, Qt::white, QImage::Format_RGB32));
    add("_odd_", Pictures::solid(3, 3, Qt::blue, QImage::Format_Grayscale8));
    add("empty", Pictures::transparent(6, 5));
    add("missing", QImage());
    add("broken", QImage());
    QFile broken(m_files.constLast().path);
    QVERIFY(broken.open(QIODevice::WriteOnly));
    QCOMPARE(broken.write("not a picture"), qint64(13));
}

void TestUndoWalks::init()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoWalks::cleanup()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoWalks::replaceAllFrames(Stage &stage, const QString &path)
{
    Request request(Request::packed(path));
    QVERIFY(request.get(stage.image, 5020));
}

/// Pushes a change of one setting, as a host does.
void TestUndoWalks::change(Stage &stage, WalkModel &model, QRandomGenerator &random)
{
    const auto type = static_cast<ANIMATEDIMAGE_CHANGE_TYPE>(random.bounded(3));
    auto *command = new CAnimatedImageChangeCommand(stage.image, type);
    const WalkModel::State &state = model.state();
    const bool keepRatio = random.bounded(2) == 1;
    // The pair that the setting does not use holds what would be noticed.
    command->setBoolValue(!state.keepRatio, !state.keepRatio);
    command->setIntValue(9999, 9999);
    if (type == CHANGE_SHIFT_INTERVAL) {
        const int interval = random.bounded(4) * 100 - 100;
        command->setIntValue(state.interval, interval);
        model.setInterval(interval);
    } else if (type == CHANGE_KEEP_RATIO) {
        command->setBoolValue(state.keepRatio, keepRatio);
        model.setKeepRatio(keepRatio);
    } else {
        const int count = random.bounded(4) - 1;
        command->setIntValue(state.loopCount, count);
        model.setLoopCount(count);
    }
    CUndoRedo::GetInstance()->push(command);
}

void TestUndoWalks::edit(Stage &stage, WalkModel &model, QRandomGenerator &random)
{
    switch (random.bounded(3)) {
    case 0: {
        const PictureFile &file = m_files.at(random.bounded(m_files.size()));
        replaceAllFrames(stage, file.path);
        model.replaceAllFrames(file.baseName, file.picture);
        break;
    }
    case 1: {
        const int type = random.bounded(4) - 1;
        Request request(Request::packed(qint32(type), true));
        QVERIFY(request.set(stage.image, 5008));
        model.setType(type);
        break;
    }
    default:
        change(stage, model, random);
        break;
    }
}

void TestUndoWalks::aWalkEqualsItsModelAndLeadsBack_data()
{
    QTest::addColumn<quint32>("seed");
    QTest::addColumn<bool>("plays");
    for (quint32 seed = 1; seed <= 8; ++seed) {
        QTest::addRow("seed %u", seed) << seed << false;
        QTest::addRow("seed %u, playing", seed) << seed << true;
    }
}

void TestUndoWalks::aWalkEqualsItsModelAndLeadsBack()
{
    QFETCH(quint32, seed);
    QFETCH(bool, plays);
    QRandomGenerator random(seed);
    // While it plays the object takes the size of each frame; with one size for all of them it
    // comes back as it was.
    Stage stage(plays ? solidFrames({{6, 5}, {6, 5}, {6, 5}})
                      : QList<QImage>{Pictures::fromText({"#.#", ".#."}),
                                      Pictures::solid(7, 3, QColor(1, 2, 3, 4)), QImage()});
    const Neighbours neighbours(stage);
    stage->setPos(QPointF(100.5, -20.25), false);
    if (!plays)
        stage.probe.frame(1).size = QSizeF(70.125, 30.5);
    const QByteArray first = streamForm(stage);
    WalkModel model(stateOf(stage));

    for (int step = 1; step <= stepsOfAWalk; ++step) {
        const int dice = random.bounded(20);
        if (dice < 6) {
            edit(stage, model, random);
        } else if (dice < 12) {
            stack().undo();
            model.undo();
        } else if (dice < 15 || !plays) {
            stack().redo();
            model.redo();
        } else if (dice < 16) {
            const bool run = random.bounded(3) != 0;
            stage->playImage(run);
            model.play(run);
        } else {
            stage.probe.tick();
            model.tick();
        }
        const QString wrong = difference(stage, neighbours, model);
        QVERIFY2(wrong.isEmpty(),
                 qPrintable(QStringLiteral("seed %1, step %2: %3").arg(seed).arg(step).arg(wrong)));
    }

    const int reached = stack().index();
    const QByteArray last = streamForm(stage);
    stack().setIndex(0);
    if (plays) {
        stage->playImage(false);
        stage->setCurrentIndex(0);
    }
    QCOMPARE(streamForm(stage), first);
    stack().setIndex(reached);
    if (!plays)
        QCOMPARE(streamForm(stage), last);
}

void TestUndoWalks::aPictureOfAnyFormatComesBackByteForByte_data()
{
    QTest::addColumn<int>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("format %d", format) << format;
}

void TestUndoWalks::aPictureOfAnyFormatComesBackByteForByte()
{
    QFETCH(int, format);
    QImage picture(5, 3, QImage::Format_ARGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, random.generate());
    }
    picture = picture.convertToFormat(static_cast<QImage::Format>(format));
    picture.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    picture.setDotsPerMeterX(3001);
    Stage stage({picture});
    const QByteArray first = streamForm(stage);

    for (int i = 0; i < 3; ++i) {
        replaceAllFrames(stage, m_files.constFirst().path);
        QVERIFY(streamForm(stage) != first);
        stack().undo();
        QCOMPARE(pixels(stage.probe.frame(0).image), pixels(picture));
        QCOMPARE(streamForm(stage), first);
    }
}

QTEST_MAIN(TestUndoWalks)
#include "tst_undo_walks.moc"
