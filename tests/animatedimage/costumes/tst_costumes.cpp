#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QCryptographicHash>
#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtCore/QTemporaryDir>
#include <QtGui/QColorSpace>
#include <QtTest/QTest>

namespace
{

const QString catName = QStringLiteral("cat");

QString text(const QJsonArray &costumes, int index, const char *key)
{
    return costumes.at(index).toObject().value(QLatin1String(key)).toString();
}

double number(const QJsonArray &costumes, int index, const char *key)
{
    return costumes.at(index).toObject().value(QLatin1String(key)).toDouble(-1000.0);
}

/// A canvas of this size, transparent but for one rectangle of one colour.
QImage canvas(const QSize &size, const QRect &rect, const QColor &color)
{
    QImage image = Pictures::transparent(size.width(), size.height());
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            image.setPixelColor(x, y, color);
    }
    return image;
}

} // namespace

/// Frames as Scratch 3 costumes: pictures in a folder, and the array that describes them.
class TestCostumes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void framesAreCentredOnOneCanvasOfTwiceTheirSize();
    void aCostumeIsDescribedInSevenMembers();
    void theDigestIsThatOfTheFile();
    void sizesAreCutOffButCentresAreNot();
    void placesAreCutOffTowardsZero();
    void thePictureKeepsItsProportions();
    void theDisplaySizeCountsNotThePicture();
    void framesThatLookAlikeShareAFileAndLeaveTheTemporaryOne();
    void theTemporaryFileIsTakenByALaterFrame();
    void exportingAgainLeavesTheTemporaryFile();
    void aLeftFileServesCanvasesThatCannotBeSaved();
    void withoutFramesThereIsNothing();
    void aFrameWithoutPictureIsAnEmptyCostume();
    void aFrameOfNoSizeIsAnEmptyCostumeOnTheOthersCanvas();
    void onACanvasOfNoSizeEveryFrameStillHasItsCostume();
    void onACanvasBeyondAllMeasureToo();
    void theLargestSizeIsSoughtFromMinusOne();
    void aFolderThatCannotBeWrittenLeavesNoFiles();
    void noSeparatorIsAdded();
    void namesArriveAsTheyAre();
    void noColourChunksShiftTheColours_data();
    void noColourChunksShiftTheColours();
    void theObjectStaysAsItWas();

private:
    QString prefix() const { return m_folder->path() + QLatin1Char('/'); }
    QStringList files() const { return QDir(m_folder->path()).entryList(QDir::Files, QDir::Name); }
    QImage picture(const QJsonArray &costumes, int index) const
    {
        return QImage(prefix() + text(costumes, index, "md5ext"));
    }
    QJsonArray exported(Stage &stage) const
    {
        stage.probe.objName() = catName;
        return stage->generateCostumesCode(prefix());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestCostumes::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(m_folder->isValid());
}

void TestCostumes::framesAreCentredOnOneCanvasOfTwiceTheirSize()
{
    Stage stage(solidFrames({{100, 50}, {60, 80}}));
    const QJsonArray costumes = exported(stage);
    QCOMPARE(costumes.size(), 2);
    QCOMPARE(picture(costumes, 0), canvas({200, 160}, QRect(0, 30, 200, 100), Qt::red));
    QCOMPARE(picture(costumes, 1), canvas({200, 160}, QRect(40, 0, 120, 160), Qt::green));
    for (int i = 0; i < 2; ++i) {
        QCOMPARE(picture(costumes, i).format(), QImage::Format_ARGB32);
        QCOMPARE(number(costumes, i, "rotationCenterX"), 100.0);
        QCOMPARE(number(costumes, i, "rotationCenterY"), 80.0);
    }
    QCOMPARE(files().size(), 2);
}

