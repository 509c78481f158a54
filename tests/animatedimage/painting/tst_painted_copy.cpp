#include "animatedimage/core/paintedcopy.h"
#include "tests/support/pictures.h"
#include "tests/support/stage.h"

#include <QtGui/QPainter>
#include <QtGui/QPicture>
#include <QtTest/QTest>

#include <random>

namespace
{

constexpr unsigned firstSeed = 99;
constexpr int paintings = 1500;

/// One way to paint a picture: everything that may make a difference, by chance.
class RandomPainting
{
public:
    explicit RandomPainting(unsigned seed)
        : m_random(seed)
        , m_picture(number(1, 40), number(1, 40), QImage::Format_ARGB32)
    {
        for (int y = 0; y < m_picture.height(); ++y) {
            for (int x = 0; x < m_picture.width(); ++x)
                m_picture.setPixel(x, y, QRgb(m_random()));
        }
        constexpr QImage::Format formats[] = {QImage::Format_ARGB32_Premultiplied,
                                              QImage::Format_RGB32, QImage::Format_ARGB32,
                                              QImage::Format_RGB16, QImage::Format_RGBA8888};
        m_format = formats[number(0, 9) < 7 ? number(0, 1) : number(2, 4)];
        const double scales[] = {1.0, 2.0, 0.5, 0.25, 1.5};
        const double scale = number(0, 3) == 0 ? number(20, 300) / 100.0 : scales[number(0, 4)];
        m_size = QSizeF(m_picture.size()) * scale;
        if (number(0, 3) == 0)
            m_size = QSizeF(number(1, 80), number(1, 80));
        const bool isWhole = number(0, 1) == 0;
        m_transform.translate(number(-500, 2000) / (isWhole ? 1.0 : 100.0) / 20.0, number(-10, 30));
        if (number(0, 5) == 0)
            m_transform.rotate(number(1, 359));
        if (number(0, 4) == 0)
            m_transform.scale(-1.0, number(0, 1) == 0 ? 1.0 : -1.0);
        m_opacity = number(0, 5) == 0 ? 0.4 : 1.0;
        m_isClipped = number(0, 5) == 0;
    }

    /// What @p paint makes on it.
    template<typename Paint>
    QImage result(const Paint &paint) const
    {
        QImage paper(100, 90, m_format);
        paper.fill(QColor(40, 90, 160, 120));
        QPainter painter(&paper);
        if (m_isClipped)
            painter.setClipRect(QRectF(9.5, 4.2, 50.0, 44.4));
        painter.setOpacity(m_opacity);
        painter.setTransform(m_transform);
        paint(painter);
        return paper;
    }

    const QImage &picture() const { return m_picture; }
    QRectF target() const { return {QPointF(0, 0), m_size}; }

private:
    int number(int low, int high) { return low + int(m_random() % unsigned(high - low + 1)); }

    std::mt19937 m_random;
    QImage m_picture;
    QImage::Format m_format;
    QSizeF m_size;
    QTransform m_transform;
    double m_opacity;
    bool m_isClipped;
};

void paintPlain(QPainter &painter, const QImage &picture, const QRectF &target)
{
    painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing |
                           QPainter::SmoothPixmapTransform);
    painter.drawImage(target, picture, QRectF(QPointF(0, 0), QSizeF(picture.size())));
}

} // namespace

/// A picture that is painted repeatedly is painted from a copy, with exactly the same result.
class TestPaintedCopy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyPaintingShowsTheSame();
    void thePictureIsCopiedWhenItIsPaintedAgain();
    void aPlayingFilmIsNotCopied();
    void otherDevicesGetThePictureItself();
    void aPainterThatPaintsOnNothingGetsThePictureItself();
    void otherFormatsAreNotCopied();
    void onlyExactPaintingUsesACopy_data();
    void onlyExactPaintingUsesACopy();
    void papersOfOtherFormatsGetThePictureItself_data();
    void papersOfOtherFormatsGetThePictureItself();
    void theCopyCountsInTheBudget();
    void aPictureBeyondTheBudgetIsNotCopied();
    void theFrameKeepsItsPixels();
};

