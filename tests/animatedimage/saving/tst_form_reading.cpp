#include "framework/framework.h"
#include "host/jsonutil.h"
#include "host/notificationcodes.h"
#include "tests/animatedimage/saving/forms.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <limits>

namespace
{

const QString namesKey = QStringLiteral("animatedImageNames");
const QString sizesKey = QStringLiteral("animatedImageSizes");

} // namespace

/// What load() makes of a stream.
class TestFormReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesComeBack()
    {
        Stage from(solidFrames({{4, 3}, {5, 6}}));
        from.probe.frame(1).name = QStringLiteral("second");
        from.probe.frame(1).size = QSizeF(2.5, 7.0);
        Stage to;
        QVERIFY(Forms::load(*to.image, Forms::saved(*from.image)));
        const QList<CAnimatedPortrait> &frames = to.probe.frames();
        QCOMPARE(frames.size(), 2);
        QCOMPARE(frames.at(0).name, QStringLiteral("f_1"));
        QCOMPARE(frames.at(0).image, Pictures::solid(4, 3, Qt::red));
        QCOMPARE(frames.at(0).size, QSizeF(4.0, 3.0));
        QCOMPARE(frames.at(1).name, QStringLiteral("second"));
        QCOMPARE(frames.at(1).image, Pictures::solid(5, 6, Qt::green));
        QCOMPARE(frames.at(1).size, QSizeF(2.5, 7.0));
    }

    void settingsComeBack()
    {
        Stage from(solidFrames({{4, 3}, {5, 6}}));
        from.probe.runningIndex() = 1;
        from.probe.shiftInterval() = 70;
        from.probe.keepRatio() = false;
        from.probe.mirror() = true;
        from.probe.flip() = true;
        from.probe.loopCount() = 4;
        from.probe.animatedType() = 7;
        from.probe.bgRect() = QRectF(1, 2, 3, 4);
        Stage to;
        QVERIFY(Forms::load(*to.image, Forms::saved(*from.image)));
        QCOMPARE(to.probe.runningIndex(), 1);
        QCOMPARE(to.probe.shiftInterval(), 70);
        QCOMPARE(to.probe.keepRatio(), false);
        QCOMPARE(to.probe.mirror(), true);
        QCOMPARE(to.probe.flip(), true);
        QCOMPARE(to.probe.loopCount(), 4);
        QCOMPARE(to.probe.animatedType(), 7);
        QCOMPARE(to.probe.bgRect(), QRectF(1, 2, 3, 4));
    }

    void theTimerAndTheLiveMirrorAreNotThoseThatWereSaved()
    {
        Stage from(solidFrames({{4, 3}}));
        from->setPos(QPointF(30, 40), false);
        from.probe.shiftInterval() = 70;
        from.probe.mirror() = true;
        from.probe.flip() = true;
        Stage to;
        Forms::load(*to.image, Forms::saved(*from.image));
        QCOMPARE(to->getPos(), QPointF(30, 40));
        QCOMPARE(to->getSize(), QSizeF(4, 3));
        // Saved mirror and flip are their own values: what is painted is the base's.
        QVERIFY(!to.probe.isMirrored());
        QVERIFY(!to.probe.isFlipped());
        // The timer keeps its interval until play starts.
        QCOMPARE(to.probe.timer()->interval(), 200);
    }

    void framesAreMeasuredAndTheHostHearsOfTheGeometryOnce()
    {
        Stage from(solidFrames({{4, 3}}));
        const QByteArray bytes = Forms::saved(*from.image);
        Stage to;
        Forms::load(*to.image, bytes);
        QCOMPARE(to.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 3, 3)});
        QCOMPARE(to.log.entries(), QStringList{QStringLiteral("changed 104")});
    }

    void aRunningObjectComesBackStopped()
    {
        Stage from(solidFrames({{4, 3}}));
        from.probe.isRunning() = true;
        Stage to;
        Forms::load(*to.image, Forms::saved(*from.image));
        QVERIFY(!to.probe.isRunning());
        QVERIFY(!to.probe.timer()->isActive());
    }

    void nullPicturesOfOldStreamVersionsComeBack_data()
    {
        QTest::addColumn<int>("version");
        for (const int version : {1, 3, 4, 5})
            QTest::addRow("version %d", version) << version;
    }

    void nullPicturesOfOldStreamVersionsComeBack()
    {
        QFETCH(int, version);
        Stage from({Pictures::solid(4, 3, Qt::red), QImage(), QImage()});
        from.probe.shiftInterval() = 77;
        from.probe.loopCount() = 5;
        QByteArray bytes;
        QDataStream out(&bytes, QIODevice::WriteOnly);
        out.setVersion(version);
        from->save(out);

        Stage to;
        QDataStream in(bytes);
        in.setVersion(version);
        to->load(in);
        QCOMPARE(to.probe.frames().size(), 3);
        QCOMPARE(to.probe.frame(0).image.size(), QSize(4, 3));
        QVERIFY(to.probe.frame(1).image.isNull());
        QVERIFY(to.probe.frame(2).image.isNull());
        QCOMPARE(to.probe.shiftInterval(), 77);
        QCOMPARE(to.probe.loopCount(), 5);
        QVERIFY(in.atEnd());
    }

    void theGifIntervalEntryIsIgnored()
    {
        Stage from(solidFrames({{4, 3}}));
        QByteArray bytes = Forms::saved(*from.image);
        bytes[bytes.size() - 2] = '\1';
        Stage to;
        Forms::load(*to.image, bytes);
        QCOMPARE(to.probe.shiftInterval(), 200);
        QCOMPARE(to.probe.frames().size(), 1);
        QCOMPARE(Forms::saved(*to.image).right(2).toHex(), QByteArray("0000"));
    }

    void withoutFramesNoTileIsMadeForABackground()
    {
        Stage from;
        from.probe.animatedType() = 1;
        from->setSize(QSizeF(10, 10), false, false);
        Stage to;
        to.probe.bgImage() = Pictures::solid(3, 3, Qt::blue);
        Forms::load(*to.image, Forms::saved(*from.image));
        QVERIFY(to.probe.frames().isEmpty());
        QCOMPARE(to.probe.animatedType(), 1);
        // Not even an empty one: the tile is not touched.
        QCOMPARE(to.probe.bgImage(), Pictures::solid(3, 3, Qt::blue));
    }

    void aBackgroundGetsItsTileBack()
    {
        Stage from(solidFrames({{4, 3}}));
        from.probe.animatedType() = 1;
        Stage to;
        Forms::load(*to.image, Forms::saved(*from.image));
        QCOMPARE(to.probe.bgImage().size(), QSize(8, 6));
        QCOMPARE(to.probe.bgImage().pixelColor(7, 5), QColor(Qt::red));
    }

    void loadedFramesComeBehindThoseThatAreThere()
    {
        Stage from(solidFrames({{4, 3}}));
        Stage to(solidFrames({{1, 1}}));
        Forms::load(*to.image, Forms::saved(*from.image));
        QCOMPARE(to.probe.frames().size(), 2);
        QCOMPARE(to.probe.frame(1).image.size(), QSize(4, 3));
    }

    void framesTakeTheSizeOfTheirPictureWhereNoneWasSaved_data()
    {
        const double nan = std::numeric_limits<double>::quiet_NaN();
        QTest::addColumn<QVariant>("sizes");
        QTest::addColumn<QList<QSizeF>>("expected");
        IJsonUtil *util = GetJsonUtil();
        const QString good = util->variantToText(QSizeF(9.5, 8.5));
        QTest::newRow("no sizes") << QVariant() << QList<QSizeF>{{4, 3}, {5, 6}};
        QTest::newRow("fewer sizes")
            << QVariant(QStringList{good}) << QList<QSizeF>{{9.5, 8.5}, {5, 6}};
        QTest::newRow("more sizes")
            << QVariant(QStringList{good, good, good}) << QList<QSizeF>{{9.5, 8.5}, {9.5, 8.5}};
        QTest::newRow("a width that is not a number")
            << QVariant(QStringList{util->variantToText(QSizeF(nan, 8.5)), good})
            << QList<QSizeF>{{4, 3}, {9.5, 8.5}};
        QTest::newRow("a height that is not a number")
            << QVariant(QStringList{good, util->variantToText(QSizeF(8.5, nan))})
            << QList<QSizeF>{{9.5, 8.5}, {5, 6}};
    }

    void framesTakeTheSizeOfTheirPictureWhereNoneWasSaved()
    {
        QFETCH(QVariant, sizes);
        QFETCH(QList<QSizeF>, expected);
        Stage to;
        Forms::load(*to.image, savedWith(sizesKey, sizes));
        QCOMPARE(to.probe.frames().size(), 2);
        QCOMPARE(to.probe.frame(0).size, expected.at(0));
        QCOMPARE(to.probe.frame(1).size, expected.at(1));
    }

    void aFrameWithoutANameHasAnEmptyOne()
    {
        Stage to;
        Forms::load(*to.image, savedWith(namesKey, QStringList{QStringLiteral("only")}));
        QCOMPARE(to.probe.frame(0).name, QStringLiteral("only"));
        QCOMPARE(to.probe.frame(1).name, QString());
    }

    void missingParametersReadAsNothing()
    {
        Stage from(solidFrames({{4, 3}}));
        Forms::saved(*from.image);
        from.probe.otherParams().clear();
        Stage to;
        to.probe.animatedType() = 3;
        to.probe.runningIndex() = 3;
        to.probe.bgRect() = QRectF(1, 1, 1, 1);
        Forms::load(*to.image, Forms::savedBase(*from.image) + QByteArray(18, '\0'));
        QCOMPARE(to.probe.animatedType(), 0);
        QCOMPARE(to.probe.runningIndex(), 0);
        QCOMPARE(to.probe.bgRect(), QRectF());
    }

    void aRunningIndexOutsideTheListIsKept()
    {
        Stage from(solidFrames({{4, 3}}));
        from.probe.runningIndex() = 12;
        Stage to;
        Forms::load(*to.image, Forms::saved(*from.image));
        QCOMPARE(to.probe.runningIndex(), 12);
        QCOMPARE(to->getImageSize(), QSize(0, 0));
    }

    void aReferenceToAGifTakesThePlaceOfPictures()
    {
        QTemporaryDir folder;
        StoredObject stored;
        stored.document.referredFile = folder.filePath(QStringLiteral("film.gif"));
        GifBuilder(6, 5).loop(3).add(0, 12).add(1, 12).write(stored.document.referredFile);
        // Were the host asked, it would say that pictures are inline.
        stored.document.isInline = true;

        const QByteArray bytes = Forms::savedBase(*stored.image) + QByteArray::fromHex("01") +
                                 "file" +
                                 QByteArray::fromHex("00000032"
                                                     "01"
                                                     "00"
                                                     "00"
                                                     "00000007"
                                                     "00"
                                                     "00");
        QVERIFY(Forms::load(*stored.image, bytes));
        QVERIFY(stored.document.isMarkerFound);
        QVERIFY(stored.document.scratchWasEmpty);
        QCOMPARE(stored.probe.frames().size(), 2);
        QCOMPARE(stored.probe.frame(1).name, QStringLiteral("film_2"));
        // The GIF comes after the settings, and brings its own timing.
        QCOMPARE(stored.probe.shiftInterval(), 120);
        QCOMPARE(stored.probe.loopCount(), 2);
        QCOMPARE(stored.probe.frame(0).rects, QList<QRect>{QRect(0, 0, 5, 5)});
    }

    void aStoreGivesItsPicturesBack()
    {
        StoredObject stored;
        stored.probe.frames() = {
            CAnimatedPortrait(QStringLiteral("a"), Pictures::solid(2, 3, Qt::blue))};
        const QByteArray bytes = Forms::saved(*stored.image);
        stored.probe.frames().clear();
        Forms::load(*stored.image, bytes);
        QVERIFY(stored.document.isMarkerFound);
        QCOMPARE(stored.probe.frames().size(), 1);
        QCOMPARE(stored.probe.frame(0).name, QStringLiteral("a"));
        QCOMPARE(stored.probe.frame(0).image, Pictures::solid(2, 3, Qt::blue));
    }

    void aHostThatStartsPlaybackMeanwhileIsListenedTo()
    {
        Stage from(solidFrames({{4, 3}, {4, 3}}));
        Stage to;
        const auto start = connect(Framework::instance().notifier(), &Notifier::propertyChanged,
                                   [&to](CBaseObject *, int id, const QString &) {
                                       if (id == PropertyChange::Geometry)
                                           to.probe.isRunning() = true;
                                   });
        Forms::load(*to.image, Forms::saved(*from.image));
        disconnect(start);
        QVERIFY(to.probe.isRunning());
        QVERIFY(to.probe.timer()->isActive());
        QCOMPARE(
            to.log.postedTexts(),
            QStringList{QStringLiteral(R"({"settings":[{"id":"idImagePlay","value":"true"}]})")});
    }

    void anObjectThatIsReleasedWhileItLoadsDoesNotCrash()
    {
        Stage from(solidFrames({{4, 3}}));
        const QByteArray bytes = Forms::saved(*from.image);
        Stage to;
        const auto release = connect(Framework::instance().notifier(), &Notifier::propertyChanged,
                                     [&to] { to.release(); });
        QVERIFY(Forms::load(*to.image, bytes));
        disconnect(release);
        QVERIFY(to.isReleased());
    }

private:
    /// An object of two frames, 4 x 3 and 5 x 6, with one parameter changed (or, invalid, removed).
    static QByteArray savedWith(const QString &key, const QVariant &value)
    {
        Stage from(solidFrames({{4, 3}, {5, 6}}));
        const QByteArray whole = Forms::saved(*from.image);
        const QByteArray tail = whole.mid(Forms::savedBase(*from.image).size());
        if (value.isValid())
            from.probe.otherParams().insert(key, value);
        else
            from.probe.otherParams().remove(key);
        return Forms::savedBase(*from.image) + tail;
    }
};

QTEST_MAIN(TestFormReading)
#include "tst_form_reading.moc"
