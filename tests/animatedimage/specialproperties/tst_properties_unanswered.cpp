#include "framework/framework.h"
#include "host/specialpropertyids.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

#include <memory>

namespace
{

namespace Id = SpecialPropertyId;

/// A device that takes no answer.
class ClosedBuffer : public QBuffer
{
public:
    explicit ClosedBuffer(const QByteArray &request)
    {
        setData(request);
        open(QIODevice::ReadWrite);
    }

    int refused() const { return m_refused; }

protected:
    qint64 writeData(const char *, qint64) override
    {
        ++m_refused;
        return -1;
    }

private:
    int m_refused = 0;
};

/// A device that stays where it is.
class StuckBuffer : public QBuffer
{
public:
    explicit StuckBuffer(const QByteArray &request)
    {
        setData(request);
        open(QIODevice::ReadWrite);
    }

    bool seek(qint64 /*position*/) override { return false; }
};

QByteArray saved(CAnimatedImage *image)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    image->save(stream);
    return bytes;
}

QList<QImage> pictures()
{
    return solidFrames({QSize(4, 3), QSize(3, 4), QSize(5, 5)});
}

} // namespace

/// Requests whose answer the device does not take.
class TestPropertiesUnanswered : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theRequestIsCarriedOut_data();
    void theRequestIsCarriedOut();
    void nothingFollowsWhatWasRefused();
    void aBufferThatCannotBeRewoundChangesNothing_data();
    void aBufferThatCannotBeRewoundChangesNothing();
    void aFrameThatTheHostDeletesMeanwhileHasNoAnswer();
};

void TestPropertiesUnanswered::theRequestIsCarriedOut_data()
{
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("sets");
    QTest::addColumn<QByteArray>("input");
    QImage picture(2, 2, QImage::Format_ARGB32);
    picture.fill(Qt::green);
    QTest::newRow("blank") << Id::InsertBlankFrame << false << Request::packed(qint32(1));
    QTest::newRow("duplicate") << Id::DuplicateFrame << false
                               << Request::packed(qint32(0), qint32(2));
    QTest::newRow("missing file") << Id::InsertImageFile << false
                                  << Request::packed(qint32(1), QStringLiteral("none.png"));
    QTest::newRow("move") << Id::MoveFrame << true << Request::packed(qint32(0), qint32(2));
    QTest::newRow("replace") << Id::FrameImage << true
                             << Request::packed(false, qint32(1), picture);
}

void TestPropertiesUnanswered::theRequestIsCarriedOut()
{
    QFETCH(int, id);
    QFETCH(bool, sets);
    QFETCH(QByteArray, input);
    Stage answered(pictures());
    const QByteArray before = saved(answered.image);
    Request request(input);
    if (sets)
        request.set(answered.image, id);
    else
        request.get(answered.image, id);
    QVERIFY(saved(answered.image) != before);
    // The log hears of all objects.
    const QStringList heard = answered.log.entries();

    Stage stage(pictures());
    QCOMPARE(saved(stage.image), before);
    ClosedBuffer device(input);
    QDataStream stream(&device);
    if (sets)
        stage->SetSpecialProperty(id, stream, false);
    else
        stage->GetSpecialProperty(id, stream);
    QCOMPARE(saved(stage.image), saved(answered.image));
    QCOMPARE(stage.log.entries(), heard);
    QCOMPARE(stream.status(), QDataStream::WriteFailed);
}

void TestPropertiesUnanswered::nothingFollowsWhatWasRefused()
{
    Stage stage(pictures());
    ClosedBuffer device(Request::packed(qint32(0), qint32(2)));
    QDataStream stream(&device);
    stage->GetSpecialProperty(Id::DuplicateFrame, stream);
    // The place of the new frame.
    QCOMPARE(device.refused(), 1);
}

void TestPropertiesUnanswered::aBufferThatCannotBeRewoundChangesNothing_data()
{
    theRequestIsCarriedOut_data();
    QTest::newRow("thumbnails") << Id::Thumbnails << false << QByteArray("as it was");
    QTest::newRow("name") << Id::FrameName << false << Request::packed(qint32(1));
    QTest::newRow("picture") << Id::FrameImage << false << Request::packed(qint32(1));
    QTest::newRow("replace all") << Id::ReplaceAllFrames << false
                                 << Request::packed(QStringLiteral("none.png"));
}

void TestPropertiesUnanswered::aBufferThatCannotBeRewoundChangesNothing()
{
    QFETCH(int, id);
    QFETCH(bool, sets);
    QFETCH(QByteArray, input);
    Stage stage(pictures());
    const QByteArray before = saved(stage.image);
    StuckBuffer device(input);
    QDataStream stream(&device);
    if (sets)
        stage->SetSpecialProperty(id, stream, false);
    else
        stage->GetSpecialProperty(id, stream);
    QCOMPARE(saved(stage.image), before);
    QCOMPARE(device.data(), input);
}

void TestPropertiesUnanswered::aFrameThatTheHostDeletesMeanwhileHasNoAnswer()
{
    Stage stage(pictures());
    const Notifier *notifier = Framework::instance().notifier();
    const auto heard = std::make_shared<int>(0);
    const QObject listener;
    connect(notifier, &Notifier::propertyChanged, &listener, [image = stage.image, heard] {
        if (++*heard == 1)
            Request(Request::packed(qint32(2))).set(image, Id::DeleteFrame);
    });
    QImage picture(2, 2, QImage::Format_ARGB32);
    picture.fill(Qt::green);
    const QByteArray input = Request::packed(false, qint32(2), picture);
    Request request(input);
    request.set(stage.image, Id::FrameImage);
    QVERIFY(*heard > 0);
    QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("f_1"), QStringLiteral("f_2")}));
    QCOMPARE(request.bytes(), input);
}

QTEST_MAIN(TestPropertiesUnanswered)
#include "tst_properties_unanswered.moc"
