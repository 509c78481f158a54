#include "host/jsonutil.h"
#include "tests/animatedimage/saving/forms.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// What save() writes: the named parameters, and the bytes after the base's part.
class TestFormWriting : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anObjectWithoutFramesWritesItsSettingsAfterAnEmptyList()
    {
        Stage stage;
        // No reference, no pictures, 200 ms, ratio kept, not mirrored, not flipped, forever, no
        // GIF interval, stopped.
        QCOMPARE(Forms::savedTail(*stage.image), QByteArray("00"
                                                            "00000000"
                                                            "000000c8"
                                                            "01"
                                                            "00"
                                                            "00"
                                                            "ffffffff"
                                                            "00"
                                                            "00"));
    }

    void everySettingHasItsPlace()
    {
        Stage stage;
        stage.probe.shiftInterval() = 0x01020304;
        stage.probe.keepRatio() = false;
        stage.probe.mirror() = true;
        stage.probe.flip() = true;
        stage.probe.loopCount() = 5;
        stage.probe.isRunning() = true;
        QCOMPARE(Forms::savedTail(*stage.image), QByteArray("00"
                                                            "00000000"
                                                            "01020304"
                                                            "00"
                                                            "01"
                                                            "01"
                                                            "00000005"
                                                            "00"
                                                            "01"));
    }

    void inlinePicturesFollowTheirCountAsQtStreamsThem()
    {
        Stage stage({QImage(), Pictures::solid(1, 1, Qt::red)});
        QByteArray picture;
        QDataStream stream(&picture, QIODevice::WriteOnly);
        stream << Pictures::solid(1, 1, Qt::red);
        // Two pictures: one that is null, and one after a marker that it is there.
        QVERIFY(Forms::savedTail(*stage.image)
                    .startsWith("00"
                                "00000002"
                                "00000000" +
                                picture.toHex()));
        QVERIFY(picture.toHex().startsWith("00000001"
                                           "89504e47"));
    }

    void aStoreIsHandedThePicturesInTheirPlace()
    {
        StoredObject stored;
        stored.probe.frames() = {
            CAnimatedPortrait(QStringLiteral("a"), Pictures::solid(2, 3, Qt::blue))};
        QCOMPARE(Forms::savedTail(*stored.image), QByteArray("00"
                                                             "73746f7265" // "store"
                                                             "000000c8"
                                                             "01"
                                                             "00"
                                                             "00"
                                                             "ffffffff"
                                                             "00"
                                                             "00"));
        QVERIFY(stored.document.scratchWasEmpty);
        QCOMPARE(stored.document.written, QList<QImage>{Pictures::solid(2, 3, Qt::blue)});
    }

    void fiveNamedParametersTravelWithTheBase()
    {
        Stage stage(solidFrames({{4, 3}, {5, 6}}));
        stage.probe.frame(1).name = QStringLiteral("%1 two");
        stage.probe.frame(1).size = QSizeF(2.5, -1.0);
        stage.probe.animatedType() = 1;
        stage.probe.bgRect() = QRectF(1.0, 2.0, 3.0, 4.5);
        stage.probe.runningIndex() = 1;
        Forms::saved(*stage.image);

        const QMap<QString, QVariant> params = stage.probe.otherParams();
        IJsonUtil *util = GetJsonUtil();
        QCOMPARE(params.value(QStringLiteral("animatedImageNames")),
                 QVariant(QStringList{QStringLiteral("f_1"), QStringLiteral("%1 two")}));
        QCOMPARE(params.value(QStringLiteral("animatedImageSizes")),
                 QVariant(QStringList{util->variantToText(QSizeF(4.0, 3.0)),
                                      util->variantToText(QSizeF(2.5, -1.0))}));
        QCOMPARE(params.value(QStringLiteral("animatedType")), QVariant(1));
        QCOMPARE(params.value(QStringLiteral("animatedBGRect")),
                 QVariant(util->variantToText(QRectF(1.0, 2.0, 3.0, 4.5))));
        QCOMPARE(params.value(QStringLiteral("animatedRunningIndex")), QVariant(1));
        QCOMPARE(params.size(), 5);
    }

    void parametersOfAnEarlierSaveAreReplaced()
    {
        Stage stage(solidFrames({{4, 3}}));
        Forms::saved(*stage.image);
        stage.probe.frames().clear();
        Forms::saved(*stage.image);
        QCOMPARE(stage.probe.otherParams().value(QStringLiteral("animatedImageNames")),
                 QVariant(QStringList()));
    }

    void theStreamsOwnByteOrderAndVersionAreKept()
    {
        Stage stage;
        QByteArray bytes;
        QDataStream stream(&bytes, QIODevice::WriteOnly);
        stream.setByteOrder(QDataStream::LittleEndian);
        stream.setVersion(QDataStream::Qt_5_6);
        QVERIFY(stage->save(stream));
        QCOMPARE(stream.byteOrder(), QDataStream::LittleEndian);
        QCOMPARE(stream.version(), int(QDataStream::Qt_5_6));
        QCOMPARE(bytes.right(18).toHex(), QByteArray("00"
                                                     "00000000"
                                                     "c8000000"
                                                     "01"
                                                     "00"
                                                     "00"
                                                     "ffffffff"
                                                     "00"
                                                     "00"));
    }

    void savingChangesAndTellsNothing()
    {
        Stage stage(solidFrames({{4, 3}, {5, 6}}));
        stage.probe.runningIndex() = 1;
        Forms::saved(*stage.image);
        Forms::savedJson(*stage.image);
        QCOMPARE(stage.log.entries(), QStringList());
        QCOMPARE(stage.probe.runningIndex(), 1);
        QCOMPARE(stage.probe.frames().size(), 2);
    }
};

QTEST_MAIN(TestFormWriting)
#include "tst_form_writing.moc"