void TestCostumes::aCostumeIsDescribedInSevenMembers()
{
    Stage stage(solidFrames({{10, 20}}));
    const QJsonObject costume = exported(stage).at(0).toObject();
    QCOMPARE(costume.size(), 7);
    const QString digest = costume.value(QLatin1String("assetId")).toString();
    QCOMPARE(digest.size(), 32);
    QCOMPARE(costume.value(QLatin1String("md5ext")).toString(), digest + QStringLiteral(".png"));
    QCOMPARE(costume.value(QLatin1String("name")).toString(), QStringLiteral("f_1"));
    QCOMPARE(costume.value(QLatin1String("bitmapResolution")), QJsonValue(2));
    QCOMPARE(costume.value(QLatin1String("dataFormat")).toString(), QStringLiteral("png"));
    QCOMPARE(costume.value(QLatin1String("rotationCenterX")), QJsonValue(10.0));
    QCOMPARE(costume.value(QLatin1String("rotationCenterY")), QJsonValue(20.0));
}

void TestCostumes::theDigestIsThatOfTheFile()
{
    Stage stage(solidFrames({{10, 20}}));
    const QString digest = text(exported(stage), 0, "assetId");
    QFile file(prefix() + digest + QStringLiteral(".png"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray hash = QCryptographicHash::hash(file.readAll(), QCryptographicHash::Md5);
    QCOMPARE(digest, QString::fromLatin1(hash.toHex()));
    QCOMPARE(digest, digest.toLower());
}

void TestCostumes::sizesAreCutOffButCentresAreNot()
{
    Stage stage(solidFrames({{30, 30}}));
    stage.probe.frame(0).size = QSizeF(10.5, 10.5);
    QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 0), canvas({21, 21}, QRect(0, 0, 21, 21), Qt::red));
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 10.5);
    QCOMPARE(number(costumes, 0, "rotationCenterY"), 10.5);

    // 2 x 10.4 = 20.8 and 2 x 9.7 = 19.4 are cut off to 20 and 19.
    stage.probe.frame(0).size = QSizeF(10.4, 9.7);
    costumes = exported(stage);
    QCOMPARE(picture(costumes, 0).size(), QSize(20, 19));
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 10.4);
    QCOMPARE(number(costumes, 0, "rotationCenterY"), 9.7);
}

void TestCostumes::placesAreCutOffTowardsZero()
{
    // (21.2 - 12) / 2 = 4.6 and (21.2 - 10) / 2 = 5.6.
    Stage stage(solidFrames({{6, 5}, {3, 3}}));
    stage.probe.frame(1).size = QSizeF(10.6, 10.6);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 0), canvas({21, 21}, QRect(4, 5, 12, 10), Qt::red));
    QCOMPARE(picture(costumes, 1), canvas({21, 21}, QRect(0, 0, 21, 21), Qt::green));
}

void TestCostumes::thePictureKeepsItsProportions()
{
    // 8 x 8 pixels shown at 20 x 10: scaled into 40 x 20 it is 20 x 20, at the place of the frame.
    Stage stage(solidFrames({{8, 8}, {30, 30}}));
    stage.probe.frame(0).size = QSizeF(20, 10);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 0), canvas({60, 60}, QRect(10, 20, 20, 20), Qt::red));
}

void TestCostumes::theDisplaySizeCountsNotThePicture()
{
    Stage stage(solidFrames({{100, 100}}));
    stage.probe.frame(0).size = QSizeF(5, 5);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 0), canvas({10, 10}, QRect(0, 0, 10, 10), Qt::red));
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 5.0);
}

void TestCostumes::framesThatLookAlikeShareAFileAndLeaveTheTemporaryOne()
{
    const QImage red = Pictures::solid(6, 6, Qt::red);
    Stage stage({red, red});
    const QJsonArray costumes = exported(stage);
    QCOMPARE(costumes.size(), 2);
    QCOMPARE(text(costumes, 0, "assetId"), text(costumes, 1, "assetId"));
    QCOMPARE(text(costumes, 0, "md5ext"), text(costumes, 1, "md5ext"));
    QCOMPARE(text(costumes, 1, "name"), QStringLiteral("f_2"));
    QStringList expected{text(costumes, 0, "md5ext"), QStringLiteral("cat.png")};
    expected.sort();
    QCOMPARE(files(), expected);
}

