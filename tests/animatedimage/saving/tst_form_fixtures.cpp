#include "tests/animatedimage/saving/forms.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonDocument>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

/// Orange next to a transparent pixel, as a PNG file in a stream: what Qt writes of a picture.
const char streamedPng[] = "89504e470d0a1a0a"
                           "0000000d"
                           "49484452"
                           "00000002"
                           "00000001"
                           "0806000000"
                           "f4227f8a"
                           "00000009"
                           "70485973"
                           "00000ec400000ec401"
                           "952b0e1b"
                           "00000011"
                           "49444154"
                           "089963f8dfc0f09f8181810100107c027f"
                           "6aa8e196"
                           "00000000"
                           "49454e44"
                           "ae426082";

/// The same picture as a document keeps it, with a word on its pixel format.
const char storedPng[] = "89504e470d0a1a0a"
                         "0000000d"
                         "49484452"
                         "00000002"
                         "00000001"
                         "0806000000"
                         "f4227f8a"
                         "00000009"
                         "70485973"
                         "00000ec400000ec401"
                         "952b0e1b"
                         "00000012"
                         "74455874"
                         "506978656c466f726d617400"
                         "415247423332"
                         "2bfbcf3d"
                         "00000011"
                         "49444154"
                         "08996"
                         "3f8dfc0f09f8181810100107c027f"
                         "6aa8e196"
                         "00000000"
                         "49454e44"
                         "ae426082";

const QString storedDigest = QStringLiteral("f93d0c99a76444ef8d3310712ca6c757");

/// The base's block: number 9, at (12.5, -3), 8 x 4, and the five parameters of three frames.
const char baseOfThreeFrames[] = "00000136"         // length of the block
                                 "01"               // its form
                                 "00000009"         // number of the object
                                 "01"               // editable
                                 "4029000000000000" // x 12.5
                                 "c008000000000000" // y -3
                                 "4020000000000000" // width 8
                                 "4010000000000000" // height 4
                                 "00000002"         // turns freely
                                 "4056800000000000" // by 90 degrees
                                 "01"               // mirrored
                                 "00"               // not flipped
                                 "00"               // no shadow,
                                 "00000000"         // its colour
                                 "0000000000000000" // and offset
                                 "0000000000000000"
                                 "00000005" // five parameters, by name
                                 "0000000e"
                                 "616e696d61746564424752656374" // animatedBGRect
                                 "06"                           // a text
                                 "00000014"
                                 "726563743a2d312e352c322c33302c34302e3235"
                                 "00000012"
                                 "616e696d61746564496d6167654e616d6573" // animatedImageNames
                                 "07"                                   // texts
                                 "00000003"
                                 "00000006"
                                 "77616c6b5f31" // walk_1
                                 "00000009"
                                 "22f09f90b1220a2531" // a cat in quotes, a new line, %1
                                 "00000000"
                                 "00000012"
                                 "616e696d61746564496d61676553697a6573" // animatedImageSizes
                                 "07"
                                 "00000003"
                                 "00000008"
                                 "73697a653a322c31" // size:2,1
                                 "0000000c"
                                 "73697a653a322e352c302e31" // size:2.5,0.1
                                 "0000001b"
                                 "73697a653a3130302c302e33333333333333333333333333333333"
                                 "00000014"
                                 "616e696d6174656452756e6e696e67496e646578" // animatedRunningIndex
                                 "02"                                       // a number
                                 "00000002"
                                 "0000000c"
                                 "616e696d6174656454797065" // animatedType
                                 "02"
                                 "00000001";

/// The base's block of an object without parameters: number 1, at (0, 0), of no size.
const char emptyBase[] = "0000004d"
                         "01"
                         "00000001"
                         "01"
                         "0000000000000000"
                         "0000000000000000"
                         "0000000000000000"
                         "0000000000000000"
                         "00000002"
                         "0000000000000000"
                         "00"
                         "00"
                         "00"
                         "00000000"
                         "0000000000000000"
                         "0000000000000000"
                         "00000000";

/// A reference to film.gif, in the folder of the document.
const char filmGif[] = "00000008"
                       "66696c6d2e676966";

const char gifJson[] = R"({
    "GifFileName": "film.gif",
    "ImageMirror": true,
    "IsGif": true,
    "LockScale": false,
    "ShiftInterval": 70
})";