void TestPaintedCopy::everyPaintingShowsTheSame()
{
    Stage stage;
    for (unsigned seed = firstSeed; seed < firstSeed + paintings; ++seed) {
        const RandomPainting painting(seed);
        stage->loadFromImage(&painting.picture());
        stage->setSize(painting.target().size(), false, false);
        const QImage expected = painting.result(
            [&](QPainter &painter) { paintPlain(painter, painting.picture(), painting.target()); });
        for (int time = 1; time <= 3; ++time) {
            const QImage shown =
                painting.result([&](QPainter &painter) { stage->OnQPainterDraw(&painter); });
            QVERIFY2(shown == expected,
                     qPrintable(QStringLiteral("seed %1, time %2").arg(seed).arg(time)));
        }
    }
}

void TestPaintedCopy::thePictureIsCopiedWhenItIsPaintedAgain()
{
    const QImage picture = Pictures::solid(4, 4, QColor(10, 20, 30, 40));
    const QRectF target(0, 0, 4, 4);
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    PaintedCopy copy;
    QCOMPARE(copy.of(picture, painter, target).cacheKey(), picture.cacheKey());
    const QImage second = copy.of(picture, painter, target);
    QCOMPARE(second.format(), QImage::Format_ARGB32_Premultiplied);
    QCOMPARE(copy.of(picture, painter, target).cacheKey(), second.cacheKey());
}

void TestPaintedCopy::aPlayingFilmIsNotCopied()
{
    const QImage first = Pictures::solid(4, 4, Qt::red);
    const QImage second = Pictures::solid(4, 4, Qt::blue);
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    PaintedCopy copy;
    for (int time = 0; time < 3; ++time) {
        for (const QImage &picture : {first, second}) {
            QCOMPARE(copy.of(picture, painter, QRectF(0, 0, 4, 4)).cacheKey(), picture.cacheKey());
        }
    }
}

void TestPaintedCopy::otherDevicesGetThePictureItself()
{
    const QImage image = Pictures::solid(4, 4, Qt::red);
    QPicture commands;
    QPainter painter(&commands);
    PaintedCopy copy;
    for (int time = 0; time < 3; ++time)
        QCOMPARE(copy.of(image, painter, QRectF(0, 0, 4, 4)).cacheKey(), image.cacheKey());
}

void TestPaintedCopy::aPainterThatPaintsOnNothingGetsThePictureItself()
{
    const QImage image = Pictures::solid(4, 4, Qt::red);
    const QPainter painter;
    PaintedCopy copy;
    for (int time = 0; time < 3; ++time)
        QCOMPARE(copy.of(image, painter, QRectF(0, 0, 4, 4)).cacheKey(), image.cacheKey());
}

void TestPaintedCopy::otherFormatsAreNotCopied()
{
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    for (const QImage::Format format :
         {QImage::Format_RGB32, QImage::Format_ARGB32_Premultiplied, QImage::Format_Grayscale8}) {
        const QImage image = Pictures::solid(4, 4, Qt::red, format);
        PaintedCopy copy;
        for (int time = 0; time < 3; ++time)
            QCOMPARE(copy.of(image, painter, QRectF(0, 0, 4, 4)).cacheKey(), image.cacheKey());
    }
}

void TestPaintedCopy::onlyExactPaintingUsesACopy_data()
{
    QTest::addColumn<QRectF>("target");
    QTest::addColumn<QTransform>("transform");
    QTest::addColumn<bool>("isCopied");
    const QTransform none;
    QTest::newRow("its own size") << QRectF(0, 0, 4, 4) << none << true;
    QTest::newRow("its own size, between pixels") << QRectF(0.5, 0.5, 4, 4) << none << true;
    QTest::newRow("enlarged, between pixels") << QRectF(0.5, 0.25, 6.5, 5) << none << true;
    QTest::newRow("half of it") << QRectF(1, 2, 2, 2) << none << true;
    QTest::newRow("half of one side") << QRectF(1, 2, 2, 5) << none << true;
    QTest::newRow("half of it, from half a pixel") << QRectF(0.5, 2, 2, 2) << none << false;
    QTest::newRow("half of it, from half a row") << QRectF(1, 2.5, 2, 2) << none << false;
    QTest::newRow("parts of pixels across") << QRectF(1, 2, 2.5, 2) << none << false;
    QTest::newRow("parts of pixels down") << QRectF(1, 2, 2, 2.5) << none << false;
    QTest::newRow("less than half") << QRectF(0, 0, 1, 4) << none << false;
    QTest::newRow("less than half down") << QRectF(0, 0, 4, 1) << none << false;
    QTest::newRow("mirrored") << QRectF(0, 0, 4, 4) << QTransform::fromScale(-1, 1) << true;
    QTest::newRow("halved by the painter")
        << QRectF(0, 0, 4, 4) << QTransform::fromScale(0.5, 0.5) << true;
    QTest::newRow("rotated") << QRectF(0, 0, 4, 4) << QTransform().rotate(90) << false;
}

