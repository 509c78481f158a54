#include "framework/document.h"
#include "tests/support/quiet.h"

#include <QtCore/QDataStream>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtGui/QColor>
#include <QtTest/QTest>

namespace
{

const QString key = QStringLiteral("ImageList");

QImage solid(const QColor &color)
{
    QImage image(3, 2, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

QList<QImage> redNullBlue()
{
    return {solid(Qt::red), QImage(), solid(Qt::blue)};
}

QByteArray streamed(Document &document, QList<QImage> images)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    QStringList names;
    QStringList files;
    document.streamImageList(stream, images, names, files, true);
    return bytes;
}

QList<QImage> read(Document &document, const QByteArray &bytes)
{
    QDataStream stream(bytes);
    QList<QImage> images{solid(Qt::green)};
    QStringList names;
    QStringList files;
    document.streamImageList(stream, images, names, files, false);
    return images;
}

QJsonObject json(Document &document, QList<QImage> images)
{
    QJsonObject object;
    document.jsonImageList(object, images, key, true);
    return object;
}

QList<QImage> read(Document &document, QJsonObject object)
{
    QList<QImage> images{solid(Qt::green)};
    document.jsonImageList(object, images, key, false);
    return images;
}

} // namespace

class TestFrameworkImages : public QObject
{
    Q_OBJECT

private Q_SLOTS:

