#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtCore/QBuffer>
#include <QtCore/QDataStream>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

#include <functional>

namespace
{

/// Prepares what the call needs, which must not fail, and returns the call.
using Operation = std::function<std::function<bool()>(Stage &)>;

} // namespace

Q_DECLARE_METATYPE(Operation)

/// What operations answer when memory ends at their first allocation.
class TestAnswersWithoutMemory : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void theAnswerIsFixed_data();
    void theAnswerIsFixed();
};

void TestAnswersWithoutMemory::initTestCase()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
}

void TestAnswersWithoutMemory::theAnswerIsFixed_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<bool>("expected");
    const auto row = [](const char *name, bool expected, const Operation &operation) {
        QTest::newRow(name) << operation << expected;
    };
    row("loadFromImage", true, [](Stage &stage) {
        return [&stage, picture = Pictures::solid(8, 6, Qt::black)] {
            return stage->loadFromImage(&picture);
        };
    });
    row("loadFromFile", true, [](Stage &stage) {
        return [&stage, path = QStringLiteral("/nowhere")] { return stage->loadFromFile(path); };
    });
    row("loadFromFile of a device", true, [](Stage &stage) {
        return [&stage, path = QStringLiteral("film.gif"), device = std::make_shared<QBuffer>()] {
            return stage->loadFromFile(path, device.get());
        };
    });
    row("GetSettingJson", false, [](Stage &stage) {
        return [&stage] {
            QString json;
            return stage->GetSettingJson(json);
        };
    });
    row("SetSettingJson", false, [](Stage &stage) {
        return [&stage, json = QStringLiteral("{}")] {
            return stage->SetSettingJson(json, false, false);
        };
    });
    row("setOtherParams", false, [](Stage &stage) {
        return [&stage, key = QStringLiteral("key"), value = QVariant(1)] {
            return stage->setOtherParams(key, value);
        };
    });
    row("saveJson", false, [](Stage &stage) {
        return [&stage] {
            QJsonObject json;
            return stage->saveJson(json);
        };
    });
    row("loadJson", false, [](Stage &stage) {
        return [&stage] {
            QJsonObject json;
            return stage->loadJson(json);
        };
    });
    row("save", false, [](Stage &stage) {
        auto bytes = std::make_shared<QByteArray>();
        auto stream = std::make_shared<QDataStream>(bytes.get(), QIODevice::WriteOnly);
        return [&stage, bytes, stream] { return stage->save(*stream); };
    });
}

void TestAnswersWithoutMemory::theAnswerIsFixed()
{
    QFETCH(Operation, operation);
    QFETCH(bool, expected);
    Stage stage(solidFrames({{8, 6}}));
    const std::function<bool()> call = operation(stage);
    FailingAllocations::failAt(1);
    const bool answer = call();
    QVERIFY(FailingAllocations::stop());
    QCOMPARE(answer, expected);
}

QTEST_MAIN(TestAnswersWithoutMemory)
#include "tst_answers_without_memory.moc"