const char settings[] = "00000046" // 70 ms
                        "00"       // ratio not kept
                        "01"       // mirrored
                        "00"       // not flipped
                        "00000003" // four times
                        "00"       // no GIF interval
                        "00";      // stopped

QByteArray inlineStream()
{
    return QByteArray::fromHex(QByteArray(baseOfThreeFrames) + "00" // no reference
                               + "00000003"                         // three pictures
                               + "00000001" + streamedPng + "00000000" + "00000001" + streamedPng +
                               settings);
}

QByteArray storeStream()
{
    const QByteArray digest = "02"
                              "00000020" +
                              storedDigest.toLatin1().toHex();
    return QByteArray::fromHex(QByteArray(baseOfThreeFrames) + "00" // no reference
                               + "00000003" + digest +
                               "00"
                               "00000000" +
                               digest + settings);
}

const char commonJson[] = R"({
    "Editable": true,
    "Flip": false,
    "ImageFlip": false,
    "ImageList": %1,
    "ImageMirror": true,
    "IsGif": false,
    "IsRunning": false,
    "LockScale": false,
    "LoopCount": 3,
    "Mirror": true,
    "ObjectId": 9,
    "OtherParams": {
        "animatedBGRect": {
            "QString": "rect:-1.5,2,30,40.25"
        },
        "animatedImageNames": {
            "QStringList": [
                "walk_1",
                "\"🐱\"\n%1",
                ""
            ]
        },
        "animatedImageSizes": {
            "QStringList": [
                "size:2,1",
                "size:2.5,0.1",
                "size:100,0.3333333333333333"
            ]
        },
        "animatedRunningIndex": {
            "int": 2
        },
        "animatedType": {
            "int": 1
        }
    },
    "Position": [
        12.5,
        -3
    ],
    "RotateDegree": 90,
    "RotateType": 2,
    "ShiftInterval": 70,
    "Size": [
        8,
        4
    ],
    "UseGifInterval": false
}
)";

QByteArray jsonWith(const QByteArray &member, const QByteArray &picture)
{
    const QByteArray entry =
        "        {\n            \"" + member + "\": \"" + picture + "\"\n        }";
    QByteArray json(commonJson);
    const QByteArray placeholder = "\"ImageList\": %1";
    return json.replace(placeholder,
                        "\"ImageList\": [\n" + entry + ",\n        null,\n" + entry + "\n    ]");
}

QByteArray inlineJson()
{
    return jsonWith("png", QByteArray::fromHex(storedPng).toBase64());
}

QByteArray storeJson()
{
    return jsonWith("digest", storedDigest.toLatin1());
}

void checkGeometry(Stage &stage)
{
    QCOMPARE(stage->getPos(), QPointF(12.5, -3));
    QCOMPARE(stage->getSize(), QSizeF(8, 4));
    QCOMPARE(stage->getRotate(), 90.0);
    QVERIFY(stage.probe.isMirrored());
    QVERIFY(!stage.probe.isFlipped());
}

void checkFrames(Stage &stage)
{
    QImage picture(2, 1, QImage::Format_ARGB32);
    picture.setPixel(0, 0, 0xffff8000);
    picture.setPixel(1, 0, 0x00000000);
    const QList<CAnimatedPortrait> &frames = stage.probe.frames();
    QCOMPARE(frames.size(), 3);
    QCOMPARE(frames.at(0).name, QStringLiteral("walk_1"));
    QCOMPARE(frames.at(0).image, picture);
    QCOMPARE(frames.at(0).size, QSizeF(2, 1));
    QCOMPARE(frames.at(1).name, QString::fromUtf8("\"\xF0\x9F\x90\xB1\"\n%1"));
    QVERIFY(frames.at(1).image.isNull());
    QCOMPARE(frames.at(1).size, QSizeF(2.5, 0.1));
    QCOMPARE(frames.at(2).name, QString());
    QCOMPARE(frames.at(2).image, picture);
    QCOMPARE(frames.at(2).size, QSizeF(100, 1.0 / 3.0));
}

void checkSettings(Stage &stage)
{
    QCOMPARE(stage.probe.animatedType(), 1);
    QCOMPARE(stage.probe.bgRect(), QRectF(-1.5, 2, 30, 40.25));
    QCOMPARE(stage.probe.runningIndex(), 2);
    QCOMPARE(stage.probe.shiftInterval(), 70);
    QVERIFY(!stage.probe.keepRatio());
    QVERIFY(stage.probe.mirror());
    QVERIFY(!stage.probe.flip());
    QCOMPARE(stage.probe.loopCount(), 3);
    QVERIFY(!stage.probe.isRunning());
}

