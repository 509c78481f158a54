#include "tests/animatedimage/saving/forms.h"
#include "tests/support/stage.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <array>

namespace
{

constexpr quint32 seed = 20240511;

constexpr std::array<QImage::Format, 8> formats{
    QImage::Format_ARGB32,     QImage::Format_ARGB32_Premultiplied,
    QImage::Format_RGB32,      QImage::Format_Indexed8,
    QImage::Format_Grayscale8, QImage::Format_RGB888,
    QImage::Format_RGBA8888,   QImage::Format_Mono};

QImage randomPicture(QRandomGenerator &random)
{
    if (random.bounded(12) == 0)
        return {};
    QImage image(random.bounded(1, 20), random.bounded(1, 20), QImage::Format_ARGB32);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            image.setPixel(x, y, random.generate());
    }
    const QImage::Format format = formats.at(random.bounded(quint32(formats.size())));
    // The bytes after the last pixel of a row are saved too, and Qt leaves them undefined.
    const int width = format == QImage::Format_Mono ? 8 : image.width();
    return image.copy(0, 0, width, image.height()).convertToFormat(format);
}

QString randomName(QRandomGenerator &random)
{
    static const QStringList parts{QStringLiteral("walk"), QStringLiteral("_"),
                                   QStringLiteral("%1"),   QStringLiteral("\n"),
                                   QStringLiteral("\""),   QString::fromUtf8("\xF0\x9F\x90\xB1"),
                                   QString(QChar(1)),      QStringLiteral("7")};
    QString name;
    for (int i = random.bounded(4); i > 0; --i)
        name += parts.at(random.bounded(parts.size()));
    return name;
}

double randomLength(QRandomGenerator &random)
{
    return random.bounded(3) == 0 ? random.bounded(200) : random.bounded(1000.0) / 7.0;
}

void fill(Stage &stage, QRandomGenerator &random)
{
    for (int i = random.bounded(5); i > 0; --i) {
        CAnimatedPortrait frame(randomName(random), randomPicture(random));
        if (random.bounded(2))
            frame.size = QSizeF(randomLength(random), randomLength(random));
        stage.probe.frames().append(frame);
    }
    stage->setSize(QSizeF(randomLength(random), randomLength(random)), false, false);
    stage->setPos(QPointF(randomLength(random), -randomLength(random)), false);
    stage->setRotate(random.bounded(360.0), false);
    stage->CBaseObject::setMirror(random.bounded(2) == 0, false);
    stage.probe.runningIndex() = random.bounded(-1, 6);
    stage.probe.shiftInterval() = random.bounded(-10, 500);
    stage.probe.keepRatio() = random.bounded(2) == 0;
    stage.probe.mirror() = random.bounded(2) == 0;
    stage.probe.flip() = random.bounded(2) == 0;
    stage.probe.loopCount() = random.bounded(-1, 5);
    stage.probe.animatedType() = random.bounded(-1, 3);
    stage.probe.bgRect() = QRectF(randomLength(random), randomLength(random), randomLength(random),
                                  randomLength(random));
}

void compare(Stage &one, Stage &other)
{
    QCOMPARE(one.probe.frames().size(), other.probe.frames().size());
    for (int i = 0; i < one.probe.frames().size(); ++i) {
        QCOMPARE(one.probe.frame(i).name, other.probe.frame(i).name);
        QCOMPARE(one.probe.frame(i).size, other.probe.frame(i).size);
        QCOMPARE(one.probe.frame(i).image.convertToFormat(QImage::Format_ARGB32),
                 other.probe.frame(i).image.convertToFormat(QImage::Format_ARGB32));
    }
    QCOMPARE(one.probe.rect(), other.probe.rect());
    QCOMPARE(one->getRotate(), other->getRotate());
    QCOMPARE(one->isMirrored(), other->isMirrored());
    QCOMPARE(one.probe.runningIndex(), other.probe.runningIndex());
    QCOMPARE(one.probe.shiftInterval(), other.probe.shiftInterval());
    QCOMPARE(one.probe.keepRatio(), other.probe.keepRatio());
    QCOMPARE(one.probe.mirror(), other.probe.mirror());
    QCOMPARE(one.probe.flip(), other.probe.flip());
    QCOMPARE(one.probe.loopCount(), other.probe.loopCount());
    QCOMPARE(one.probe.animatedType(), other.probe.animatedType());
    QCOMPARE(one.probe.bgRect(), other.probe.bgRect());
}

} // namespace

/// Objects built at random come through both forms as they were.
class TestFormRoundTrip : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFormGivesBackWhatItTook_data()
    {
        QTest::addColumn<bool>("keepsInline");
        QTest::newRow("pictures inline") << true;
        QTest::newRow("pictures in the store") << false;
    }

    void everyFormGivesBackWhatItTook()
    {
        QFETCH(bool, keepsInline);
        QRandomGenerator random(seed);
        for (int round = 0; round < 60; ++round) {
            Stage stage;
            stage.document.setKeepsImagesInline(keepsInline);
            fill(stage, random);
            const QByteArray bytes = Forms::saved(*stage.image);
            QJsonObject json = Forms::savedJson(*stage.image);

            // Read into the same document, which has the pictures.
            auto *byStream = addTo(stage);
            Forms::load(*byStream, bytes);
            auto *byJson = addTo(stage);
            byJson->loadJson(json);
            QCOMPARE(Forms::saved(*byStream), bytes);
            QCOMPARE(Forms::saved(*byJson), bytes);
            QCOMPARE(Forms::savedJson(*byJson), Forms::savedJson(*stage.image));
        }
    }

    void fieldsComeBackThroughTheStream()
    {
        QRandomGenerator random(seed + 1);
        for (int round = 0; round < 60; ++round) {
            Stage from;
            fill(from, random);
            Stage to;
            Forms::load(*to.image, Forms::saved(*from.image));
            compare(to, from);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("in round %1").arg(round)));
        }
    }

    void fieldsComeBackThroughJson()
    {
        QRandomGenerator random(seed + 2);
        for (int round = 0; round < 60; ++round) {
            Stage from;
            fill(from, random);
            QJsonObject json = Forms::savedJson(*from.image);
            Stage to;
            to->loadJson(json);
            compare(to, from);
            if (QTest::currentTestFailed())
                QFAIL(qPrintable(QStringLiteral("in round %1").arg(round)));
        }
    }

private:
    static CAnimatedImage *addTo(Stage &stage)
    {
        auto *image = new CAnimatedImage(1, true, nullptr);
        stage.page->addObject(image);
        return image;
    }
};

QTEST_MAIN(TestFormRoundTrip)
#include "tst_form_roundtrip.moc"
