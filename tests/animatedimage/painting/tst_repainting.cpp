#include "canvas.h"
#include "tests/support/request.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QScreen>
#include <QtTest/QTest>
#include <QtWidgets/QGraphicsView>

#include <functional>

namespace
{

constexpr int normal = -1;
constexpr int background = 1;

/// Three frames that differ from each other, and from themselves when they are moved or turned.
QList<QImage> threeFrames()
{
    return {Canvas::picture({"rgby", "gggg"}).scaled(40, 20),
            Canvas::picture({"bryg", "rrrr"}).scaled(40, 20),
            Canvas::picture({"yybg", "bbrb"}).scaled(40, 20)};
}

/// A page in a view that is shown, with an object well inside it.
class Shown : public QObject
{
public:
    Shown(int type, int mode)
        : stage(threeFrames())
        , view(stage.page)
    {
        stage.probe.animatedType() = type;
        if (type == background)
            stage.page->placeObject(stage.image, {Page::Layer::Background, 0});
        stage->setPos(QPointF(100, 100), false);
        stage.document.setAlternateMode(mode);
        stage->regenBGImage();
        view.resize(900, 700);
        view.show();
        settle();
        view.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        paintEvents += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

    /// Handles all that is due: a repaint passes several queues.
    static void settle()
    {
        for (int i = 0; i < 5; ++i)
            QCoreApplication::processEvents();
    }

    /// What is on the screen.
    QImage screen() const { return view.screen()->grabWindow(view.winId()).toImage(); }

    /// What would be there if everything were painted again.
    QImage painted() { return view.grab().toImage(); }

    Stage stage;
    QGraphicsView view;
    int paintEvents = 0;
};

using Message = std::function<void(Stage &)>;

template<typename... Values>
Message request(int id, const Values &...values)
{
    return [=](Stage &stage) {
        Request request(Request::packed(values...));
        request.set(stage.image, id);
    };
}

template<typename... Values>
Message attribute(int id, const Values &...values)
{
    return [=](Stage &stage) {
        QDataStream stream(Request::packed(values...));
        QVERIFY(stage->SetAttribute(id, stream, true));
    };
}

/// A row for each type of object and each mode of the page.
void everywhere(const char *name, const Message &message)
{
    for (const int type : {normal, background}) {
        for (const int mode : {0, 1})
            QTest::addRow("%s, %s, %s", name, type == normal ? "normal" : "background",
                          mode == 0 ? "edited" : "presented")
                << type << mode << message << 1;
    }
}

void addPlayback()
{
    everywhere("tick", [](Stage &stage) {
        stage.probe.isRunning() = true;
        stage.probe.tick();
    });
    everywhere("stepped tick", [](Stage &stage) {
        stage.probe.isRunning() = true;
        stage.probe.elapsedMs() = 160;
        attribute(2705)(stage);
    });
    everywhere("stepped start", [](Stage &stage) {
        stage.probe.playEnabled() = false;
        stage.probe.runningIndex() = 2;
        attribute(2702, false, false)(stage);
    });
    everywhere("stop", [](Stage &stage) {
        stage.probe.isRunning() = true;
        stage.probe.runningIndex() = 1;
        stage->playImage(false);
    });
}

void addRequests(const QImage &picture)
{
    everywhere("5001", request(5001));
    everywhere("5002", request(5002));
    everywhere("5004", request(5004, QStringLiteral("f_2")));
    everywhere("5007", request(5007, false, qint32(0), picture));
    everywhere("5009", request(5009, qint32(0)));
    everywhere("5013", [](Stage &stage) {
        stage.probe.runningIndex() = 1;
        request(5013, true)(stage);
        stage.probe.timer()->stop();
    });
    everywhere("5015", request(5015, qint32(2), qint32(0)));
    everywhere("5016", [](Stage &stage) {
        CAnimatedImage other(2, true, nullptr);
        other.loadFromImage(&threeFrames().at(1));
        const CGDRootObject *root = &other;
        request(5016, qint64(reinterpret_cast<quintptr>(root)))(stage);
    });
    everywhere("5020", [=](Stage &stage) {
        const QTemporaryDir folder;
        const QString file = folder.filePath(QStringLiteral("picture.png"));
        QVERIFY(picture.save(file));
        Request ask(Request::packed(file));
        QVERIFY(ask.get(stage.image, 5020));
    });
}

void addGeometryAndImports(const QImage &picture)
{
    everywhere("position", [](Stage &stage) { stage->setPos(QPointF(107, 103), false); });
    everywhere("size", [](Stage &stage) { stage->setSize(QSizeF(80, 60), false, false); });
    everywhere("centre", [](Stage &stage) {
        stage->setCenterPos(QPointF(200, 150), QSizeF(60, 60), 0.0, true);
    });
    everywhere("mirror", [](Stage &stage) { stage->setMirror(true, false); });
    everywhere("flip", [](Stage &stage) { stage->setFlip(true, false); });
    everywhere("loaded picture", [=](Stage &stage) { stage->loadFromImage(&picture); });
    everywhere("leaving the presentation", [](Stage &stage) {
        stage.probe.savedIndex() = 1;
        attribute(2805)(stage);
    });
}

} // namespace

Q_DECLARE_METATYPE(Message)

/// Real paint events of a view, for every message after which an object tells the host that it is
/// seen otherwise.
class TestRepainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aMessageRepaintsTheObject_data();
    void aMessageRepaintsTheObject();
    void aMessageThatChangesNothingPaintsNothing();
};

void TestRepainting::aMessageRepaintsTheObject_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<int>("mode");
    QTest::addColumn<Message>("message");
    QTest::addColumn<int>("paintEvents");
    const QImage picture = Canvas::picture({"bb", "yr"}).scaled(40, 20);
    addPlayback();
    addRequests(picture);
    addGeometryAndImports(picture);
    const Message toBackground = request(5008, qint32(background), true);
    QTest::newRow("5008, normal, presented") << normal << 1 << toBackground << 1;
    const Message toNormal = request(5008, qint32(0), true);
    QTest::newRow("5008, background, presented") << background << 1 << toNormal << 1;
    // A background is repainted at once, and again with the next event.
    QTest::newRow("5003, normal, edited") << normal << 0 << request(5003, qint32(2)) << 1;
    QTest::newRow("5003, normal, presented") << normal << 1 << request(5003, qint32(2)) << 1;
    QTest::newRow("5003, background, edited") << background << 0 << request(5003, qint32(2)) << 2;
    QTest::newRow("5003, background, presented")
        << background << 1 << request(5003, qint32(2)) << 2;
}

void TestRepainting::aMessageRepaintsTheObject()
{
    QFETCH(int, type);
    QFETCH(int, mode);
    QFETCH(Message, message);
    Shown shown(type, mode);

    message(shown.stage);
    Shown::settle();

    QTEST(shown.paintEvents, "paintEvents");
    const QImage screen = shown.screen();
    QVERIFY(!screen.isNull());
    QCOMPARE(screen, shown.painted());
}

void TestRepainting::aMessageThatChangesNothingPaintsNothing()
{
    Shown shown(background, 1);
    Request(Request::packed(qint32(7))).get(shown.stage.image, 5012);
    attribute(2704, false)(shown.stage);
    shown.stage->setLoopCount(3);
    Shown::settle();
    QCOMPARE(shown.paintEvents, 0);
}

QTEST_MAIN(TestRepainting)
#include "tst_repainting.moc"
