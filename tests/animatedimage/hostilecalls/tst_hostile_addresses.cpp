#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/animatedimage/hostilecalls/completestate.h"
#include "tests/support/request.h"

#include <QtCore/QLoggingCategory>
#include <QtCore/QRandomGenerator>
#include <QtCore/QSet>
#include <QtTest/QTest>

#include <array>
#include <limits>
#include <memory>
#include <new>
#include <sys/mman.h>

namespace
{

qint64 handleOf(CGDRootObject *object)
{
    return reinterpret_cast<qint64>(object);
}

qint64 addressOf(const void *memory)
{
    return reinterpret_cast<qint64>(memory);
}

void aFunction() {}

/// Memory in which an object can live, and which nobody can read afterwards: who does, ends the
/// process, with sanitizers or without.
class GuardedPlace
{
public:
    GuardedPlace()
        : m_memory(
              ::mmap(nullptr, Size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0))
    {
    }
    ~GuardedPlace() { ::munmap(m_memory, Size); }
    Q_DISABLE_COPY(GuardedPlace)

    /// The address that an object had, whose memory is now guarded.
    qint64 addressOfADeadObject()
    {
        static_assert(sizeof(CAnimatedImage) < Size);
        auto *image = new (m_memory) CAnimatedImage(1, true, nullptr);
        const qint64 address = handleOf(image);
        image->~CAnimatedImage();
        return ::mprotect(m_memory, Size, PROT_NONE) == 0 ? address : 0;
    }

private:
    static constexpr std::size_t Size = 65536;
    void *m_memory;
};

} // namespace

/// An animated image is asked to copy what is at an address. Nothing is read through an address
/// that is not one of a live animated image.
class TestHostileAddresses : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void aHundredThousandAddressesAreRefused();
    void anAddressIsNotKnownAnyMoreWhileItsObjectDies();
    void addressesAroundALiveObjectAreRefused();
    void aMemoryThatMayNotBeReadIsNotRead();
    void anAddressThatIsUsedAgainIsThatOfTheNewObject();

private:
    /// What the address leads to counts alone: the frames before, or those and one more.
    int framesAfterCopying(qint64 address);
    qint64 addressOfChance(QRandomGenerator &random);
    void checkState();

    std::unique_ptr<Stage> m_stage;
    std::unique_ptr<Stage> m_other;
    QSet<qint64> m_dead;
    QStringList m_before;
};

void TestHostileAddresses::initTestCase()
{
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
}

void TestHostileAddresses::init()
{
    m_other = std::make_unique<Stage>(solidFrames({{8, 6}}));
    m_stage = std::make_unique<Stage>(solidFrames({{4, 3}, {5, 6}}));
    // Some of these are those of live objects again.
    m_dead.clear();
    QList<CAnimatedImage *> objects;
    for (int i = 0; i < 1000; ++i)
        objects.append(new CAnimatedImage(i, true, nullptr));
    for (CAnimatedImage *object : qAsConst(objects)) {
        m_dead.insert(handleOf(object));
        object->Release();
    }
    m_before = completeState(*m_stage);
}

void TestHostileAddresses::cleanup()
{
    m_stage.reset();
    m_other.reset();
}

int TestHostileAddresses::framesAfterCopying(qint64 address)
{
    Request request(Request::packed(address));
    request.set(m_stage->image, SpecialPropertyId::CopyFromObject);
    return m_stage->probe.storedFrames().size();
}

void TestHostileAddresses::checkState()
{
    const QString difference = firstDifference(m_before, completeState(*m_stage));
    QVERIFY2(difference.isEmpty(), qPrintable(difference));
}

