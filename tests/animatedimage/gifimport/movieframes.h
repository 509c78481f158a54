#pragma once

#include "tests/support/stage.h"

#include <QtGui/QImageReader>
#include <QtGui/QMovie>
#include <QtTest/QTest>

/// What Qt alone reads from a GIF, for comparison with what the object has.
namespace MovieFrames
{

/// Fails the running test when the frames, the interval or the loop count of an object that was
/// empty before it imported the file at @p path are not those of Qt's own classes. The number of
/// frames goes into @p count.
inline void compareImported(Stage &stage, const QString &path, int &count)
{
    const QList<CAnimatedPortrait> &frames = stage.probe.frames();

    // Frame by frame: a long film must not be in memory twice.
    QMovie movie(path);
    int index = 0;
    for (; index < movie.frameCount(); ++index) {
        movie.jumpToFrame(index);
        const QImage expected = movie.currentImage();
        QVERIFY2(index < frames.size(), qPrintable(path));
        QVERIFY2(frames.at(index).image == expected,
                 qPrintable(QStringLiteral("%1, frame %2").arg(path).arg(index)));
        QCOMPARE(frames.at(index).image.format(), expected.format());
        QCOMPARE(frames.at(index).size, QSizeF(expected.size()));
    }
    QCOMPARE(frames.size(), index);
    QCOMPARE(stage.probe.loopCount(), qMax(0, movie.loopCount()) - 1);

    QImageReader reader(path);
    int interval = movie.nextFrameDelay();
    if (reader.canRead()) {
        reader.read();
        interval = reader.nextImageDelay();
    }
    QCOMPARE(stage.probe.shiftInterval(), interval);
    QCOMPARE(stage.probe.timer()->interval(), interval);
    count = frames.size();
}

/// The same of an object that imports the file here.
inline void compare(const QString &path, int &count)
{
    Stage stage;
    stage->loadFromGifFile(path);
    compareImported(stage, path, count);
}

} // namespace MovieFrames
