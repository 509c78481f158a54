#include "host/specialpropertyids.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

const QImage corner = Pictures::fromText({"##..", "#...", "...."});
const QImage stripe = Pictures::fromText({"....", "####", "...."});

/// Films of the same pictures: in one the frames in a row share their pixels, in the other each
/// frame has its own, so that each is measured for itself.
QList<QImage> sharedFrames()
{
    return {corner, corner, corner, stripe, stripe, QImage(), QImage(), corner};
}

QList<QImage> separateFrames()
{
    QList<QImage> frames;
    const auto pictures = sharedFrames();
    for (const QImage &frame : pictures)
        frames.append(frame.copy());
    return frames;
}

} // namespace

/// Frames that share their pixels share the work of measuring, and nothing of it can be seen.
class TestRegionShared : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void framesAreMeasuredAsIfEachWereAlone();
    void aResizedObjectStretchesThemAll();
    void aMirroredObjectMirrorsThemAll();
    void aReplacedPictureHasARegionOfItsOwn();
    void aFrameThatWasNeverMeasuredIsMeasured();
    void repeatsShareTheirRectangles();

private:
    void verifyAlike();

    std::unique_ptr<Stage> m_shared;
    std::unique_ptr<Stage> m_separate;
};

void TestRegionShared::init()
{
    m_shared = std::make_unique<Stage>(sharedFrames());
    m_separate = std::make_unique<Stage>(separateFrames());
    for (Stage *stage : {m_shared.get(), m_separate.get()})
        (*stage)->updateRegion(true);
}

void TestRegionShared::verifyAlike()
{
    const QList<CAnimatedPortrait> &shared = m_shared->probe.frames();
    const QList<CAnimatedPortrait> &separate = m_separate->probe.frames();
    QCOMPARE(shared.size(), separate.size());
    for (int i = 0; i < shared.size(); ++i) {
        QCOMPARE(shared.at(i).rects, separate.at(i).rects);
        QCOMPARE(shared.at(i).regionSize, separate.at(i).regionSize);
        QCOMPARE(shared.at(i).path, separate.at(i).path);
    }
}

void TestRegionShared::framesAreMeasuredAsIfEachWereAlone()
{
    verifyAlike();
    QVERIFY(!m_shared->probe.frame(0).rects.isEmpty());
    QVERIFY(m_shared->probe.frame(3).rects != m_shared->probe.frame(2).rects);
    QCOMPARE(m_shared->probe.frame(5).rects.size(), 0);
    QCOMPARE(m_shared->probe.frame(7).rects, m_shared->probe.frame(0).rects);
}

void TestRegionShared::aResizedObjectStretchesThemAll()
{
    for (Stage *stage : {m_shared.get(), m_separate.get()})
        (*stage)->setSize(QSizeF(40, 15), false, true);
    verifyAlike();
    QCOMPARE(m_shared->probe.frame(4).path.boundingRect(), QRectF(0, 5, 30, 5));
}

void TestRegionShared::aMirroredObjectMirrorsThemAll()
{
    for (Stage *stage : {m_shared.get(), m_separate.get()}) {
        (*stage)->setMirror(true, true);
        (*stage)->setFlip(true, true);
    }
    verifyAlike();
    for (Stage *stage : {m_shared.get(), m_separate.get()})
        (*stage)->setMirror(false, true);
    verifyAlike();
}

void TestRegionShared::aReplacedPictureHasARegionOfItsOwn()
{
    for (Stage *stage : {m_shared.get(), m_separate.get()}) {
        const bool unused = false;
        Request(Request::packed(unused, qint32(1), stripe))
            .set(stage->image, SpecialPropertyId::FrameImage);
    }
    verifyAlike();
    QCOMPARE(m_shared->probe.frame(1).rects, m_shared->probe.frame(3).rects);
    QCOMPARE(m_shared->probe.frame(2).rects, m_shared->probe.frame(0).rects);
    for (Stage *stage : {m_shared.get(), m_separate.get()})
        (*stage)->updateRegion(false);
    verifyAlike();
}

void TestRegionShared::aFrameThatWasNeverMeasuredIsMeasured()
{
    for (Stage *stage : {m_shared.get(), m_separate.get()}) {
        for (int index : {1, 4}) {
            CAnimatedPortrait &frame = stage->probe.frame(index);
            frame = CAnimatedPortrait(frame.name, frame.image);
        }
        (*stage)->updateRegion(false);
    }
    verifyAlike();
    QVERIFY(!m_shared->probe.frame(4).rects.isEmpty());
}

void TestRegionShared::repeatsShareTheirRectangles()
{
    // A film may repeat a picture a thousand times.
    QVERIFY(m_shared->probe.frame(2).rects.isSharedWith(m_shared->probe.frame(0).rects));
    m_shared->image->setSize(QSizeF(80, 30), false, true);
    QVERIFY(m_shared->probe.frame(2).rects.isSharedWith(m_shared->probe.frame(0).rects));
    QVERIFY(!m_separate->probe.frame(2).rects.isSharedWith(m_separate->probe.frame(0).rects));
}

QTEST_MAIN(TestRegionShared)
#include "tst_region_shared.moc"
