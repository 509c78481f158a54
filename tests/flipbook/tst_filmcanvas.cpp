#include "flipbook/import/filmcanvas.h"
#include "tests/flipbook/filmbuilder.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <cmath>

namespace
{

/// What the formats say of painting one colour over another, in real numbers.
QRgb paintedOver(QRgb top, QRgb bottom)
{
    const double above = qAlpha(top) / 255.0;
    const double below = qAlpha(bottom) / 255.0 * (1.0 - above);
    const double both = above + below;
    if (both == 0.0)
        return 0;
    const auto mixed = [&](int one, int other) {
        return int(std::floor((one * above + other * below) / both + 0.5));
    };
    return qRgba(mixed(qRed(top), qRed(bottom)), mixed(qGreen(top), qGreen(bottom)),
                 mixed(qBlue(top), qBlue(bottom)), int(std::floor(both * 255.0 + 0.5)));
}

bool areNear(QRgb one, QRgb other)
{
    // The colours of what is transparent do not count.
    if (qAlpha(one) == 0 && qAlpha(other) == 0)
        return true;
    return qAbs(qRed(one) - qRed(other)) <= 1 && qAbs(qGreen(one) - qGreen(other)) <= 1 &&
           qAbs(qBlue(one) - qBlue(other)) <= 1 && qAlpha(one) == qAlpha(other);
}

/// Often opaque or transparent.
QRgb randomColour(QRandomGenerator &random)
{
    const int alpha = random.bounded(3) == 0 ? random.bounded(256) : random.bounded(2) * 255;
    return qRgba(random.bounded(256), random.bounded(256), random.bounded(256), alpha);
}

/// A frame that lies somewhere in a canvas of @p size.
FilmFrame randomFrame(QRandomGenerator &random, const QSize &size)
{
    FilmFrame frame;
    frame.place = QPoint(random.bounded(size.width()), random.bounded(size.height()));
    frame.picture =
        QImage(1 + random.bounded(size.width() - frame.place.x()),
               1 + random.bounded(size.height() - frame.place.y()), QImage::Format_ARGB32);
    for (int y = 0; y < frame.picture.height(); ++y) {
        for (int x = 0; x < frame.picture.width(); ++x)
            frame.picture.setPixel(x, y, randomColour(random));
    }
    frame.blends = random.bounded(2) == 0;
    frame.disposal = random.bounded(3);
    return frame;
}

/// The same canvas, pixel by pixel.
class SlowCanvas
{
public:
    explicit SlowCanvas(const QSize &size)
        : m_width(size.width())
        , m_pixels(size.width() * size.height(), 0)
    {
    }

    QVector<QRgb> show(const FilmFrame &frame)
    {
        m_before = m_pixels;
        forEach(frame, [&](int x, int y, QRgb &pixel) {
            const QRgb own = frame.picture.pixel(x, y);
            pixel = frame.blends ? paintedOver(own, pixel) : own;
        });
        return m_pixels;
    }

    /// Goes on from @p shown, which may differ by what was rounded.
    void dispose(const FilmFrame &frame, const QVector<QRgb> &shown)
    {
        m_pixels = shown;
        forEach(frame, [&](int x, int y, QRgb &pixel) {
            if (frame.disposal == 1)
                pixel = 0;
            if (frame.disposal == 2)
                pixel = m_before.at(at(frame, x, y));
        });
    }

private:
    int at(const FilmFrame &frame, int x, int y) const
    {
        return (frame.place.y() + y) * m_width + frame.place.x() + x;
    }
    template<typename Change>
    void forEach(const FilmFrame &frame, const Change &change)
    {
        for (int y = 0; y < frame.picture.height(); ++y) {
            for (int x = 0; x < frame.picture.width(); ++x)
                change(x, y, m_pixels[at(frame, x, y)]);
        }
    }

    int m_width;
    QVector<QRgb> m_pixels;
    QVector<QRgb> m_before;
};

FilmCanvas::Disposal disposalOf(const FilmFrame &frame)
{
    if (frame.disposal == 0)
        return FilmCanvas::Disposal::Keep;
    return frame.disposal == 1 ? FilmCanvas::Disposal::Clear : FilmCanvas::Disposal::Restore;
}

} // namespace

/// The canvas on which frames are put, against one that is slow and simple.
class TestFilmCanvas : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anyCompositionIsAsTheSlowOne();
};

void TestFilmCanvas::anyCompositionIsAsTheSlowOne()
{
    QRandomGenerator random(7);
    for (int round = 0; round < 300; ++round) {
        const QSize size(1 + random.bounded(6), 1 + random.bounded(6));
        FilmCanvas canvas(size);
        SlowCanvas slow(size);
        for (int number = 0; number < 6; ++number) {
            const FilmFrame frame = randomFrame(random, size);
            const auto blend = frame.blends ? FilmCanvas::Blend::Over : FilmCanvas::Blend::Source;
            const QVector<QRgb> shown =
                pixelsOf(canvas.show(frame.picture, frame.place, blend, disposalOf(frame)));
            const QVector<QRgb> expected = slow.show(frame);
            QCOMPARE(shown.size(), expected.size());
            for (int i = 0; i < shown.size(); ++i)
                QVERIFY2(areNear(shown.at(i), expected.at(i)),
                         qPrintable(QStringLiteral("round %1, frame %2, pixel %3: %4, %5")
                                        .arg(round)
                                        .arg(number)
                                        .arg(i)
                                        .arg(shown.at(i), 8, 16)
                                        .arg(expected.at(i), 8, 16)));
            slow.dispose(frame, shown);
        }
    }
}

QTEST_GUILESS_MAIN(TestFilmCanvas)
#include "tst_filmcanvas.moc"