void TestPaintedCopy::onlyExactPaintingUsesACopy()
{
    QFETCH(QRectF, target);
    QFETCH(QTransform, transform);
    QFETCH(bool, isCopied);
    const QImage picture = Pictures::solid(4, 4, QColor(10, 20, 30, 40));
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    painter.setTransform(transform);
    PaintedCopy copy;
    copy.of(picture, painter, target);
    copy.of(picture, painter, target);
    QCOMPARE(copy.bytes(), isCopied ? 64 : 0); // 16 pixels of 4 bytes
}

void TestPaintedCopy::papersOfOtherFormatsGetThePictureItself_data()
{
    QTest::addColumn<int>("format");
    QTest::addColumn<bool>("isCopied");
    QTest::newRow("premultiplied") << int(QImage::Format_ARGB32_Premultiplied) << true;
    QTest::newRow("opaque") << int(QImage::Format_RGB32) << true;
    QTest::newRow("straight alpha") << int(QImage::Format_ARGB32) << false;
    QTest::newRow("16 bits") << int(QImage::Format_RGB16) << false;
    QTest::newRow("bytes in order") << int(QImage::Format_RGBA8888) << false;
}

void TestPaintedCopy::papersOfOtherFormatsGetThePictureItself()
{
    QFETCH(int, format);
    QFETCH(bool, isCopied);
    const QImage picture = Pictures::solid(4, 4, QColor(10, 20, 30, 40));
    QImage paper(8, 8, QImage::Format(format));
    QPainter painter(&paper);
    PaintedCopy copy;
    copy.of(picture, painter, QRectF(0, 0, 4, 4));
    copy.of(picture, painter, QRectF(0, 0, 4, 4));
    QCOMPARE(copy.bytes(), isCopied ? 64 : 0);
}

void TestPaintedCopy::theCopyCountsInTheBudget()
{
    const QImage first = Pictures::solid(4, 4, QColor(10, 20, 30, 40));
    const QImage second = Pictures::solid(4, 4, QColor(10, 20, 30, 50));
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    CacheBudget budget(64); // 16 pixels of 4 bytes
    {
        PaintedCopy copy(budget);
        copy.of(first, painter, QRectF(0, 0, 4, 4));
        QCOMPARE(budget.heldBytes(), 0);
        copy.of(first, painter, QRectF(0, 0, 4, 4));
        QCOMPARE(copy.bytes(), 64);
        QCOMPARE(budget.heldBytes(), 64);
        copy.of(second, painter, QRectF(0, 0, 4, 4));
        QCOMPARE(budget.heldBytes(), 0);
        copy.of(second, painter, QRectF(0, 0, 4, 4));
        QCOMPARE(budget.heldBytes(), 64);
    }
    QCOMPARE(budget.heldBytes(), 0);
}

void TestPaintedCopy::aPictureBeyondTheBudgetIsNotCopied()
{
    const QImage picture = Pictures::solid(4, 4, QColor(10, 20, 30, 40));
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    CacheBudget budget(63);
    PaintedCopy copy(budget);
    for (int time = 0; time < 3; ++time)
        QCOMPARE(copy.of(picture, painter, QRectF(0, 0, 4, 4)).cacheKey(), picture.cacheKey());
    QCOMPARE(budget.heldBytes(), 0);
}

void TestPaintedCopy::theFrameKeepsItsPixels()
{
    // Alpha 1 keeps no colour in the copy.
    const QImage picture = Pictures::solid(3, 3, QColor(200, 100, 50, 1));
    Stage stage;
    stage->loadFromImage(&picture);
    QImage paper(8, 8, QImage::Format_RGB32);
    QPainter painter(&paper);
    for (int time = 0; time < 3; ++time)
        stage->OnQPainterDraw(&painter);
    QCOMPARE(stage.probe.frame(0).image, picture);
    QCOMPARE(stage.probe.frame(0).image.format(), QImage::Format_ARGB32);
}

QTEST_MAIN(TestPaintedCopy)
#include "tst_painted_copy.moc"
