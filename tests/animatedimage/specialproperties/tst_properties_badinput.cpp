#include "tests/animatedimage/specialproperties/knownrequests.h"
#include "tests/animatedimage/specialproperties/snapshot.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <algorithm>
#include <memory>

Q_DECLARE_METATYPE(KnownRequest)

/// Every request, truncated, damaged, and through streams that cannot be used as a host should.
class TestPropertiesBadInput : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void aRequestCutShortChangesNothing_data();
    void aRequestCutShortChangesNothing();
    void aStreamWithoutADeviceIsNotUsed_data();
    void aStreamWithoutADeviceIsNotUsed();
    void aClosedDeviceIsNotUsed_data();
    void aClosedDeviceIsNotUsed();
    void aSequentialDeviceIsReadAndAnswered_data();
    void aSequentialDeviceIsReadAndAnswered();
    void aSequentialDeviceCutShortChangesNothing_data();
    void aSequentialDeviceCutShortChangesNothing();
    void aReadOnlyDeviceGetsNoAnswerAndChangesWithoutOneWork_data();
    void aReadOnlyDeviceGetsNoAnswerAndChangesWithoutOneWork();
    void aWriteOnlyDeviceTakesAnswersToNoInput_data();
    void aWriteOnlyDeviceTakesAnswersToNoInput();
    void aBadStatusFromBeforeIsIgnored_data();
    void aBadStatusFromBeforeIsIgnored();
    void aDamagedFieldChangesNothing_data();
    void aDamagedFieldChangesNothing();
    void namesOfAMillionLettersGoThrough();
    void withoutFramesEveryRequestIsSafe_data();
    void withoutFramesEveryRequestIsSafe();

private:
    void addRequests();

    QTemporaryDir m_folder;
    QString m_file;
    std::unique_ptr<Stage> m_other;
};

namespace
{

/// A device like a pipe: what is written can be read, and there are no positions.
class Pipe : public QIODevice
{
public:
    explicit Pipe(const QByteArray &content)
        : m_content(content)
    {
        open(ReadWrite | Unbuffered);
    }

    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_content.size(); }

protected:
    qint64 readData(char *data, qint64 most) override
    {
        const int count = int(qMin(most, qint64(m_content.size())));
        std::copy_n(m_content.constData(), count, data);
        m_content.remove(0, count);
        return count;
    }
    qint64 writeData(const char *data, qint64 count) override
    {
        m_content.append(data, int(count));
        return count;
    }

private:
    QByteArray m_content;
};

/// Requests that take nothing from the stream: they do what they do with any.
bool needsNoStream(const KnownRequest &request)
{
    return request.kind != KnownRequest::Reads && request.input.isEmpty();
}

void showSecond(Stage &stage)
{
    stage.probe.runningIndex() = 1;
    stage.log.clear();
}

QList<QImage> threeFrames()
{
    return solidFrames({{4, 3}, {5, 6}, {7, 2}});
}

/// What a request does to three frames through a buffer with a good status.
struct Outcome {
    Snapshot state;
    QByteArray bytes;  ///< the whole buffer
    QByteArray answer; ///< what the request wrote, from the start of the buffer
};

Outcome outcomeOf(const KnownRequest &request)
{
    Framework::instance().dropUndoCommands();
    Stage stage(threeFrames());
    showSecond(stage);
    Request sent(request.input);
    request.send(stage.image, sent.stream());
    const bool answers = request.kind != KnownRequest::Changes;
    const int written = answers ? int(sent.position()) : 0;
    Outcome outcome{Snapshot(stage), sent.bytes(), sent.bytes().left(written)};
    Framework::instance().dropUndoCommands();
    return outcome;
}

} // namespace

void TestPropertiesBadInput::initTestCase()
{
    m_file = m_folder.filePath(QStringLiteral("walk.png"));
    QVERIFY(Pictures::solid(3, 3, Qt::yellow).save(m_file));
    m_other = std::make_unique<Stage>(solidFrames({{8, 8}}));
}

void TestPropertiesBadInput::cleanupTestCase()
{
    m_other.reset();
}

void TestPropertiesBadInput::addRequests()
{
    QTest::addColumn<KnownRequest>("request");
    const auto requests = knownRequests(m_file, m_other->image);
    for (const KnownRequest &request : requests) {
        const char *direction = request.direction == KnownRequest::Get ? "get" : "set";
        QTest::addRow("%s %d", direction, request.id) << request;
    }
}

void TestPropertiesBadInput::aRequestCutShortChangesNothing_data()
{
    addRequests();
}

