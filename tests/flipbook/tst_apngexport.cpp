#include "flipbook/base/failure.h"
#include "flipbook/export/apngexport.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmfixture.h"
#include "tests/support/pictures.h"

#include <QtCore/QtEndian>
#include <QtTest/QTest>

#include <cstddef>
#include <cstdlib>
#include <zlib.h>

class TestApngExport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pixelsSurvive_data();
    void pixelsSurvive();
    void otherReadersSeeTheFirstFrame();
    void timesAndLoopsAreInTheFile();
    void onlyWhatChangesIsWritten();
    void aSingleFrameIsAnOrdinaryPng();
    void memoryIsCounted();

private:
    QByteArray apng(const QList<QImage> &pictures, const QVector<int> &delaysMs = {},
                    int loopCount = -1) const;

    DocumentFixture m_fixture;
};

namespace
{

/// An animated PNG as the format tells it to be read, slowly: an independent reader of true-colour
/// pictures, which knows neither libpng nor Qt's reader. The list of frames is empty for a file
/// that is not sound.
class Reader
{
public:
    explicit Reader(const QByteArray &file);

    QList<QImage> frames;
    QVector<double> delays; ///< in seconds
    QVector<QRect> rects;
    quint32 announcedFrames = 0;
    quint32 passes = 0;

private:
    bool read(const QByteArray &file);
    bool take(const QByteArray &type, const QByteArray &content);
    bool takeControl(const QByteArray &content);
    bool finishFrame();
    static quint32 number(const QByteArray &bytes, int at)
    {
        return qFromBigEndian<quint32>(bytes.constData() + at);
    }

    int m_channels = 0;
    QImage m_canvas;
    QByteArray m_data;
    quint32 m_sequence = 0;
};

Reader::Reader(const QByteArray &file)
{
    if (!read(file) || !finishFrame() || quint32(frames.size()) != announcedFrames)
        frames.clear();
}

bool Reader::read(const QByteArray &file)
{
    if (!file.startsWith(QByteArray::fromHex("89504e470d0a1a0a")))
        return false;
    for (int at = 8; at + 12 <= file.size();) {
        const int length = int(number(file, at));
        const QByteArray checked = file.mid(at + 4, length + 4);
        const auto *bytes = reinterpret_cast<const Bytef *>(checked.constData());
        if (number(file, at + 8 + length) != crc32(0, bytes, uInt(checked.size())))
            return false;
        if (!take(checked.left(4), checked.mid(4)))
            return false;
        at += 12 + length;
        if (checked.startsWith("IEND"))
            return at == file.size();
    }
    return false;
}

bool Reader::take(const QByteArray &type, const QByteArray &content)
{
    if (type == "IHDR") {
        m_canvas = QImage(int(number(content, 0)), int(number(content, 4)), QImage::Format_ARGB32);
        m_canvas.fill(0U);
        m_channels = content.at(9) == 6 ? 4 : 3;
        // Eight bits, true colour, not interlaced.
        return content.at(8) == 8 && (content.at(9) == 6 || content.at(9) == 2) &&
               content.at(12) == 0;
    }
    if (type == "acTL") {
        announcedFrames = number(content, 0);
        passes = number(content, 4);
    } else if (type == "fcTL") {
        return takeControl(content);
    } else if (type == "IDAT") {
        m_data += content;
    } else if (type == "fdAT") {
        if (number(content, 0) != m_sequence++)
            return false;
        m_data += content.mid(4);
    }
    return true;
}

bool Reader::takeControl(const QByteArray &content)
{
    if (number(content, 0) != m_sequence++ || !finishFrame())
        return false;
    rects.append(QRect(int(number(content, 12)), int(number(content, 16)), int(number(content, 4)),
                       int(number(content, 8))));
    const int above = qFromBigEndian<quint16>(content.constData() + 20);
    const int below = qFromBigEndian<quint16>(content.constData() + 22);
    delays.append(double(above) / (below == 0 ? 100 : below));
    // Neither disposed of nor blended.
    return content.at(24) == 0 && content.at(25) == 0 && m_canvas.rect().contains(rects.last());
}

int predicted(int filter, int left, int up, int corner)
{
    const int estimate = left + up - corner;
    const int toLeft = std::abs(estimate - left);
    const int toUp = std::abs(estimate - up);
    const int toCorner = std::abs(estimate - corner);
    switch (filter) {
    case 1:
        return left;
    case 2:
        return up;
    case 3:
        return (left + up) / 2;
    case 4:
        return toLeft <= toUp && toLeft <= toCorner ? left : toUp <= toCorner ? up : corner;
    default:
        return 0;
    }
}

/// Draws the data so far onto the canvas.
bool Reader::finishFrame()
{
    if (m_data.isEmpty())
        return true;
    const QRect rect = rects.last();
    const int rowBytes = rect.width() * m_channels;
    QByteArray raw((rowBytes + 1) * rect.height(), '\0');
    uLongf size = uLongf(raw.size());
    const int status =
        uncompress(reinterpret_cast<Bytef *>(raw.data()), &size,
                   reinterpret_cast<const Bytef *>(m_data.constData()), uLong(m_data.size()));
    m_data.clear();
    if (status != Z_OK || size != uLongf(raw.size()))
        return false;
    QByteArray before(rowBytes, '\0');
    for (int y = 0; y < rect.height(); ++y) {
        QByteArray row = raw.mid(y * (rowBytes + 1) + 1, rowBytes);
        const int filter = quint8(raw.at(y * (rowBytes + 1)));
        for (int i = 0; i < rowBytes; ++i) {
            const bool hasLeft = i >= m_channels;
            const int left = hasLeft ? quint8(row.at(i - m_channels)) : 0;
            const int corner = hasLeft ? quint8(before.at(i - m_channels)) : 0;
            row[i] =
                char(quint8(row.at(i)) + predicted(filter, left, quint8(before.at(i)), corner));
        }
        for (int x = 0; x < rect.width(); ++x) {
            const char *pixel = row.constData() + std::ptrdiff_t(x) * m_channels;
            m_canvas.setPixel(rect.left() + x, rect.top() + y,
                              qRgba(quint8(pixel[0]), quint8(pixel[1]), quint8(pixel[2]),
                                    m_channels == 4 ? quint8(pixel[3]) : 255));
        }
        before = row;
    }
    frames.append(m_canvas);
    return true;
}

} // namespace

