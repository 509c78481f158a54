#include "animatedimage/core/framelist.h"
#include "animatedimage/core/framescale.h"
#include "tests/support/pictures.h"
#include "tests/support/texts.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <limits>

using FrameList::Frames;

namespace
{

constexpr int nothing = -1;
constexpr int greatest = std::numeric_limits<int>::max();
constexpr int least = std::numeric_limits<int>::min();

/// Frames of these names, 2 x 1, 4 x 2, 6 x 3, ... pixels large.
Frames named(const QStringList &names)
{
    Frames frames;
    for (const QString &name : names) {
        const int unit = frames.size() + 1;
        frames.append({name, Pictures::solid(2 * unit, unit, Qt::red)});
    }
    return frames;
}

/// What a step of playback gives to all frames.
void scaleLike(Frames &frames, int index, const QSizeF &shownSize)
{
    FrameScale scale;
    scale.give(frames, index, shownSize);
    scale.apply(frames);
}

} // namespace

/// Which frame is meant, where a new one goes, and what it is.
class TestFrameList : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anIndexIsInTheListOrNot_data();
    void anIndexIsInTheListOrNot();
    void aStepWrapsAtBothEnds_data();
    void aStepWrapsAtBothEnds();
    void afterARemovalAnotherFrameIsShown_data();
    void afterARemovalAnotherFrameIsShown();
    void theFirstFrameOfANameIsFound();
    void aBlankFrameIsMadeAfterItsModel_data();
    void aBlankFrameIsMadeAfterItsModel();
    void aBlankFrameIsTransparentWhite();
    void aDuplicateIsNamedAfterItsTarget_data();
    void aDuplicateIsNamedAfterItsTarget();
    void aDuplicateOfNothingIsWhite();
    void withoutFramesThereIsNoDuplicate();
    void aFileGivesItsNameAndPicture();
    void everyFrameGetsTheScaleOfOne();
    void aFrameWithoutPixelsGivesNoScale();
    void sizesAreRestoredToAsManyFrames();
    void savedFramesAreJoined();
};

void TestFrameList::anIndexIsInTheListOrNot_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("count");
    QTest::addColumn<bool>("isInside");
    QTest::addColumn<int>("placeAfter");
    QTest::addColumn<int>("clamped");
    QTest::newRow("first of one") << 0 << 1 << true << 1 << 0;
    QTest::newRow("first of three") << 0 << 3 << true << 1 << 0;
    QTest::newRow("middle") << 1 << 3 << true << 2 << 1;
    QTest::newRow("last") << 2 << 3 << true << 3 << 2;
    QTest::newRow("count") << 3 << 3 << false << 3 << 2;
    QTest::newRow("before") << -1 << 3 << false << 3 << 0;
    QTest::newRow("greatest") << greatest << 3 << false << 3 << 2;
    QTest::newRow("least") << least << 3 << false << 3 << 0;
}

void TestFrameList::anIndexIsInTheListOrNot()
{
    QFETCH(int, index);
    QFETCH(int, count);
    QTEST(FrameList::holds(count, index), "isInside");
    QTEST(FrameList::placeAfter(index, count), "placeAfter");
    QTEST(FrameList::clamped(index, count), "clamped");
    QVERIFY(!FrameList::holds(0, index));
    QCOMPARE(FrameList::placeAfter(index, 0), 0);
}

void TestFrameList::aStepWrapsAtBothEnds_data()
{
    QTest::addColumn<int>("index");
    QTest::addColumn<int>("step");
    QTest::addColumn<int>("expected");
    QTest::newRow("next") << 0 << 1 << 1;
    QTest::newRow("to the last") << 1 << 1 << 2;
    QTest::newRow("after the last") << 2 << 1 << 0;
    QTest::newRow("previous") << 2 << -1 << 1;
    QTest::newRow("to the first") << 1 << -1 << 0;
    QTest::newRow("before the first") << 0 << -1 << 2;
    QTest::newRow("forwards into the list") << -1 << 1 << 0;
    QTest::newRow("backwards into the list") << 3 << -1 << 2;
    QTest::newRow("forwards from far before") << -9 << 1 << 0;
    QTest::newRow("backwards from far after") << 9 << -1 << 2;
    QTest::newRow("forwards from the greatest") << greatest << 1 << 0;
    QTest::newRow("backwards from the least") << least << -1 << 2;
}

void TestFrameList::aStepWrapsAtBothEnds()
{
    QFETCH(int, index);
    QFETCH(int, step);
    QTEST(FrameList::stepped(index, step, 3), "expected");
}

