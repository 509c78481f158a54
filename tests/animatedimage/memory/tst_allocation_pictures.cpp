#include "framework/framework.h"
#include "tests/animatedimage/memory/endofprocess.h"
#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/animatedimage/memory/failureoutcome.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

using FailureOutcome::Operation;
using FailureOutcome::plain;

/// One allocation fails while pictures are saved, loaded, imported or exported.
class TestAllocationPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void nothingIsThrown_data();
    void nothingIsThrown();

private:
    void writeFolder();

    QTemporaryDir m_folder;
};

namespace
{

Operation save(bool isInline)
{
    return [isInline](Stage &stage) {
        stage.document.setKeepsImagesInline(isInline);
        auto bytes = std::make_shared<QByteArray>();
        auto stream = std::make_shared<QDataStream>(bytes.get(), QIODevice::WriteOnly);
        return [&stage, bytes, stream] { stage->save(*stream); };
    };
}

Operation load(bool isInline)
{
    return [isInline](Stage &stage) {
        stage.document.setKeepsImagesInline(isInline);
        auto bytes = std::make_shared<QByteArray>();
        QDataStream output(bytes.get(), QIODevice::WriteOnly);
        stage->save(output);
        auto stream = std::make_shared<QDataStream>(*bytes);
        return [&stage, bytes, stream] { stage->load(*stream); };
    };
}

Operation saveJson(bool isInline)
{
    return [isInline](Stage &stage) {
        stage.document.setKeepsImagesInline(isInline);
        return [&stage] {
            QJsonObject json;
            stage->saveJson(json);
        };
    };
}

Operation loadJson(bool isInline)
{
    return [isInline](Stage &stage) {
        stage.document.setKeepsImagesInline(isInline);
        auto json = std::make_shared<QJsonObject>();
        stage->saveJson(*json);
        return [&stage, json] { stage->loadJson(*json); };
    };
}

Operation loadFile(const QString &path)
{
    return plain([path](Stage &stage) { stage->loadFromFile(path); });
}

Operation loadDevice(const QString &path)
{
    return [path](Stage &stage) {
        auto file = std::make_shared<QFile>(path);
        file->open(QIODevice::ReadOnly);
        return [&stage, path, file] { stage->loadFromFile(path, file.get()); };
    };
}

} // namespace

void TestAllocationPictures::writeFolder()
{
    GifBuilder(8, 6).loop(2).add(0, 12).add(1, 5).write(m_folder.filePath(QStringLiteral("a.gif")));
    QVERIFY(QDir(m_folder.path()).mkdir(QStringLiteral("costumes")));
    const QImage picture = Pictures::solid(8, 6, Qt::cyan);
    QVERIFY(picture.save(m_folder.filePath(QStringLiteral("1.png"))));
    QFile config(m_folder.filePath(QStringLiteral("config.json")));
    QVERIFY(config.open(QIODevice::WriteOnly));
    QVERIFY(config.write(R"({"ImageList":[{"filename":"1.png"}],"LoopCount":3})") > 0);
}

void TestAllocationPictures::initTestCase()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
    writeFolder();
    // Qt makes some things once, and does not recover if it fails.
    EndOfProcess::prepare();
    Stage stage(FailureOutcome::frames());
    stage->loadFromFile(m_folder.filePath(QStringLiteral("a.gif")));
    stage->loadFromFile(m_folder.path());
    QVERIFY(FailureOutcome::isUsable(stage));
}

void TestAllocationPictures::nothingIsThrown_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::newRow("save with pictures") << save(true);
    QTest::newRow("save with stored pictures") << save(false);
    QTest::newRow("load with pictures") << load(true);
    QTest::newRow("load with stored pictures") << load(false);
    QTest::newRow("saveJson with pictures") << saveJson(true);
    QTest::newRow("saveJson with stored pictures") << saveJson(false);
    QTest::newRow("loadJson with pictures") << loadJson(true);
    QTest::newRow("loadJson with stored pictures") << loadJson(false);
    const QString film = m_folder.filePath(QStringLiteral("a.gif"));
    QTest::newRow("a GIF") << loadFile(film);
    QTest::newRow("a GIF from a device") << loadDevice(film);
    QTest::newRow("a folder") << loadFile(m_folder.path());
    QTest::newRow("no file") << loadFile(m_folder.filePath(QStringLiteral("none.gif")));
    const QString costumes = m_folder.filePath(QStringLiteral("costumes/"));
    QTest::newRow("costumes") << plain(
        [costumes](Stage &stage) { stage->generateCostumesCode(costumes); });
}

void TestAllocationPictures::nothingIsThrown()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

QTEST_MAIN(TestAllocationPictures)
#include "tst_allocation_pictures.moc"