QByteArray TestApngExport::apng(const QList<QImage> &pictures, const QVector<int> &delaysMs,
                                int loopCount) const
{
    const OwnedObject object = FilmFixture::object(m_fixture.plugin(), pictures, loopCount);
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object, delaysMs);
    return apngOf(film, MemoryAccount(), QStringLiteral("out.png")).bytes;
}

void TestApngExport::pixelsSurvive_data()
{
    QTest::addColumn<bool>("hasHoles");
    QTest::addColumn<bool>("hasHalfHoles");
    QTest::newRow("opaque") << false << false;
    QTest::newRow("holes") << true << false;
    QTest::newRow("any alpha") << true << true;
}

void TestApngExport::pixelsSurvive()
{
    QFETCH(bool, hasHoles);
    QFETCH(bool, hasHalfHoles);
    for (quint32 seed = 1; seed <= 30; ++seed) {
        const QList<QImage> pictures = FilmFixture::randomPictures(
            {seed, 6, QSize(10 + int(seed), 17), 400, true, hasHoles, hasHalfHoles});
        QCOMPARE(Reader(apng(pictures)).frames, pictures);
    }
}

void TestApngExport::otherReadersSeeTheFirstFrame()
{
    const QList<QImage> pictures = FilmFixture::randomPictures({9, 4, QSize(20, 20), 50});
    QCOMPARE(QImage::fromData(apng(pictures), "png").convertToFormat(QImage::Format_ARGB32),
             pictures.first());
}

void TestApngExport::timesAndLoopsAreInTheFile()
{
    const QList<QImage> pictures = {Pictures::solid(3, 2, Qt::red), Pictures::solid(3, 2, Qt::blue),
                                    Pictures::solid(3, 2, Qt::red)};
    // Our loop counts, and what the file says.
    const QVector<QPair<int, quint32>> loops = {{-1, 0}, {0, 1}, {4, 5}, {70000, 70001}};
    for (const auto &loop : loops) {
        const Reader reader(apng(pictures, {7, 123457, 70001}, loop.first));
        QCOMPARE(reader.frames, pictures);
        QCOMPARE(reader.passes, loop.second);
        // More than 65.535 s with odd milliseconds are rounded to seconds.
        QCOMPARE(reader.delays, QVector<double>({0.007, 123.0, 70.0}));
    }
}

void TestApngExport::onlyWhatChangesIsWritten()
{
    QList<QImage> pictures = {Pictures::solid(30, 20, Qt::red), Pictures::solid(30, 20, Qt::red),
                              Pictures::solid(30, 20, Qt::red)};
    pictures[1].setPixel(4, 5, 0xff0000ff);
    pictures[1].setPixel(9, 7, 0xff0000ff);
    pictures[2] = pictures.at(1);
    const Reader reader(apng(pictures));
    QCOMPARE(reader.frames, pictures);
    QCOMPARE(reader.rects,
             QVector<QRect>({QRect(0, 0, 30, 20), QRect(4, 5, 6, 3), QRect(0, 0, 1, 1)}));
}

void TestApngExport::aSingleFrameIsAnOrdinaryPng()
{
    const QByteArray bytes = apng({Pictures::solid(3, 2, Qt::red)});
    QVERIFY(!bytes.contains("acTL") && !bytes.contains("fcTL"));
    QCOMPARE(QImage::fromData(bytes, "png").convertToFormat(QImage::Format_ARGB32),
             Pictures::solid(3, 2, Qt::red));
}

void TestApngExport::memoryIsCounted()
{
    const OwnedObject object =
        FilmFixture::object(m_fixture.plugin(), {Pictures::solid(500, 500, Qt::red)});
    const OutgoingFilm film = FilmFixture::film(m_fixture.plugin(), *object);
    // A picture takes 1,000,000 bytes.
    QVERIFY_EXCEPTION_THROWN(apngOf(film, MemoryAccount(3000000), QStringLiteral("out.png")),
                             Failure);
    apngOf(film, MemoryAccount(12000000), QStringLiteral("out.png"));
}

QTEST_MAIN(TestApngExport)
#include "tst_apngexport.moc"
