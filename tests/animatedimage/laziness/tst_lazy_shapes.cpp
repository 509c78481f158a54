#include "animatedimage/protocol/entrypoints.h"
#include "steps.h"

#include <QtCore/QLibrary>
#include <QtTest/QTest>

namespace
{

constexpr unsigned firstSeed = 4711;
constexpr int walks = 12;
constexpr int stepsOfAWalk = 60;

QByteArray text(const QStringList &steps, const char *what)
{
    return QByteArray(what) + " differs after: " + steps.join(QStringLiteral(", ")).toUtf8();
}

/// Whether all frames have the same regions and hit paths.
bool areAlike(const QList<CAnimatedPortrait> &lazy, const QList<CAnimatedPortrait> &eager)
{
    if (lazy.size() != eager.size())
        return false;
    for (int i = 0; i < lazy.size(); ++i) {
        const CAnimatedPortrait &a = lazy.at(i);
        const CAnimatedPortrait &b = eager.at(i);
        if (a.rects != b.rects || a.regionSize != b.regionSize || a.path != b.path ||
            a.path.fillRule() != b.path.fillRule() || a.size != b.size || a.name != b.name)
            return false;
    }
    return true;
}

} // namespace

/// Hit shapes are computed when they are asked for. Whatever a host does before, and whenever it
/// asks, it sees what an object shows that computes everything at once.
class TestLazyShapes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void walksLookAlike_data();
    void walksLookAlike();

private:
    Subject::Create m_eager = nullptr;
};

void TestLazyShapes::initTestCase()
{
    QLibrary library(QStringLiteral(EAGER_PLUGIN));
    m_eager = reinterpret_cast<Subject::Create>(library.resolve("createObject_animatedImage"));
    QVERIFY2(m_eager, qPrintable(library.errorString()));
}

void TestLazyShapes::walksLookAlike_data()
{
    QTest::addColumn<int>("askedPercent");
    QTest::addColumn<bool>("listens");
    QTest::addColumn<int>("probedPercent");
    QTest::newRow("asked after every step") << 100 << false << 0;
    QTest::newRow("asked at every notification") << 100 << true << 0;
    QTest::newRow("seldom asked") << 15 << false << 0;
    QTest::newRow("never asked but of all frames") << 0 << false << 15;
    QTest::newRow("asked in every way") << 40 << false << 10;
}

void TestLazyShapes::walksLookAlike()
{
    QFETCH(int, askedPercent);
    QFETCH(bool, listens);
    QFETCH(int, probedPercent);
    for (unsigned seed = firstSeed; seed < firstSeed + walks; ++seed) {
        Steps steps(seed);
        Subject lazy(createObject_animatedImage, listens);
        Subject eager(m_eager, listens);
        QStringList done{QStringLiteral("seed %1").arg(seed)};
        for (int i = 0; i < stepsOfAWalk; ++i) {
            const Step step = steps.next(lazy.frameCount());
            done.append(step.name);
            step.apply(lazy);
            step.apply(eager);
            QVERIFY2(lazy.takeHeard() == eager.takeHeard(), text(done, "what listeners saw"));
            QVERIFY2(lazy.answer() == eager.answer(), text(done, "the answer"));
            if (steps.number(1, 100) <= askedPercent)
                QVERIFY2(lazy.shape() == eager.shape(), text(done, "the shape"));
            if (steps.number(1, 100) <= probedPercent)
                QVERIFY2(areAlike(lazy.frames(true), eager.frames(false)), text(done, "a region"));
            // Some pictures are painted in another way from the second time on.
            for (int time = steps.number(1, 3); time > 0; --time)
                QVERIFY2(lazy.painted() == eager.painted(), text(done, "what is painted"));
        }
        QVERIFY2(lazy.shape() == eager.shape(), text(done, "the shape at the end"));
        QVERIFY2(lazy.saved() == eager.saved(), text(done, "the stream form"));
        QVERIFY2(lazy.savedJson() == eager.savedJson(), text(done, "the JSON form"));
        QVERIFY2(areAlike(lazy.frames(true), eager.frames(false)),
                 text(done, "a region at the end"));
    }
}

QTEST_MAIN(TestLazyShapes)
#include "tst_lazy_shapes.moc"
