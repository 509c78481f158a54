#include "tests/animatedimage/saving/forms.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

/// Qt's reader gives pictures named @2x to @9x a ratio of pixels to units. A frame is its pixels.
class TestObjectPixelRatio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void aGif();
    void aFolder();
    void aPictureInMemory();
    void aReplacedPicture();
    void anInsertedFile();
    void allFramesReplaced();
    void theStreamForm();
    void theJsonForm();
    void aCopy();
    void aTileAndACostume();

private:
    QString path(const char *name) const { return m_folder.filePath(QString::fromUtf8(name)); }

    QTemporaryDir m_folder;
};

namespace
{

/// A picture that says that each unit has two pixels.
QImage doubled()
{
    QImage image = Pictures::solid(8, 6, Qt::red);
    image.setDevicePixelRatio(2.0);
    return image;
}

/// Every frame is drawn pixel for pixel, and as large as it is.
void verifyUnits(Stage &stage, int count, const QSize &size)
{
    QCOMPARE(stage.probe.frames().size(), count);
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames())) {
        QCOMPARE(frame.image.devicePixelRatio(), 1.0);
        QCOMPARE(frame.image.size(), size);
        QCOMPARE(frame.size, QSizeF(size));
    }
}

/// A document that keeps pictures as they are, ratio and all.
class KeepingDocument : public StoreDocument
{
public:
    void jsonImageList(QJsonObject & /*json*/, QList<QImage> &images, const QString & /*key*/,
                       bool saving) override
    {
        if (saving)
            written = images;
        else
            images = written;
    }
};

} // namespace

void TestObjectPixelRatio::init()
{
    QVERIFY(Pictures::solid(8, 6, Qt::red).save(path("walk@2x.png")));
    // As Qt reads it, so that this test is about something.
    QCOMPARE(QImage(path("walk@2x.png")).devicePixelRatio(), 2.0);
}

void TestObjectPixelRatio::aGif()
{
    GifBuilder(8, 6).add(0, 10).add(1, 10).write(path("walk@2x.gif"));
    Stage stage;
    stage->loadFromFile(path("walk@2x.gif"));
    verifyUnits(stage, 2, QSize(8, 6));
    QCOMPARE(stage->getSize(), QSizeF(8.0, 6.0));
}

void TestObjectPixelRatio::aFolder()
{
    QFile config(path("config.json"));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write(R"({"ImageList": [{"filename": "walk@2x.png"}]})");
    config.close();
    Stage stage;
    stage->loadFromFile(m_folder.path());
    verifyUnits(stage, 1, QSize(8, 6));
}

void TestObjectPixelRatio::aPictureInMemory()
{
    const QImage image = doubled();
    Stage stage;
    stage->loadFromImage(&image);
    verifyUnits(stage, 1, QSize(8, 6));
    QCOMPARE(image.devicePixelRatio(), 2.0);
}

void TestObjectPixelRatio::aReplacedPicture()
{
    Stage stage(solidFrames({{8, 6}}));
    Request request(Request::packed(true, qint32(0), doubled()));
    QVERIFY(request.set(stage.image, 5007));
    verifyUnits(stage, 1, QSize(8, 6));
}

void TestObjectPixelRatio::anInsertedFile()
{
    Stage stage;
    Request request(Request::packed(qint32(-1), path("walk@2x.png")));
    QVERIFY(request.get(stage.image, 5014));
    verifyUnits(stage, 1, QSize(8, 6));
}

void TestObjectPixelRatio::allFramesReplaced()
{
    Stage stage(solidFrames({{8, 6}}));
    Request request(Request::packed(path("walk@2x.png")));
    QVERIFY(request.get(stage.image, 5020));
    verifyUnits(stage, 1, QSize(8, 6));
}

void TestObjectPixelRatio::theStreamForm()
{
    StoredObject from;
    from.probe.frames().append({QStringLiteral("a"), doubled()});
    const QByteArray bytes = Forms::saved(*from.image);
    Stage stage;
    stage.page->takeObject(stage.image);
    StoreDocument document;
    document.written = {doubled(), doubled()};
    document.addPage(QRectF(0, 0, 800, 600))->addObject(stage.image);
    Forms::load(*stage.image, bytes);
    QCOMPARE(stage.probe.frames().size(), 2);
    for (const CAnimatedPortrait &frame : qAsConst(stage.probe.frames()))
        QCOMPARE(frame.image.devicePixelRatio(), 1.0);
}

void TestObjectPixelRatio::theJsonForm()
{
    Stage stage;
    stage.page->takeObject(stage.image);
    KeepingDocument document;
    document.written = {doubled(), doubled()};
    document.addPage(QRectF(0, 0, 800, 600))->addObject(stage.image);
    QJsonObject json;
    stage->loadJson(json);
    verifyUnits(stage, 2, QSize(8, 6));
}

void TestObjectPixelRatio::aCopy()
{
    const QImage image = doubled();
    Stage other;
    other->loadFromImage(&image);
    Stage stage;
    const auto handle = reinterpret_cast<qint64>(static_cast<CGDRootObject *>(other.image));
    Request request(Request::packed(handle));
    request.set(stage.image, 5016);
    verifyUnits(stage, 1, QSize(8, 6));
}

void TestObjectPixelRatio::aTileAndACostume()
{
    Stage stage;
    stage->loadFromFile(m_folder.path()); // no list: nothing
    Request request(Request::packed(qint32(-1), path("walk@2x.png")));
    QVERIFY(request.get(stage.image, 5014));
    stage->setSize(QSizeF(8.0, 6.0), false, false);
    stage->generateBGImage(0);
    QCOMPARE(stage.probe.bgImage(), Pictures::solid(16, 12, Qt::red));

    const QJsonArray costumes = stage->generateCostumesCode(m_folder.path() + QLatin1Char('/'));
    const QString file = costumes.at(0).toObject().value(QStringLiteral("md5ext")).toString();
    QCOMPARE(QImage(m_folder.filePath(file)).convertToFormat(QImage::Format_ARGB32),
             Pictures::solid(16, 12, Qt::red));
}

QTEST_MAIN(TestObjectPixelRatio)
#include "tst_object_pixelratio.moc"