void TestFrameList::afterARemovalAnotherFrameIsShown_data()
{
    QTest::addColumn<int>("shown");
    QTest::addColumn<int>("removed");
    QTest::addColumn<int>("left");
    QTest::addColumn<int>("expected");
    // The frame after the one removed takes its place, and the one after that is shown.
    QTest::newRow("the first, shown") << 0 << 0 << 3 << 1;
    QTest::newRow("the first of two, shown") << 0 << 0 << 1 << 0;
    QTest::newRow("one in the middle, shown") << 1 << 1 << 3 << 2;
    QTest::newRow("the last but one, shown") << 2 << 2 << 3 << 0;
    QTest::newRow("the last, shown") << 3 << 3 << 3 << 0;
    QTest::newRow("before the one shown") << 1 << 0 << 3 << nothing;
    QTest::newRow("after the one shown") << 1 << 2 << 3 << nothing;
    QTest::newRow("before the last, shown") << 3 << 0 << 3 << 0;
    QTest::newRow("an index beyond the list") << 9 << 0 << 3 << 0;
    QTest::newRow("an index before the list") << -1 << 0 << 3 << nothing;
}

void TestFrameList::afterARemovalAnotherFrameIsShown()
{
    QFETCH(int, shown);
    QFETCH(int, removed);
    QFETCH(int, left);
    QTEST(FrameList::shownAfterRemoval(shown, removed, left).value_or(nothing), "expected");
}

void TestFrameList::theFirstFrameOfANameIsFound()
{
    const Frames frames = named(texts({"a", "b", "B", "b", ""}));
    QCOMPARE(FrameList::indexOf(frames, QStringLiteral("b")).value_or(nothing), 1);
    QCOMPARE(FrameList::indexOf(frames, QStringLiteral("B")).value_or(nothing), 2);
    QCOMPARE(FrameList::indexOf(frames, QString()).value_or(nothing), 4);
    QCOMPARE(FrameList::indexOf(frames, QStringLiteral("c")).value_or(nothing), nothing);
    QCOMPARE(FrameList::indexOf({}, QString()).value_or(nothing), nothing);
}

void TestFrameList::aBlankFrameIsMadeAfterItsModel_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<int>("index");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    QTest::newRow("after the first")
        << texts({"cat_1", "dog"}) << 0 << QStringLiteral("cat_2") << QSize(2, 1);
    QTest::newRow("after the second")
        << texts({"cat_1", "dog"}) << 1 << QStringLiteral("dog_1") << QSize(4, 2);
    QTest::newRow("at the end") << texts({"cat_1", "dog"}) << 2 << QStringLiteral("film_1")
                                << QSize(2, 1);
    QTest::newRow("at the end, the name taken")
        << texts({"film_1", "film_2"}) << -1 << QStringLiteral("film_3") << QSize(2, 1);
    QTest::newRow("alone") << QStringList() << 0 << QStringLiteral("film_1") << QSize(500, 500);
}

void TestFrameList::aBlankFrameIsMadeAfterItsModel()
{
    QFETCH(QStringList, names);
    QFETCH(int, index);
    QFETCH(QSize, size);
    const CAnimatedPortrait frame =
        FrameList::blankFrame(named(names), index, QStringLiteral("film"));
    QTEST(frame.name, "name");
    QCOMPARE(frame.image.size(), size);
    QCOMPARE(frame.size, QSizeF(size));
}

void TestFrameList::aBlankFrameIsTransparentWhite()
{
    const QImage image = FrameList::blankFrame(named(texts({"a"})), 0, QString()).image;
    QCOMPARE(image.format(), QImage::Format_ARGB32);
    QCOMPARE(image.pixel(0, 0), 0x00ffffffu);
    QCOMPARE(image.pixel(1, 0), 0x00ffffffu);
}

void TestFrameList::aDuplicateIsNamedAfterItsTarget_data()
{
    QTest::addColumn<int>("source");
    QTest::addColumn<int>("target");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QSize>("size");
    // Of cat, dog and dog_1.
    QTest::newRow("of cat after cat") << 0 << 0 << QStringLiteral("cat_1") << QSize(2, 1);
    QTest::newRow("of cat after dog") << 0 << 1 << QStringLiteral("dog_2") << QSize(2, 1);
    QTest::newRow("of dog after cat") << 1 << 0 << QStringLiteral("cat_1") << QSize(4, 2);
    QTest::newRow("of dog at the end") << 1 << 3 << QStringLiteral("dog_2") << QSize(4, 2);
    QTest::newRow("of nothing after cat") << 3 << 0 << QStringLiteral("cat_1") << QSize(2, 1);
    QTest::newRow("of nothing after dog") << -1 << 1 << QStringLiteral("dog_1") << QSize(2, 1);
    QTest::newRow("of nothing at the end") << -1 << -1 << QStringLiteral("film_1") << QSize(2, 1);
}

