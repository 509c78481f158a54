#include "framework/framework.h"
#include "framework/notifier.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>
#include <QtWidgets/QGraphicsView>

/// Which of the requests that show a frame repaint it at once, and when.
class TestPropertiesRepainting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theBackgroundTypeIsRepaintedBeforeTheHostIsTold();
    void theNormalTypeIsNotRepaintedAtOnce();
    void anObjectThatGoesWhileItIsRepaintedTellsNothing();
};

namespace
{

constexpr int next = 5001;
constexpr int showAt = 5003;
constexpr int showNamed = 5004;

QList<QImage> threeFrames()
{
    return solidFrames({{4, 4}, {4, 4}, {4, 4}});
}

/// Notes the order of repaints and of notifications that the shown content has changed.
class OrderLog : public QObject
{
public:
    explicit OrderLog(QGraphicsView &view)
    {
        view.viewport()->installEventFilter(this);
        connect(Framework::instance().notifier(), &Notifier::propertyChanged, this,
                [this](CBaseObject *, int id, const QString &) {
                    if (id == 1002)
                        entries.append(QStringLiteral("told"));
                });
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint)
            entries.append(QStringLiteral("painted"));
        return false;
    }

    QStringList entries;
};

/// Releases the object of a stage before the next repaint.
class Releasing : public QObject
{
public:
    Releasing(Stage &stage, QGraphicsView &view)
        : m_stage(stage)
    {
        view.viewport()->installEventFilter(this);
    }

    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::Paint && !m_stage.isReleased())
            m_stage.release();
        return false;
    }

private:
    Stage &m_stage;
};

/// What is painted after this has a cause in the test.
void showUntilPainted(QGraphicsView &view)
{
    view.resize(900, 700);
    view.show();
    QCoreApplication::processEvents();
}

} // namespace

void TestPropertiesRepainting::theBackgroundTypeIsRepaintedBeforeTheHostIsTold()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = 1;
    QGraphicsView view(stage.page);
    showUntilPainted(view);
    const QStringList expected{QStringLiteral("painted"), QStringLiteral("told")};

    OrderLog byIndex(view);
    Request request(QByteArray::fromHex("00000002"));
    QVERIFY(request.set(stage.image, showAt));
    QCOMPARE(byIndex.entries, expected);

    // The other requests leave the repainting to the next event.
    OrderLog byName(view);
    Request named(Request::packed(QStringLiteral("f_1")));
    QVERIFY(named.set(stage.image, showNamed));
    Request step;
    QVERIFY(step.set(stage.image, next));
    const QStringList told{QStringLiteral("told"), QStringLiteral("told")};
    QCOMPARE(byName.entries, told);
    for (int i = 0; i < 5; ++i)
        QCoreApplication::processEvents();
    QCOMPARE(byName.entries, told + QStringList(QStringLiteral("painted")));
}

void TestPropertiesRepainting::theNormalTypeIsNotRepaintedAtOnce()
{
    Stage stage(threeFrames());
    QGraphicsView view(stage.page);
    showUntilPainted(view);
    OrderLog order(view);
    Request request(QByteArray::fromHex("00000002"));

    QVERIFY(request.set(stage.image, showAt));

    QCOMPARE(order.entries, (QStringList{QStringLiteral("told"), QStringLiteral("told")}));
}

void TestPropertiesRepainting::anObjectThatGoesWhileItIsRepaintedTellsNothing()
{
    Stage stage(threeFrames());
    stage.probe.animatedType() = 1;
    QGraphicsView view(stage.page);
    showUntilPainted(view);
    const Releasing releasing(stage, view);
    stage.log.clear();
    Request request(QByteArray::fromHex("00000002"));
    QVERIFY(request.set(stage.image, showAt));
    QVERIFY(stage.isReleased());
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestPropertiesRepainting)
#include "tst_properties_repainting.moc"