qint64 TestHostileAddresses::addressOfChance(QRandomGenerator &random)
{
    const qint64 own = handleOf(m_stage->image);
    const qint64 other = handleOf(m_other->image);
    const std::array<qint64, 12> things{
        addressOf(m_stage->page),
        addressOf(&m_stage->document),
        addressOf(m_stage->probe.timer()),
        addressOf(this),
        addressOf("text"),
        addressOf(&random),
        reinterpret_cast<qint64>(&aFunction),
        addressOf(*reinterpret_cast<void **>(m_other->image)),
        addressOf(Framework::instance().undoStack()),
        addressOf(m_other->image),
        addressOf(static_cast<QGraphicsItem *>(m_other->image)),
        addressOf(m_other->probe.storedFrames().constFirst().image.constBits())};
    const auto chance = qint64(random.generate64());
    switch (random.bounded(8)) {
    case 0:
        return chance;
    case 1:
        return random.bounded(1 << 16);
    case 2: // close to a live one, also not on a boundary
        return (random.bounded(2) == 0 ? own : other) + random.bounded(-4096, 4096);
    case 3: // of the half of the addresses that belongs to the kernel
        return chance | std::numeric_limits<qint64>::min();
    case 4: // of none of the two halves
        return (chance & 0x0000ffffffffffff) | 0x00ff000000000000;
    case 5:
        return things.at(std::size_t(random.bounded(int(things.size()))));
    case 6: { // as high as the heap
        constexpr qint64 lower = 0xffffff;
        return (own & ~lower) | (chance & lower);
    }
    default: {
        const auto at = random.bounded(m_dead.size());
        return *std::next(m_dead.constBegin(), at) + (random.bounded(4) == 0 ? 4 : 0);
    }
    }
}

void TestHostileAddresses::aHundredThousandAddressesAreRefused()
{
    QRandomGenerator random(5016);
    const QSet<qint64> live{handleOf(m_stage->image), handleOf(m_other->image)};
    constexpr int addresses = 100000;
    int tried = 0;
    while (tried < addresses) {
        const qint64 address = addressOfChance(random);
        if (live.contains(address))
            continue;
        ++tried;
        QVERIFY2(framesAfterCopying(address) == 2, qPrintable(QString::number(address, 16)));
    }
    checkState();
    // Control: that of a live object is taken.
    QCOMPARE(framesAfterCopying(handleOf(m_other->image)), 3);
}

void TestHostileAddresses::anAddressIsNotKnownAnyMoreWhileItsObjectDies()
{
    auto *dying = new CAnimatedImage(3, true, nullptr);
    const qint64 address = handleOf(dying);
    const auto frames = std::make_shared<int>(0);
    QObject listener;
    connect(dying, &QObject::destroyed, &listener,
            [this, frames, address] { *frames = framesAfterCopying(address); });
    dying->Release();
    QCOMPARE(*frames, 2);
    checkState();
}

void TestHostileAddresses::addressesAroundALiveObjectAreRefused()
{
    const qint64 handle = handleOf(m_other->image);
    for (qint64 distance = -2048; distance <= 2048; ++distance) {
        if (distance == 0 || handle + distance == handleOf(m_stage->image))
            continue;
        QVERIFY2(framesAfterCopying(handle + distance) == 2, qPrintable(QString::number(distance)));
    }
    checkState();
}

void TestHostileAddresses::aMemoryThatMayNotBeReadIsNotRead()
{
    GuardedPlace place;
    const qint64 address = place.addressOfADeadObject();
    QVERIFY(address != 0);
    for (const qint64 distance : {0, 1, 8, -8, 64})
        QCOMPARE(framesAfterCopying(address + distance), 2);
    checkState();
}

void TestHostileAddresses::anAddressThatIsUsedAgainIsThatOfTheNewObject()
{
    alignas(CAnimatedImage) std::array<unsigned char, sizeof(CAnimatedImage)> place;
    auto *first = new (place.data()) CAnimatedImage(1, true, nullptr);
    const qint64 address = handleOf(first);
    AnimatedImageProbe(*first).frames().append({QStringLiteral("old"), QImage()});
    first->~CAnimatedImage();
    QCOMPARE(framesAfterCopying(address), 2);
    auto *second = new (place.data()) CAnimatedImage(2, true, nullptr);
    AnimatedImageProbe(*second).frames().append({QStringLiteral("new"), QImage()});
    QCOMPARE(framesAfterCopying(address), 3);
    QCOMPARE(m_stage->probe.storedFrames().constLast().name, QStringLiteral("new"));
    second->~CAnimatedImage();
}

QTEST_MAIN(TestHostileAddresses)
#include "tst_hostile_addresses.moc"