void TestFrameList::aDuplicateIsNamedAfterItsTarget()
{
    QFETCH(int, source);
    QFETCH(int, target);
    QFETCH(QSize, size);
    const auto frame = FrameList::duplicate(named(texts({"cat", "dog", "dog_1"})), source, target,
                                            QStringLiteral("film"));
    QVERIFY(frame.has_value());
    QTEST(frame->name, "name");
    QCOMPARE(frame->image.size(), size);
    QCOMPARE(frame->size, QSizeF(size));
}

void TestFrameList::aDuplicateOfNothingIsWhite()
{
    const auto frame = FrameList::duplicate(named(texts({"a"})), 1, 0, QString());
    QVERIFY(frame.has_value());
    QCOMPARE(frame->image, Pictures::solid(2, 1, Qt::white, QImage::Format_RGB32));
}

void TestFrameList::withoutFramesThereIsNoDuplicate()
{
    QVERIFY(!FrameList::duplicate({}, 0, 0, QString()).has_value());
    QVERIFY(!FrameList::duplicate({}, -1, -1, QString()).has_value());
}

void TestFrameList::aFileGivesItsNameAndPicture()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.left.png"));
    QVERIFY(Pictures::solid(3, 4, Qt::blue).save(path));
    const CAnimatedPortrait first = FrameList::frameFromFile(named(texts({"a"})), path);
    QCOMPARE(first.name, QStringLiteral("walk"));
    QCOMPARE(first.image, Pictures::solid(3, 4, Qt::blue));
    QCOMPARE(first.size, QSizeF(3.0, 4.0));
    QCOMPARE(FrameList::frameFromFile(named(texts({"walk"})), path).name, QStringLiteral("walk_1"));

    const CAnimatedPortrait missing =
        FrameList::frameFromFile({}, folder.filePath(QStringLiteral("no.png")));
    QCOMPARE(missing.name, QStringLiteral("no"));
    QVERIFY(missing.image.isNull());
    QCOMPARE(missing.size, QSizeF(0.0, 0.0));
}

void TestFrameList::everyFrameGetsTheScaleOfOne()
{
    Frames frames = named(texts({"a", "b", "c"})); // 2 x 1, 4 x 2, 6 x 3
    scaleLike(frames, 1, QSizeF(8.0, 1.0));
    QCOMPARE(FrameList::sizes(frames),
             (QList<QSizeF>{QSizeF(4.0, 0.5), QSizeF(8.0, 1.0), QSizeF(12.0, 1.5)}));
}

void TestFrameList::aFrameWithoutPixelsGivesNoScale()
{
    Frames frames = named(texts({"a"}));
    frames.append({QStringLiteral("b"), QImage()});
    scaleLike(frames, 1, QSizeF(8.0, 8.0));
    QCOMPARE(FrameList::sizes(frames), (QList<QSizeF>{QSizeF(2.0, 1.0), QSizeF(0.0, 0.0)}));
}

void TestFrameList::sizesAreRestoredToAsManyFrames()
{
    Frames frames = named(texts({"a", "b"}));
    const QList<QSizeF> before = FrameList::sizes(frames);
    FrameList::resize(frames, QSizeF(9.0, 8.0));
    QCOMPARE(FrameList::sizes(frames), (QList<QSizeF>{QSizeF(9.0, 8.0), QSizeF(9.0, 8.0)}));
    FrameList::restoreSizes(frames, before + before);
    FrameList::restoreSizes(frames, {QSizeF(1.0, 1.0)});
    QCOMPARE(FrameList::sizes(frames), (QList<QSizeF>{QSizeF(9.0, 8.0), QSizeF(9.0, 8.0)}));
    FrameList::restoreSizes(frames, before);
    QCOMPARE(FrameList::sizes(frames), before);
}

void TestFrameList::savedFramesAreJoined()
{
    constexpr double noNumber = std::numeric_limits<double>::quiet_NaN();
    const QImage picture = Pictures::solid(4, 3, Qt::red);
    const Frames frames = FrameList::joined(
        {QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c"), QStringLiteral("d")},
        {QSizeF(7.0, 8.0), QSizeF(noNumber, 8.0), QSizeF(7.0, noNumber)},
        {picture, picture, picture, picture, picture});
    QStringList names;
    QList<QSizeF> sizes;
    for (const CAnimatedPortrait &frame : frames) {
        names.append(frame.name);
        sizes.append(frame.size);
    }
    // A size that is missing or no number is that of the picture.
    const QSizeF own(4.0, 3.0);
    QCOMPARE(sizes, (QList<QSizeF>{QSizeF(7.0, 8.0), own, own, own, own}));
    QCOMPARE(names.join(QLatin1Char(' ')), QStringLiteral("a b c d "));
}

QTEST_GUILESS_MAIN(TestFrameList)
#include "tst_framelist.moc"