    void picturesAreInlineAtFirst();
    void inlinePicturesNeedNoStore();
    void storedPicturesAreKeptOnceAndReferredTo();
    void bothFormsAreReadWhateverIsSet();
    void missingPicturesAreNamed();
    void picturesOfOneDigestShareTheirPixels();
    void theStreamFormIsThis();
    void theJsonFormIsThis();
    void whatFollowsTheListIsFound();
    void cutStreamsGiveFewerPictures();
    void changedBytesDoNotHarm();
    void aHugeCountTakesNoMemory();
    void anUnknownKindIsPassedOver();
    void strangeJsonGivesNoPictures_data();
    void strangeJsonGivesNoPictures();
    void whatStandsBehindAPictureDoesNoHarm();
    void aTextThatIsNotAllBase64IsNoPicture();
    void savingAgainGivesTheSame();
};

void TestFrameworkImages::picturesAreInlineAtFirst()
{
    Document document;
    QVERIFY(document.keepsImagesInline());
    document.setKeepsImagesInline(false);
    QVERIFY(!document.keepsImagesInline());
}

void TestFrameworkImages::inlinePicturesNeedNoStore()
{
    Document from;
    const QByteArray bytes = streamed(from, redNullBlue());
    const QJsonObject object = json(from, redNullBlue());
    QVERIFY(from.imageStore().digests().isEmpty());
    Document to;
    QCOMPARE(read(to, bytes), redNullBlue());
    QCOMPARE(read(to, object), redNullBlue());
    QVERIFY(to.missingPictures().isEmpty());
}

void TestFrameworkImages::storedPicturesAreKeptOnceAndReferredTo()
{
    Document document;
    document.setKeepsImagesInline(false);
    const QList<QImage> images{solid(Qt::red), solid(Qt::red), QImage(), solid(Qt::blue)};
    const QByteArray bytes = streamed(document, images);
    const QJsonObject object = json(document, images);
    const QList<QString> digests = document.imageStore().digests();
    QCOMPARE(digests.size(), 2);
    const QString red = document.imageStore().add(solid(Qt::red));
    const QString blue = document.imageStore().add(solid(Qt::blue));
    QVERIFY(red != blue && digests.contains(red) && digests.contains(blue));
    // A count of 4; each picture is a kind of one byte (2 is a digest, 0 is null), a length of four
    // bytes, and the content.
    const QByteArray digestHead = QByteArray::fromHex("0200000020");
    QCOMPARE(bytes, QByteArray::fromHex("00000004") + digestHead + red.toLatin1() + digestHead +
                        red.toLatin1() + QByteArray::fromHex("0000000000") + digestHead +
                        blue.toLatin1());
    QVERIFY(!bytes.contains("PNG"));
    const QJsonObject redJson{{QStringLiteral("digest"), red}};
    const QJsonObject blueJson{{QStringLiteral("digest"), blue}};
    QCOMPARE(object.value(key).toArray(),
             (QJsonArray{redJson, redJson, QJsonValue::Null, blueJson}));
    QCOMPARE(read(document, bytes), images);
    QCOMPARE(read(document, object), images);
    QVERIFY(document.missingPictures().isEmpty());
}

void TestFrameworkImages::bothFormsAreReadWhateverIsSet()
{
    Document document;
    const QByteArray inlineBytes = streamed(document, redNullBlue());
    const QJsonObject inlineJson = json(document, redNullBlue());
    document.setKeepsImagesInline(false);
    const QByteArray storedBytes = streamed(document, redNullBlue());
    const QJsonObject storedJson = json(document, redNullBlue());
    QCOMPARE(read(document, inlineBytes), redNullBlue());
    QCOMPARE(read(document, inlineJson), redNullBlue());
    document.setKeepsImagesInline(true);
    QCOMPARE(read(document, storedBytes), redNullBlue());
    QCOMPARE(read(document, storedJson), redNullBlue());
}

void TestFrameworkImages::missingPicturesAreNamed()
{
    Document from;
    from.setKeepsImagesInline(false);
    const QByteArray bytes = streamed(from, redNullBlue());
    const QString red = from.imageStore().add(solid(Qt::red));
    const QString blue = from.imageStore().add(solid(Qt::blue));
    Document to;
    to.imageStore().add(solid(Qt::blue));
    const QList<QImage> expected{QImage(), QImage(), solid(Qt::blue)};
    QCOMPARE(read(to, bytes), expected);
    QCOMPARE(read(to, bytes), expected);
    QCOMPARE(read(to, json(from, redNullBlue())), expected);
    QCOMPARE(to.missingPictures(), QStringList{red});
    QVERIFY(red != blue);
}

void TestFrameworkImages::picturesOfOneDigestShareTheirPixels()
{
    Document document;
    document.setKeepsImagesInline(false);
    const QList<QImage> images{solid(Qt::red), solid(Qt::blue), solid(Qt::red)};
    for (const QList<QImage> &back :
         {read(document, streamed(document, images)), read(document, json(document, images))}) {
        QCOMPARE(back, images);
        QCOMPARE(back.at(2).cacheKey(), back.at(0).cacheKey());
        QVERIFY(back.at(1).cacheKey() != back.at(0).cacheKey());
    }
}

void TestFrameworkImages::theStreamFormIsThis()
{
    Document document;
    document.setKeepsImagesInline(false);
    const QByteArray digest = document.imageStore().add(solid(Qt::red)).toLatin1();
    const QByteArray expected = QByteArray::fromHex("00000002") // two pictures
                                + QByteArray::fromHex("0200000020") + digest +
                                QByteArray::fromHex("0000000000"); // none
    QCOMPARE(streamed(document, {solid(Qt::red), QImage()}), expected);
}

void TestFrameworkImages::theJsonFormIsThis()
{
    Document document;
    const QString digest = document.imageStore().add(solid(Qt::red));
    const QString base64 = QString::fromLatin1(document.imageStore().png(digest).toBase64());
    const QJsonObject inlineJson = json(document, {solid(Qt::red), QImage()});
    const QJsonArray inlineExpected{QJsonObject{{QStringLiteral("png"), base64}}, QJsonValue::Null};
    QCOMPARE(inlineJson.value(key).toArray(), inlineExpected);
    document.setKeepsImagesInline(false);
    const QJsonArray storedExpected{QJsonObject{{QStringLiteral("digest"), digest}}};
    QCOMPARE(json(document, {solid(Qt::red)}).value(key).toArray(), storedExpected);
    QCOMPARE(json(document, {}).value(key), QJsonValue(QJsonArray()));
}

void TestFrameworkImages::whatFollowsTheListIsFound()
{
    Document document;
    QDataStream stream(streamed(document, redNullBlue()) + QByteArray::fromHex("0000002a"));
    QList<QImage> images;
    QStringList names;
    QStringList files;
    document.streamImageList(stream, images, names, files, false);
    qint32 following = 0;
    stream >> following;
    QCOMPARE(following, 42);
    QCOMPARE(stream.status(), QDataStream::Ok);
}

void TestFrameworkImages::cutStreamsGiveFewerPictures()
{
    Document document;
    const QByteArray bytes = streamed(document, redNullBlue());
    const int first =
        4 + 5 + document.imageStore().png(document.imageStore().add(solid(Qt::red))).size();
    for (int length = 0; length < bytes.size(); ++length) {
        const QList<QImage> images = read(document, bytes.left(length));
        const int expected = length < first ? 0 : length < first + 5 ? 1 : 2;
        QCOMPARE(images, redNullBlue().mid(0, expected));
    }
}

void TestFrameworkImages::changedBytesDoNotHarm()
{
    const Quiet quiet;
    Document document;
    const QByteArray bytes = streamed(document, redNullBlue());
    for (int at = 0; at < bytes.size(); ++at) {
        for (int change : {0x01, 0x80, 0xff}) {
            QByteArray damaged = bytes;
            damaged[at] = char(uchar(damaged[at]) ^ change);
            QVERIFY(read(document, damaged).size() <= 64);
        }
    }
}

void TestFrameworkImages::aHugeCountTakesNoMemory()
{
    Document document;
    QCOMPARE(read(document, QByteArray::fromHex("ffffffff")).size(), 0);
    QCOMPARE(read(document, QByteArray::fromHex("ffffffff0000000000")).size(), 1);
    QCOMPARE(read(document, QByteArray::fromHex("0000000101ffffffff89504e47")).size(), 0);
    QCOMPARE(read(document, QByteArray()).size(), 0);
}

void TestFrameworkImages::anUnknownKindIsPassedOver()
{
    Document document;
    const QByteArray two = QByteArray::fromHex("00000002"
                                               "0900000003aabbcc");
    const QByteArray red = streamed(document, {solid(Qt::red)}).mid(4);
    QCOMPARE(read(document, two + red), (QList<QImage>{QImage(), solid(Qt::red)}));
}

void TestFrameworkImages::strangeJsonGivesNoPictures_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("count");
    QTest::newRow("missing") << QByteArray("{}") << 0;
    QTest::newRow("null") << QByteArray("{\"ImageList\": null}") << 0;
    QTest::newRow("text") << QByteArray("{\"ImageList\": \"x\"}") << 0;
    QTest::newRow("object") << QByteArray("{\"ImageList\": {\"png\": \"x\"}}") << 0;
    QTest::newRow("numbers") << QByteArray("{\"ImageList\": [1, 2]}") << 2;
    QTest::newRow("empty objects") << QByteArray("{\"ImageList\": [{}, {\"png\": 1}]}") << 2;
    QTest::newRow("no base64") << QByteArray("{\"ImageList\": [{\"png\": \"***\"}]}") << 1;
    QTest::newRow("strange digest") << QByteArray("{\"ImageList\": [{\"digest\": 5}]}") << 1;
}

