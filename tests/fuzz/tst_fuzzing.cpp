#include "fuzz/fuzzing.h"
#include "tests/support/stage.h"

#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtTest/QTest>

/// What the fuzz targets do with the objects that they make.
class TestFuzzing : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileHasWhatWasWrittenLast();
    void anObjectIsPaintedPresentedAndStepped();
    void aVastObjectIsOnlyEdited();
    void anObjectIsUsedInAnyState_data();
    void anObjectIsUsedInAnyState();
};

namespace
{

/// Writes down what is asked of it.
class WatchedImage : public CAnimatedImage
{
public:
    explicit WatchedImage(Stage &stage)
        : CAnimatedImage(1, true, nullptr)
        , m_stage(stage)
    {
        stage.page->addObject(this);
        const QImage picture = solidFrames({{4, 3}}).constFirst();
        loadFromImage(&picture);
    }

    void OnQPainterDraw(QPainter *painter) override
    {
        asked << (m_stage.document.alternateMode() == 0 ? QStringLiteral("painted")
                                                        : QStringLiteral("painted presented"));
        CAnimatedImage::OnQPainterDraw(painter);
    }
    bool SetAttribute(int id, QDataStream &stream, bool flag) override
    {
        asked << QString::number(id);
        return CAnimatedImage::SetAttribute(id, stream, flag);
    }
    QPainterPath shape() const override
    {
        ++shapes;
        return CAnimatedImage::shape();
    }

    QStringList asked;
    mutable int shapes = 0;

private:
    Stage &m_stage;
};

} // namespace

void TestFuzzing::aFileHasWhatWasWrittenLast()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("input"));
    for (const QByteArray &content : {QByteArray("abc"), QByteArray("wxyz"), QByteArray("k")}) {
        Fuzzing::write(path, content);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), content);
    }
}

void TestFuzzing::anObjectIsPaintedPresentedAndStepped()
{
    Stage stage;
    auto *image = new WatchedImage(stage);
    image->asked.clear();
    Fuzzing::use(*image);
    const QStringList expected = {QStringLiteral("painted"),
                                  QStringLiteral("2804"),
                                  QStringLiteral("painted presented"),
                                  QStringLiteral("painted presented"),
                                  QStringLiteral("2704"),
                                  QStringLiteral("2702"),
                                  QStringLiteral("2705"),
                                  QStringLiteral("2705"),
                                  QStringLiteral("2705"),
                                  QStringLiteral("painted presented"),
                                  QStringLiteral("2704"),
                                  QStringLiteral("2805"),
                                  QStringLiteral("painted")};
    QCOMPARE(image->asked, expected);
    QVERIFY(image->shapes >= 5);
    QCOMPARE(stage.document.alternateMode(), 0);
}

void TestFuzzing::aVastObjectIsOnlyEdited()
{
    Stage stage;
    auto *image = new WatchedImage(stage);
    image->setSize(QSizeF(1e6, 1e6), false, false);
    image->asked.clear();
    Fuzzing::use(*image);
    QCOMPARE(image->asked, (QStringList{QStringLiteral("painted"), QStringLiteral("painted")}));
}

void TestFuzzing::anObjectIsUsedInAnyState_data()
{
    QTest::addColumn<int>("frames");
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("isRunning");
    for (const int frames : {0, 1, 3}) {
        for (const int type : {-1, 1}) {
            for (const bool isRunning : {false, true})
                QTest::addRow("%d frames, type %d%s", frames, type, isRunning ? ", playing" : "")
                    << frames << type << isRunning;
        }
    }
}

void TestFuzzing::anObjectIsUsedInAnyState()
{
    QFETCH(int, frames);
    QFETCH(int, type);
    QFETCH(bool, isRunning);
    Stage stage(solidFrames({{4, 3}, {5, 6}, {2, 2}}).mid(0, frames));
    stage.probe.animatedType() = type;
    stage.probe.runningIndex() = frames - 1;
    stage->playImage(isRunning);
    Fuzzing::use(*stage.image);
    QVERIFY(!stage.isReleased());
    QCOMPARE(stage.probe.frames().size(), frames);
    QCOMPARE(stage.document.alternateMode(), 0);
}

QTEST_MAIN(TestFuzzing)
#include "tst_fuzzing.moc"