void TestCostumes::theTemporaryFileIsTakenByALaterFrame()
{
    const QImage red = Pictures::solid(6, 6, Qt::red);
    Stage stage({red, red, Pictures::solid(6, 6, Qt::blue)});
    const QJsonArray costumes = exported(stage);
    QStringList expected{text(costumes, 0, "md5ext"), text(costumes, 2, "md5ext")};
    expected.sort();
    QCOMPARE(files(), expected);
    QCOMPARE(picture(costumes, 2).pixelColor(0, 0), QColor(Qt::blue));
}

void TestCostumes::exportingAgainLeavesTheTemporaryFile()
{
    Stage stage(solidFrames({{6, 6}}));
    const QJsonArray first = exported(stage);
    QCOMPARE(files(), QStringList{text(first, 0, "md5ext")});
    QCOMPARE(exported(stage), first);
    QStringList expected{text(first, 0, "md5ext"), QStringLiteral("cat.png")};
    expected.sort();
    QCOMPARE(files(), expected);
}

void TestCostumes::aLeftFileServesCanvasesThatCannotBeSaved()
{
    // Nobody asks whether the save worked, so what is at the temporary path is digested and
    // renamed, once. 900150983cd24fb0d6963f7d28e17f72 is the digest of "abc".
    QFile left(prefix() + QStringLiteral("cat.png"));
    QVERIFY(left.open(QIODevice::WriteOnly));
    QCOMPARE(left.write("abc"), qint64(3));
    left.close();
    Stage stage({QImage(), QImage()});
    const QJsonArray costumes = exported(stage);
    QCOMPARE(costumes.size(), 2);
    const QString name = QStringLiteral("900150983cd24fb0d6963f7d28e17f72.png");
    QCOMPARE(text(costumes, 0, "md5ext"), name);
    QCOMPARE(text(costumes, 1, "assetId"), QString());
    QCOMPARE(files(), QStringList{name});
}

void TestCostumes::withoutFramesThereIsNothing()
{
    Stage stage;
    QCOMPARE(exported(stage), QJsonArray());
    QCOMPARE(files(), QStringList());
}

void TestCostumes::aFrameWithoutPictureIsAnEmptyCostume()
{
    Stage stage({QImage()});
    stage.probe.frame(0).size = QSizeF(7, 3);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 0), Pictures::transparent(14, 6));
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 7.0);
}

void TestCostumes::aFrameOfNoSizeIsAnEmptyCostumeOnTheOthersCanvas()
{
    Stage stage(solidFrames({{6, 6}, {4, 4}}));
    stage.probe.frame(1).size = QSizeF(0, 0);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(picture(costumes, 1), Pictures::transparent(12, 12));
}

void TestCostumes::onACanvasOfNoSizeEveryFrameStillHasItsCostume()
{
    Stage stage({QImage(), QImage()});
    const QJsonArray costumes = exported(stage);
    QCOMPARE(costumes.size(), 2);
    QCOMPARE(text(costumes, 1, "name"), QStringLiteral("f_2"));
    QCOMPARE(number(costumes, 1, "rotationCenterX"), 0.0);
    QCOMPARE(text(costumes, 1, "assetId"), QString());
    QCOMPARE(text(costumes, 1, "md5ext"), QStringLiteral(".png"));
    QCOMPARE(files(), QStringList());
}

void TestCostumes::onACanvasBeyondAllMeasureToo()
{
    Stage stage(solidFrames({{4, 4}}));
    // Twice as much is more than an int holds.
    stage.probe.frame(0).size = QSizeF(2e9, 4.0);
    const QJsonArray costumes = exported(stage);
    QCOMPARE(costumes.size(), 1);
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 2e9);
    QCOMPARE(text(costumes, 0, "assetId"), QString());
    QCOMPARE(files(), QStringList());
}