void TestFrameworkImages::strangeJsonGivesNoPictures()
{
    QFETCH(QByteArray, text);
    QFETCH(int, count);
    Document document;
    const QList<QImage> images = read(document, QJsonDocument::fromJson(text).object());
    QCOMPARE(images.size(), count);
    for (const QImage &image : images)
        QVERIFY(image.isNull());
}

void TestFrameworkImages::whatStandsBehindAPictureDoesNoHarm()
{
    Document document;
    QJsonObject object = json(document, {solid(Qt::red)});
    const QLatin1String png("png");
    const QByteArray text =
        object.value(key).toArray().at(0).toObject().value(png).toString().toLatin1();
    // It would be a chunk of 4 GiB.
    const QByteArray longer = QByteArray::fromBase64(text) + QByteArray(40, '\xff');
    object.insert(key, QJsonArray{QJsonObject{{png, QString::fromLatin1(longer.toBase64())}}});
    QCOMPARE(read(document, object), QList<QImage>{solid(Qt::red)});
}

void TestFrameworkImages::aTextThatIsNotAllBase64IsNoPicture()
{
    Document document;
    const QJsonObject object = json(document, {solid(Qt::red)});
    const QLatin1String png("png");
    const QString text = object.value(key).toArray().at(0).toObject().value(png).toString();
    for (const QString &wrong :
         {QStringLiteral("!") + text, text.left(8) + QLatin1Char('\n') + text.mid(8)}) {
        QJsonObject changed;
        changed.insert(key, QJsonArray{QJsonObject{{png, wrong}}});
        QCOMPARE(read(document, changed), QList<QImage>{QImage()});
    }
}

void TestFrameworkImages::savingAgainGivesTheSame()
{
    Document document;
    const QList<QImage> images{
        solid(QColor(10, 20, 30, 40)).convertToFormat(QImage::Format_ARGB32_Premultiplied),
        solid(Qt::red).convertToFormat(QImage::Format_Indexed8),
        solid(Qt::red).convertToFormat(QImage::Format_Mono), solid(Qt::white)};
    const QByteArray bytes = streamed(document, images);
    QCOMPARE(streamed(document, read(document, bytes)), bytes);
    const QJsonObject object = json(document, images);
    QCOMPARE(json(document, read(document, object)), object);
}

QTEST_MAIN(TestFrameworkImages)
#include "tst_framework_images.moc"
