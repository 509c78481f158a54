#include "framework/framework.h"
#include "tests/animatedimage/hostilecalls/completestate.h"
#include "tests/animatedimage/hostilecalls/requestjudge.h"
#include "tests/support/pictures.h"
#include "tests/support/quiet.h"
#include "tests/support/usability.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QLoggingCategory>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <memory>

using RequestJudge::Verdict;

/// Every identifier is read and written with payloads made by chance. What is refused changes
/// nothing; what is accepted leaves an object that can be used. Each takes as many as
/// REQUEST_PAYLOADS tells, by default 40.
class TestHostileRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void everyIdentifierWithPayloadsOfChance_data();
    void everyIdentifierWithPayloadsOfChance();

private:
    struct Found;
    void send(int id, bool isGet, const Found &found, PayloadMaker &maker, int payloads);
    PayloadMaker::World world() const;

    QTemporaryDir m_folder;
    std::unique_ptr<Stage> m_other;
    qint64 m_deadAddress = 0;
    QMap<Verdict, int> m_verdicts;
};

/// How the object is found.
struct TestHostileRequests::Found {
    QList<QImage> frames;
    int type;
    bool isRunning;
    bool isPresented;

    std::unique_ptr<Stage> stage() const
    {
        Framework::instance().dropUndoCommands();
        auto stage = std::make_unique<Stage>(frames);
        (*stage)->setOtherParams(QStringLiteral("object_name"), QStringLiteral("f"));
        (*stage)->setPos(QPointF(-3.0, 5.0), false);
        stage->probe.animatedType() = type;
        if (isRunning)
            (*stage)->playImage(true);
        (*stage)->setCurrentIndex(1);
        stage->document.setAlternateMode(isPresented ? 1 : 0);
        // Not while a request is being checked.
        stage->probe.timer()->setInterval(3600000);
        completeState(*stage);
        stage->log.clear();
        return stage;
    }
};

namespace
{

qint64 handleOf(CGDRootObject *object)
{
    return reinterpret_cast<qint64>(object);
}

/// Sends one request, and returns whether the object says that it was handled.
bool sendPayload(CAnimatedImage &image, int id, bool isGet, const Payload &payload)
{
    HostileDevice device(payload.device, payload.bytes, payload.whole);
    if (payload.device == HostileDevice::Plain)
        device.seek(payload.position);
    QDataStream stream;
    if (payload.hasDevice)
        stream.setDevice(&device);
    stream.setVersion(payload.version);
    stream.setByteOrder(payload.order);
    if (payload.hasBadStatus)
        stream.setStatus(QDataStream::ReadCorruptData);
    return isGet ? image.GetSpecialProperty(id, stream)
                 : image.SetSpecialProperty(id, stream, false);
}

} // namespace

void TestHostileRequests::initTestCase()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    QVERIFY(Pictures::solid(3, 3, Qt::yellow).save(m_folder.filePath(QStringLiteral("f_2.png"))));
    m_other = std::make_unique<Stage>(solidFrames({{8, 8}}));
    auto *dead = new CAnimatedImage(3, true, nullptr);
    m_deadAddress = handleOf(dead);
    dead->Release();
}

void TestHostileRequests::cleanupTestCase()
{
    qInfo("%d only read, %d refused, %d accepted, %d not decided beforehand",
          m_verdicts.value(Verdict::ReadsOnly), m_verdicts.value(Verdict::Refused),
          m_verdicts.value(Verdict::Accepted), m_verdicts.value(Verdict::Unknown));
    QVERIFY(m_verdicts.value(Verdict::Refused) > m_verdicts.value(Verdict::Accepted));
    QVERIFY(m_verdicts.value(Verdict::Accepted) > 50);
    m_other.reset();
    Framework::instance().dropUndoCommands();
}

PayloadMaker::World TestHostileRequests::world() const
{
    return {m_folder.filePath(QStringLiteral("f_2.png")),
            m_folder.path(),
            {handleOf(m_other->image), handleOf(m_other->image), 0, 1, -1, m_deadAddress,
             handleOf(m_other->image) + 8, reinterpret_cast<qint64>(m_other->page),
             reinterpret_cast<qint64>(this)}};
}

void TestHostileRequests::everyIdentifierWithPayloadsOfChance_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("isGet");
    QList<int> ids{-2147483647 - 1, -1, 0, 5000, 5022, 2147483647};
    for (int id = 5001; id <= 5021; ++id)
        ids.append(id);
    for (const int id : ids) {
        QTest::addRow("get %d", id) << id << true;
        QTest::addRow("set %d", id) << id << false;
    }
}

void TestHostileRequests::everyIdentifierWithPayloadsOfChance()
{
    QFETCH(int, id);
    QFETCH(bool, isGet);
    const Quiet quiet; // libraries complain of damaged pictures
    const QList<QImage> three = solidFrames({{4, 3}, {5, 6}, {7, 2}});
    const QList<Found> situations{
        {three, -1, false, false},         {three, 0, true, false}, {three, 1, true, true},
        {three.mid(0, 1), 0, true, false}, {{}, 0, true, false},
    };
    bool isNumber = false;
    const int asked = qEnvironmentVariableIntValue("REQUEST_PAYLOADS", &isNumber);
    const int payloads = isNumber ? asked : 40;
    PayloadMaker maker(quint32(id) * 2 + quint32(isGet), world());
    for (const Found &found : situations) {
        send(id, isGet, found, maker, payloads / situations.size());
        if (QTest::currentTestFailed())
            return;
    }
}

void TestHostileRequests::send(int id, bool isGet, const Found &found, PayloadMaker &maker,
                               int payloads)
{
    QStringList stopped;
    {
        const auto stage = found.stage();
        if (found.isRunning && RequestJudge::stopsFirst(id, isGet))
            (*stage)->playImage(false);
        stopped = completeState(*stage);
    }
    std::unique_ptr<Stage> stage;
    for (int i = 0; i < payloads; ++i) {
        if (!stage)
            stage = found.stage();
        const Payload payload = maker.next(id, isGet);
        const Verdict verdict = RequestJudge::verdict(
            id, isGet, payload,
            {stage->frameNames(), {handleOf(m_other->image), handleOf(stage->image)}});
        ++m_verdicts[verdict];
        const QByteArray context = payload.text().toUtf8();

        QVERIFY2(sendPayload(*stage->image, id, isGet, payload) == RequestJudge::result(id, isGet),
                 context.constData());

        const QStringList after = completeState(*stage);
        const QString difference = firstDifference(stopped, after);
        const bool mustBeSame = verdict == Verdict::ReadsOnly || verdict == Verdict::Refused;
        QVERIFY2(!mustBeSame || difference.isEmpty(), (context + difference.toUtf8()).constData());
        if (!difference.isEmpty()) {
            const QString flaw = Usability::flaw(*stage->image, stage->document);
            QVERIFY2(flaw.isEmpty(), (context + flaw.toUtf8()).constData());
        }
        // What has stopped or changed would be found differently by the next.
        if (!difference.isEmpty() || found.isRunning)
            stage.reset();
    }
}

QTEST_MAIN(TestHostileRequests)
#include "tst_hostile_requests.moc"