void TestCostumes::theLargestSizeIsSoughtFromMinusOne()
{
    Stage stage({QImage(), QImage()});
    stage.probe.frame(0).size = QSizeF(-0.5, -0.75);
    stage.probe.frame(1).size = QSizeF(-0.625, -0.25);
    QJsonArray costumes = exported(stage);
    QCOMPARE(number(costumes, 0, "rotationCenterX"), -0.5);
    QCOMPARE(number(costumes, 0, "rotationCenterY"), -0.25);

    stage.probe.frame(0).size = QSizeF(-3.0, -3.0);
    stage.probe.frame(1).size = QSizeF(-2.0, -2.0);
    costumes = exported(stage);
    QCOMPARE(number(costumes, 1, "rotationCenterX"), -1.0);
    QCOMPARE(number(costumes, 1, "rotationCenterY"), -1.0);
    QCOMPARE(files(), QStringList());
}

void TestCostumes::aFolderThatCannotBeWrittenLeavesNoFiles()
{
    Stage stage(solidFrames({{6, 6}}));
    stage.probe.objName() = catName;
    const QString missing = prefix() + QStringLiteral("none/");
    const QJsonArray costumes = stage->generateCostumesCode(missing);
    QCOMPARE(costumes.size(), 1);
    QCOMPARE(text(costumes, 0, "name"), QStringLiteral("f_1"));
    QCOMPARE(text(costumes, 0, "assetId"), QString());
    QCOMPARE(number(costumes, 0, "rotationCenterX"), 6.0);
    QVERIFY(!QDir(missing).exists());

    // Where not even root can make a file.
    const QJsonArray refused = stage->generateCostumesCode(QStringLiteral("/proc/"));
    QCOMPARE(refused.size(), 1);
    QCOMPARE(text(refused, 0, "assetId"), QString());
    QCOMPARE(files(), QStringList());
}

void TestCostumes::noSeparatorIsAdded()
{
    Stage stage(solidFrames({{6, 6}}));
    const QJsonArray costumes = stage->generateCostumesCode(prefix() + QStringLiteral("before-"));
    QCOMPARE(files(), QStringList{QStringLiteral("before-") + text(costumes, 0, "md5ext")});
}

void TestCostumes::namesArriveAsTheyAre()
{
    Stage stage(solidFrames({{6, 6}, {6, 6}}));
    const QString name = QString::fromUtf8("\"\xF0\x9F\x90\xB1\"\n\x01/%1");
    stage.probe.frame(0).name = name;
    stage.probe.frame(1).name = QString();
    const QJsonArray costumes = exported(stage);
    QCOMPARE(text(costumes, 0, "name"), name);
    QCOMPARE(text(costumes, 1, "name"), QString());
}

void TestCostumes::noColourChunksShiftTheColours_data()
{
    QTest::addColumn<QColorSpace>("space");
    QTest::newRow("none") << QColorSpace();
    QTest::newRow("linear") << QColorSpace(QColorSpace::SRgbLinear);
    QTest::newRow("wide") << QColorSpace(QColorSpace::AdobeRgb);
}

void TestCostumes::noColourChunksShiftTheColours()
{
    QFETCH(QColorSpace, space);
    QImage image = Pictures::solid(6, 6, QColor(200, 100, 50));
    image.setColorSpace(space);
    Stage stage({image});
    const QJsonArray costumes = exported(stage);
    QFile file(prefix() + text(costumes, 0, "md5ext"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray bytes = file.readAll();
    for (const char *chunk : {"gAMA", "cHRM", "iCCP", "sRGB"})
        QVERIFY2(!bytes.contains(chunk), chunk);
    QCOMPARE(picture(costumes, 0), canvas({12, 12}, QRect(0, 0, 12, 12), QColor(200, 100, 50)));
}

void TestCostumes::theObjectStaysAsItWas()
{
    Stage stage(solidFrames({{6, 6}, {4, 4}}));
    stage.probe.runningIndex() = 1;
    const qint64 key = stage.probe.frame(1).image.cacheKey();
    exported(stage);
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.probe.frame(1).image.cacheKey(), key);
    QCOMPARE(stage.log.entries(), QStringList());
}

QTEST_MAIN(TestCostumes)
#include "tst_costumes.moc"
