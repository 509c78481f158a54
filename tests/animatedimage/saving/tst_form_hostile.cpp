#include "tests/animatedimage/saving/forms.h"
#include "tests/support/quiet.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonArray>
#include <QtGui/QPainter>
#include <QtTest/QTest>

#include <sys/resource.h>

namespace
{

/// The peak of the memory that this process had in use so far, in bytes.
qint64 peakMemory()
{
    rusage usage = {};
    getrusage(RUSAGE_SELF, &usage);
    return qint64(usage.ru_maxrss) * 1024;
}

QByteArray threeFrames()
{
    Stage stage(solidFrames({{7, 5}, {5, 6}, {3, 3}}));
    return Forms::saved(*stage.image);
}

} // namespace

/// Damaged and hostile input: load() answers true, without a crash, an exception, or memory that
/// the bytes present do not justify.
class TestFormHostile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStreamCutAtAnyByteIsRead()
    {
        const QByteArray bytes = threeFrames();
        for (int length = 0; length < bytes.size(); ++length) {
            Stage stage;
            QVERIFY(Forms::load(*stage.image, bytes.left(length)));
            QVERIFY(!stage.probe.isRunning());
            QVERIFY(stage.probe.frames().size() <= 3);
            show(stage);
        }
    }

    void whatIsCutOffReadsAsNothing()
    {
        const QByteArray bytes = threeFrames();
        // The last four settings: loop count, the unused entry, and the running state.
        Stage stage;
        Forms::load(*stage.image, bytes.left(bytes.size() - 6));
        QCOMPARE(stage.probe.frames().size(), 3);
        QCOMPARE(stage.probe.shiftInterval(), 200);
        QVERIFY(stage.probe.keepRatio());
        QCOMPARE(stage.probe.loopCount(), 0);
    }

    void aStreamWithAnyByteChangedIsRead()
    {
        const Quiet quiet;
        const QByteArray bytes = threeFrames();
        const qint64 before = peakMemory();
        for (int at = 0; at < bytes.size(); ++at) {
            for (const int change : {0x01, 0x80, 0xff}) {
                QByteArray damaged = bytes;
                damaged[at] = char(damaged.at(at) ^ change);
                Stage stage;
                QVERIFY(Forms::load(*stage.image, damaged));
                QVERIFY(!stage.probe.isRunning());
                show(stage);
            }
        }
        QVERIFY2(peakMemory() - before < MaxMemory, qPrintable(QString::number(peakMemory())));
    }

    void countsBeyondMeasureTakeNoMemory_data()
    {
        QTest::addColumn<QByteArray>("pictures");
        QTest::newRow("pictures") << QByteArray::fromHex("ffffffff");
        QTest::newRow("null pictures") << QByteArray::fromHex("ffffffff00000000");
        QTest::newRow("a picture without end") << QByteArray::fromHex("0000000100000001"
                                                                      "89504e470d0a1a0a");
    }

    void countsBeyondMeasureTakeNoMemory()
    {
        QFETCH(QByteArray, pictures);
        const qint64 before = peakMemory();
        Stage stage;
        Forms::saved(*stage.image);
        const QByteArray bytes =
            Forms::savedBase(*stage.image) + QByteArray::fromHex("00") + pictures;
        QVERIFY(Forms::load(*stage.image, bytes));
        QVERIFY(stage.probe.frames().isEmpty());
        QVERIFY(peakMemory() - before < MaxMemory);
    }

    void aCountOfNamesBeyondMeasureTakesNoMemory()
    {
        QByteArray bytes = threeFrames();
        const QByteArray key = "animatedImageNames\7";
        bytes.replace(bytes.indexOf(key) + key.size(), 4, QByteArray::fromHex("ffffffff"));
        const qint64 before = peakMemory();
        Stage stage;
        QVERIFY(Forms::load(*stage.image, bytes));
        // The pictures are found nevertheless, after the base's part.
        QCOMPARE(stage.probe.frames().size(), 3);
        QCOMPARE(stage.probe.frame(0).name, QString());
        QVERIFY(peakMemory() - before < MaxMemory);
    }

    void settingsBehindADamagedListAreReadWhereTheStreamStands()
    {
        Stage stage;
        Forms::saved(*stage.image);
        // One picture is announced, but its marker says that it is there and no picture follows.
        const QByteArray bytes = Forms::savedBase(*stage.image) + QByteArray::fromHex("00"
                                                                                      "00000001"
                                                                                      "00000001");
        QVERIFY(Forms::load(*stage.image, bytes));
        QVERIFY(stage.probe.frames().isEmpty());
        QCOMPARE(stage.probe.shiftInterval(), 0);
        QCOMPARE(stage.probe.loopCount(), 0);
        QVERIFY(!stage.probe.keepRatio());
    }

    void aStreamWithoutADeviceIsRead()
    {
        Stage stage;
        QDataStream stream;
        QVERIFY(stage->load(stream));
        QVERIFY(stage.probe.frames().isEmpty());
    }

    void jsonOfAnyOddKindIsRead_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("null") << QJsonValue();
        QTest::newRow("number") << QJsonValue(1e300);
        QTest::newRow("text") << QJsonValue(QStringLiteral("x"));
        QTest::newRow("array") << QJsonValue(QJsonArray{1, QJsonObject(), QJsonArray()});
        QTest::newRow("object") << QJsonValue(QJsonObject{{QStringLiteral("digest"), 1}});
        QTest::newRow("true") << QJsonValue(true);
    }

    void jsonOfAnyOddKindIsRead()
    {
        const Quiet quiet;
        QFETCH(QJsonValue, value);
        Stage from(solidFrames({{4, 3}, {5, 6}}));
        const QJsonObject good = Forms::savedJson(*from.image);
        const QStringList members = good.keys();
        for (const QString &member : members) {
            QJsonObject json = good;
            json[member] = value;
            Stage stage;
            QVERIFY(stage->loadJson(json));
            QVERIFY(!stage.probe.isRunning());
            show(stage);
        }
    }

private:
    /// Uses what was read the way a host does.
    static void show(Stage &stage)
    {
        QImage canvas(8, 8, QImage::Format_ARGB32);
        canvas.fill(Qt::white);
        QPainter painter(&canvas);
        stage->OnQPainterDraw(&painter);
        stage->shape();
        stage->boundingRect();
        stage.document.setAlternateMode(1);
        stage->OnQPainterDraw(&painter);
        stage->boundingRect();
    }

    static constexpr qint64 MaxMemory = qint64(200) * 1024 * 1024;
};

QTEST_MAIN(TestFormHostile)
#include "tst_form_hostile.moc"