void TestPropertiesBadInput::aRequestCutShortChangesNothing()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);

    // Truncated everywhere: before, inside and after each field, down to an empty buffer.
    for (int length = 0; length < request.input.size(); ++length) {
        const QByteArray input = request.input.left(length);
        Request cut(input);
        QCOMPARE(request.send(stage.image, cut.stream()), request.result);
        QVERIFY2(Snapshot(stage) == before, qPrintable(QString::number(length)));
        QCOMPARE(cut.bytes(), input);
    }

    // Whole, the same bytes do something or are answered.
    Request whole(request.input);
    QCOMPARE(request.send(stage.image, whole.stream()), request.result);
    QVERIFY(Snapshot(stage) != before || whole.bytes() != request.input);
}

void TestPropertiesBadInput::aStreamWithoutADeviceIsNotUsed_data()
{
    addRequests();
}

void TestPropertiesBadInput::aStreamWithoutADeviceIsNotUsed()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    QDataStream stream;

    QCOMPARE(request.send(stage.image, stream), request.result);

    QCOMPARE(Snapshot(stage) != before, needsNoStream(request));
}

void TestPropertiesBadInput::aClosedDeviceIsNotUsed_data()
{
    addRequests();
}

void TestPropertiesBadInput::aClosedDeviceIsNotUsed()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    QByteArray bytes = request.input;
    QBuffer closed(&bytes);
    QDataStream stream(&closed);

    QCOMPARE(request.send(stage.image, stream), request.result);

    QCOMPARE(Snapshot(stage) != before, needsNoStream(request));
    QCOMPARE(bytes, request.input);
}

void TestPropertiesBadInput::aSequentialDeviceIsReadAndAnswered_data()
{
    addRequests();
}

void TestPropertiesBadInput::aSequentialDeviceIsReadAndAnswered()
{
    QFETCH(KnownRequest, request);
    const Outcome expected = outcomeOf(request);
    Stage stage(threeFrames());
    showSecond(stage);
    Pipe pipe(request.input);
    QDataStream stream(&pipe);

    QCOMPARE(request.send(stage.image, stream), request.result);

    QVERIFY(Snapshot(stage) == expected.state);
    QCOMPARE(pipe.readAll(), expected.answer);
}

void TestPropertiesBadInput::aSequentialDeviceCutShortChangesNothing_data()
{
    addRequests();
}

void TestPropertiesBadInput::aSequentialDeviceCutShortChangesNothing()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    for (int length = 0; length < request.input.size(); ++length) {
        Pipe pipe(request.input.left(length));
        QDataStream stream(&pipe);
        QCOMPARE(request.send(stage.image, stream), request.result);
        QVERIFY2(Snapshot(stage) == before, qPrintable(QString::number(length)));
        QCOMPARE(pipe.readAll(), QByteArray());
    }
}

void TestPropertiesBadInput::aReadOnlyDeviceGetsNoAnswerAndChangesWithoutOneWork_data()
{
    addRequests();
}

void TestPropertiesBadInput::aReadOnlyDeviceGetsNoAnswerAndChangesWithoutOneWork()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    QByteArray bytes = request.input;
    QBuffer readOnly(&bytes);
    QVERIFY(readOnly.open(QIODevice::ReadOnly));
    QDataStream stream(&readOnly);

    QCOMPARE(request.send(stage.image, stream), request.result);

    QCOMPARE(Snapshot(stage) != before, request.kind == KnownRequest::Changes);
    QCOMPARE(bytes, request.input);
}

void TestPropertiesBadInput::aWriteOnlyDeviceTakesAnswersToNoInput_data()
{
    addRequests();
}

void TestPropertiesBadInput::aWriteOnlyDeviceTakesAnswersToNoInput()
{
    QFETCH(KnownRequest, request);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    QByteArray bytes = request.input;
    QBuffer writeOnly(&bytes);
    QVERIFY(writeOnly.open(QIODevice::WriteOnly | QIODevice::Append));
    QDataStream stream(&writeOnly);

    QCOMPARE(request.send(stage.image, stream), request.result);

    QCOMPARE(Snapshot(stage) != before, needsNoStream(request));
    const bool answers = request.kind == KnownRequest::Reads && request.input.isEmpty();
    QCOMPARE(bytes != request.input, answers);
}

void TestPropertiesBadInput::aBadStatusFromBeforeIsIgnored_data()
{
    addRequests();
}

