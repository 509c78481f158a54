#include "tests/animatedimage/hostilecalls/countedmemory.h"
#include "tests/animatedimage/hostilecalls/hostilepictures.h"
#include "tests/animatedimage/hostilecalls/hostilestreams.h"
#include "tests/support/quiet.h"
#include "tests/support/usability.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>
#include <QtCore/QLoggingCategory>
#include <QtTest/QTest>

#include <ctime>

/// Saved forms that lie about what follows. An object that gets no frame from one has taken little
/// memory meanwhile. HOSTILE_STREAMS=whole loads all of them, otherwise a part.
class TestHostileStreams : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void streamsThatLieTakeLittleMemory();
    void nestedJsonTakesLittleMemory();
    void picturesInJsonTakeLittleMemory();

private:
    template<typename Load>
    void check(const HostileStream &hostile, const Load &load);

    qint64 m_mostMemory = 0;
    qint64 m_mostMemoryOfJson = 0; ///< of pictures that are refused
    qint64 m_longest = 0;          ///< microseconds of the processor
    QString m_largestName;
    QString m_longestName;
    int m_refused = 0;
    int m_accepted = 0;
};

namespace
{

constexpr qint64 maxMemory = qint64(20) * 1000 * 1000;

bool isWhole()
{
    return qgetenv("HOSTILE_STREAMS") == "whole";
}

qint64 processorTime()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

/// A value in arrays or objects, so many times.
QJsonValue nested(int depth, bool inObjects)
{
    QJsonValue value(QStringLiteral("x"));
    for (int i = 0; i < depth; ++i)
        value = inObjects ? QJsonValue(QJsonObject{{QStringLiteral("png"), value}})
                          : QJsonValue(QJsonArray{value});
    return value;
}

} // namespace

void TestHostileStreams::initTestCase()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    // What is made once belongs to none of them.
    Stage stage(solidFrames({{4, 3}}));
    QVERIFY(Usability::flaw(*stage.image, stage.document).isEmpty());
}

void TestHostileStreams::cleanupTestCase()
{
    qInfo("%d gave no frame, %d gave frames", m_refused, m_accepted);
    qInfo("most memory without a frame: %lld bytes (%s)", m_mostMemory, qPrintable(m_largestName));
    qInfo("most memory for a picture in JSON without one: %lld bytes", m_mostMemoryOfJson);
    if (isWhole())
        qInfo("longest without a frame: %.1f ms of the processor (%s)", double(m_longest) / 1000,
              qPrintable(m_longestName));
}

template<typename Load>
void TestHostileStreams::check(const HostileStream &hostile, const Load &load)
{
    const QString &name = hostile.name;
    Stage stage;
    stage.document.setKeepsImagesInline(hostile.isInline);
    const qint64 before = processorTime();
    CountedMemory::start();
    const bool isLoaded = load(*stage.image);
    const qint64 memory = CountedMemory::most();
    const qint64 time = processorTime() - before;

    QVERIFY2(isLoaded, qPrintable(name));
    QVERIFY(!stage.probe.isRunning());
    if (!stage.probe.storedFrames().isEmpty()) {
        ++m_accepted;
    } else {
        ++m_refused;
        if (memory > m_mostMemory) {
            m_mostMemory = memory;
            m_largestName = name;
        }
        if (time > m_longest) {
            m_longest = time;
            m_longestName = name;
        }
        QVERIFY2(memory <= maxMemory, qPrintable(name + QStringLiteral(": %1 bytes").arg(memory)));
    }
    constexpr int usedEvery = 50;
    if ((m_accepted + m_refused) % usedEvery == 0) {
        const QString flaw = Usability::flaw(*stage.image, stage.document);
        QVERIFY2(flaw.isEmpty(), qPrintable(name + QStringLiteral(": ") + flaw));
    }
}

void TestHostileStreams::streamsThatLieTakeLittleMemory()
{
    const Quiet quiet;
    constexpr int part = 29;
    int number = 0;
    visitHostileStreams([&](const HostileStream &hostile) {
        if (QTest::currentTestFailed() || (!isWhole() && number++ % part != 0))
            return;
        check(hostile, [&hostile](CAnimatedImage &image) {
            QDataStream stream(hostile.bytes);
            stream.setVersion(hostile.version);
            return image.load(stream);
        });
    });
}

void TestHostileStreams::nestedJsonTakesLittleMemory()
{
    const Quiet quiet;
    QJsonObject good;
    Stage(solidFrames({{4, 3}, {5, 6}}))->saveJson(good);
    const QStringList members = good.keys();
    QList<QJsonValue> values{
        QJsonValue(), 1e308,        -1e308, true, QString(100000, QLatin1Char('x')),
        QJsonArray(), QJsonObject()};
    for (const int depth : {1, 2, 10, 500}) {
        for (const bool inObjects : {false, true})
            values.append(nested(depth, inObjects));
    }
    QJsonArray nulls;
    for (int i = 0; i < 1000; ++i)
        nulls.append(QJsonValue());
    values.append(nulls);
    for (const QString &member : members) {
        for (const QJsonValue &value : qAsConst(values)) {
            QJsonObject json = good;
            json[member] = value;
            check({member, QByteArray(), 0, true},
                  [&json](CAnimatedImage &image) { return image.loadJson(json); });
            if (QTest::currentTestFailed())
                return;
        }
    }
}

void TestHostileStreams::picturesInJsonTakeLittleMemory()
{
    const Quiet quiet;
    constexpr int part = 13;
    int number = 0;
    int refused = 0;
    visitHostilePictures([&](const QString &name, const QByteArray &png) {
        if (QTest::currentTestFailed() || (!isWhole() && number++ % part != 0))
            return;
        const QJsonObject picture{{QStringLiteral("png"), QString::fromLatin1(png.toBase64())}};
        QJsonObject json{{QStringLiteral("ImageList"), QJsonArray{picture}}};
        Stage stage;
        CountedMemory::start();
        const bool isLoaded = stage->loadJson(json);
        const qint64 memory = CountedMemory::most();
        QVERIFY2(isLoaded, qPrintable(name));
        const auto frames = stage.probe.storedFrames();
        if (!frames.isEmpty() && !frames.constFirst().image.isNull())
            return;
        ++refused;
        m_mostMemoryOfJson = qMax(m_mostMemoryOfJson, memory);
        QVERIFY2(memory <= maxMemory, qPrintable(name + QStringLiteral(": %1 bytes").arg(memory)));
    });
    QVERIFY(refused > 100);
}

QTEST_MAIN(TestHostileStreams)
#include "tst_hostile_streams.moc"