void checkFields(Stage &stage)
{
    checkGeometry(stage);
    checkFrames(stage);
    checkSettings(stage);
}

} // namespace

/// Objects as they were saved once and for all: whoever changes what is written or read breaks
/// the documents that people have.
class TestFormFixtures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void streamsReadFieldByFieldAndWriteTheSameBytes_data()
    {
        QTest::addColumn<bool>("keepsInline");
        QTest::addColumn<QByteArray>("bytes");
        QTest::newRow("pictures inline") << true << inlineStream();
        QTest::newRow("pictures in the store") << false << storeStream();
    }

    void streamsReadFieldByFieldAndWriteTheSameBytes()
    {
        QFETCH(bool, keepsInline);
        QFETCH(QByteArray, bytes);
        Stage stage;
        prepare(stage, keepsInline);
        QVERIFY(Forms::load(*stage.image, bytes));
        checkFields(stage);
        QCOMPARE(Forms::saved(*stage.image).toHex(), bytes.toHex());
    }

    void jsonTextsReadFieldByFieldAndWriteTheSameText_data()
    {
        QTest::addColumn<bool>("keepsInline");
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("pictures inline") << true << inlineJson();
        QTest::newRow("pictures in the store") << false << storeJson();
    }

    void jsonTextsReadFieldByFieldAndWriteTheSameText()
    {
        QFETCH(bool, keepsInline);
        QFETCH(QByteArray, text);
        Stage stage;
        prepare(stage, keepsInline);
        QJsonObject json = QJsonDocument::fromJson(text).object();
        QVERIFY(stage->loadJson(json));
        checkFields(stage);
        QCOMPARE(QJsonDocument(Forms::savedJson(*stage.image)).toJson(), text);
    }

    void theStoreHoldsThePictureOnceUnderItsDigest()
    {
        Stage stage;
        prepare(stage, false);
        Forms::load(*stage.image, storeStream());
        Forms::saved(*stage.image);
        QCOMPARE(stage.document.imageStore().digests(), QList<QString>{storedDigest});
        QCOMPARE(stage.document.imageStore().png(storedDigest), QByteArray::fromHex(storedPng));
    }

    void aDocumentThatRefersToAGifTakesItsFramesFromThere_data()
    {
        QTest::addColumn<bool>("isStream");
        QTest::newRow("stream") << true;
        QTest::newRow("json") << false;
    }

    void aDocumentThatRefersToAGifTakesItsFramesFromThere()
    {
        QFETCH(bool, isStream);
        QTemporaryDir folder;
        GifBuilder(6, 5).loop(3).add(0, 12).add(1, 12).write(
            folder.filePath(QStringLiteral("film.gif")));
        Stage stage;
        stage.document.setBaseFolder(folder.path());
        if (isStream) {
            QVERIFY(Forms::load(*stage.image, QByteArray::fromHex(QByteArray(emptyBase) + "01" +
                                                                  filmGif + settings)));
        } else {
            QJsonObject json = QJsonDocument::fromJson(gifJson).object();
            QVERIFY(stage->loadJson(json));
        }
        QCOMPARE(stage.probe.frames().size(), 2);
        QCOMPARE(stage.probe.frame(0).name, QStringLiteral("film_1"));
        QCOMPARE(stage.probe.frame(1).name, QStringLiteral("film_2"));
        QCOMPARE(stage.probe.frame(1).image.size(), QSize(6, 5));
        QCOMPARE(stage.probe.shiftInterval(), 120);
        QCOMPARE(stage.probe.loopCount(), 2);
        QVERIFY(!stage.probe.keepRatio());
        QVERIFY(stage.probe.mirror());
        // Written are the frames themselves from now on.
        QCOMPARE(Forms::savedJson(*stage.image).value(QLatin1String("IsGif")), QJsonValue(false));
    }

private:
    static void prepare(Stage &stage, bool keepsInline)
    {
        stage.document.setKeepsImagesInline(keepsInline);
        if (!keepsInline)
            QVERIFY(
                stage.document.imageStore().addPng(storedDigest, QByteArray::fromHex(storedPng)));
    }
};

QTEST_MAIN(TestFormFixtures)
#include "tst_form_fixtures.moc"
