#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

namespace
{

QByteArray streamForm(Stage &stage)
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stage->save(stream);
    return bytes;
}

QImage pixels(const QImage &picture)
{
    return picture.convertToFormat(QImage::Format_ARGB32);
}

} // namespace

/// Pictures that the buffer of a command keeps while their frames are replaced.
class TestUndoPictures : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();

    void aPictureOfAnyFormatComesBackByteForByte_data();
    void aPictureOfAnyFormatComesBackByteForByte();
    void theUnusedBitsOfARowAreNotKept();
};

void TestUndoPictures::cleanup()
{
    Framework::instance().dropUndoCommands();
}

void TestUndoPictures::aPictureOfAnyFormatComesBackByteForByte_data()
{
    QTest::addColumn<int>("format");
    for (int format = QImage::Format_Mono; format < QImage::NImageFormats; ++format)
        QTest::addRow("format %d", format) << format;
}

void TestUndoPictures::aPictureOfAnyFormatComesBackByteForByte()
{
    QFETCH(int, format);
    QImage picture(5, 3, QImage::Format_ARGB32);
    QRandomGenerator random(7);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            picture.setPixel(x, y, random.generate());
    }
    picture = picture.convertToFormat(static_cast<QImage::Format>(format));
    picture.setText(QStringLiteral("Author"), QStringLiteral("somebody"));
    picture.setDotsPerMeterX(3001);
    Stage stage({picture});
    const QByteArray first = streamForm(stage);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("walk.png"));
    QVERIFY(Pictures::fromText({"##..", ".##.", "..##"}).save(path));

    for (int i = 0; i < 3; ++i) {
        Request request(Request::packed(path));
        QVERIFY(request.get(stage.image, 5020));
        QVERIFY(streamForm(stage) != first);
        Framework::instance().undoStack()->undo();
        QCOMPARE(pixels(stage.probe.frame(0).image), pixels(picture));
        QCOMPARE(streamForm(stage), first);
    }
}

void TestUndoPictures::theUnusedBitsOfARowAreNotKept()
{
    QList<QByteArray> kept;
    for (const uchar unused : {uchar(0x00), uchar(0x07)}) {
        QImage picture(5, 3, QImage::Format_Mono);
        picture.fill(0);
        for (int y = 0; y < picture.height(); ++y)
            *picture.scanLine(y) = uchar(0xa8 | unused);
        Stage stage({picture});
        Request(Request::packed(QStringLiteral("none.png"))).get(stage.image, 5020);
        const QUndoStack &stack = *Framework::instance().undoStack();
        QCOMPARE(stack.count(), 1);
        auto *command = const_cast<QUndoCommand *>(stack.command(0));
        kept.append(*dynamic_cast<CAnimatedUndoRedoCommand &>(*command).data_ptr());
        Framework::instance().dropUndoCommands();
    }
    QVERIFY(!kept.at(0).isEmpty());
    QCOMPARE(kept.at(1), kept.at(0));
}

QTEST_MAIN(TestUndoPictures)
#include "tst_undo_pictures.moc"