void TestPropertiesBadInput::aBadStatusFromBeforeIsIgnored()
{
    QFETCH(KnownRequest, request);
    const Outcome expected = outcomeOf(request);
    Stage stage(threeFrames());
    showSecond(stage);
    Request stale(request.input);
    stale.stream().setStatus(QDataStream::ReadCorruptData);

    QCOMPARE(request.send(stage.image, stale.stream()), request.result);

    QVERIFY(Snapshot(stage) == expected.state);
    QCOMPARE(stale.bytes(), expected.bytes);
    QCOMPARE(stale.stream().status(), QDataStream::ReadCorruptData);
}

void TestPropertiesBadInput::aDamagedFieldChangesNothing_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("isGet");
    QTest::addColumn<QByteArray>("input");
    const auto add = [](const char *name, int id, bool isGet, const char *hex) {
        QTest::addRow("%s", name) << id << isGet << QByteArray::fromHex(hex);
    };
    add("rename: a text longer than the buffer", 5005, false,
        "00000000"
        "7ffffffe"
        "0061");
    add("rename: a text of half a unit", 5005, false,
        "00000000"
        "00000003"
        "006100");
    add("show: a text longer than the buffer", 5004, false,
        "fffffffe"
        "00660");
    add("insert: a path longer than the buffer", 5014, true,
        "00000000"
        "7ffffffe"
        "0061");
    add("replace all: a path longer than the buffer", 5020, true,
        "7ffffffe"
        "0061");
    add("replace: a picture that is none", 5007, false,
        "00"
        "00000000"
        "00000001"
        "6e6f6e65");
    add("replace: a marker without a picture", 5007, false,
        "00"
        "00000000"
        "00000001");
    add("replace: a signature alone", 5007, false,
        "00"
        "00000000"
        "00000001"
        "89504e470d0a1a0a");
    // A header that claims 65535 x 65535 pixels, which 25 bytes cannot hold.
    add("replace: a picture larger than its bytes", 5007, false,
        "00"
        "00000000"
        "00000001"
        "89504e470d0a1a0a"
        "0000000d49484452"
        "0000ffff0000ffff"
        "0806000000"
        "00000000");
}

void TestPropertiesBadInput::aDamagedFieldChangesNothing()
{
    QFETCH(int, id);
    QFETCH(bool, isGet);
    QFETCH(QByteArray, input);
    Stage stage(threeFrames());
    showSecond(stage);
    const Snapshot before(stage);
    Request request(input);

    QVERIFY(isGet ? request.get(stage.image, id) : request.set(stage.image, id));

    QVERIFY(Snapshot(stage) == before);
    QCOMPARE(request.bytes(), input);
}

void TestPropertiesBadInput::namesOfAMillionLettersGoThrough()
{
    const QString longName(1000000, QLatin1Char('n'));
    Stage stage(threeFrames());
    Request rename(Request::packed(qint32(2), longName));
    QVERIFY(rename.set(stage.image, 5005));
    QVERIFY(stage.probe.frame(2).name == longName);

    Request show(Request::packed(longName));
    QVERIFY(show.set(stage.image, 5004));
    QCOMPARE(stage.probe.runningIndex(), 2);

    Request name(Request::packed(qint32(2)));
    QVERIFY(name.get(stage.image, 5005));
    QCOMPARE(name.bytes().size(), 4 + 2000000);
    QCOMPARE(name.bytes().left(8).toHex(), QByteArray("001e8480006e006e"));

    Request blank(Request::packed(qint32(2)));
    QVERIFY(blank.get(stage.image, 5010));
    QVERIFY(stage.probe.frame(3).name == longName + QStringLiteral("_1"));

    // As a path it is longer than any file's.
    Request file(Request::packed(qint32(-1), longName));
    QVERIFY(file.get(stage.image, 5014));
    QVERIFY(stage.probe.frame(4).image.isNull());
    QVERIFY(stage.probe.frame(4).name == longName + QStringLiteral("_2"));
}

void TestPropertiesBadInput::withoutFramesEveryRequestIsSafe_data()
{
    addRequests();
}

void TestPropertiesBadInput::withoutFramesEveryRequestIsSafe()
{
    QFETCH(KnownRequest, request);
    // 5010, 5014, 5016 and 5020 give the object its first frame; the others find none.
    const QList<int> giving{5010, 5014, 5016, 5020};
    for (int index : {0, -1, 2, 2147483647}) {
        for (int type : {-1, 1}) {
            Stage stage;
            stage.probe.runningIndex() = index;
            stage.probe.animatedType() = type;
            Request sent(request.input);
            QCOMPARE(request.send(stage.image, sent.stream()), request.result);
            QCOMPARE(stage.probe.frames().size(), giving.contains(request.id) ? 1 : 0);
        }
    }
}

QTEST_MAIN(TestPropertiesBadInput)
#include "tst_properties_badinput.moc"
