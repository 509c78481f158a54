#include "flipbook/window/import/filmreader.h"
#include "flipbook/window/progress.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/filmbuilder.h"
#include "tests/flipbook/window/windowfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtTest/QtTest>
#include <QtWidgets/QStatusBar>

/// How the window reads films: in steps, of which any can be the last.
class TestWindowReading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_fixture = std::make_unique<WindowFixture>(); }
    void cleanup() { m_fixture.reset(); }

    void everyPassTellsItsProgressAndCanBeCancelled_data();
    void everyPassTellsItsProgressAndCanBeCancelled();
    void whatNoFrameOfAGifCoversIsTransparent();

private:
    QString path(const QString &name) const { return m_fixture->path(name); }
    void makeFiles();

    std::unique_ptr<WindowFixture> m_fixture;
};

namespace
{

/// A user who cancels at a certain line in the status bar.
class CancelAt : public Progress
{
public:
    CancelAt(QStatusBar &bar, const QString &line)
        : Progress(bar)
        , m_line(line)
    {
    }

    void step(const QString &text, qint64, qint64) override
    {
        if (text == m_line)
            throw Cancelled{};
    }

private:
    QString m_line;
};

} // namespace

/// Three frames in each form.
void TestWindowReading::makeFiles()
{
    GifBuilder(20, 10).add(0, 10).add(1, 30).add(2, 20).write(path(QStringLiteral("u.gif")));
    QDir(path(QString())).mkdir(QStringLiteral("folder"));
    QVector<FilmFrame> frames;
    ApngBuilder apng(QSize(20, 10), 0);
    for (const QColor &colour : {QColor(Qt::red), QColor(Qt::green), QColor(Qt::blue)}) {
        FilmFrame frame;
        frame.picture = Pictures::solid(20, 10, colour);
        frames.append(frame);
        apng.add(frame);
        frame.picture.save(path(QStringLiteral("folder/%1.png").arg(frames.size())));
    }
    writeBytes(path(QStringLiteral("film.png")), apng.data());
    writeBytes(path(QStringLiteral("film.webp")), webpFilm(QSize(20, 10), 0, frames));
}

void TestWindowReading::everyPassTellsItsProgressAndCanBeCancelled_data()
{
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("line");
    QTest::newRow("pictures of a GIF") << "u.gif"
                                       << "Reading u.gif, 2 of 3 frames";
    QTest::newRow("durations in a GIF") << "u.gif"
                                        << "Reading the durations in u.gif, 2 of 3 frames";
    QTest::newRow("animated WebP") << "film.webp"
                                   << "Reading film.webp, 2 of 3 frames";
    QTest::newRow("animated PNG") << "film.png"
                                  << "Reading film.png, 2 of 3 frames";
    QTest::newRow("a folder of pictures") << "folder"
                                          << "Reading folder, 2 of 3 frames";
}

void TestWindowReading::everyPassTellsItsProgressAndCanBeCancelled()
{
    QFETCH(const QString, file);
    QFETCH(const QString, line);
    makeFiles();
    CancelAt progress(*m_fixture->window().statusBar(), line);
    FilmReader reader(m_fixture->session().plugin(), progress, 1 << 30);
    QVERIFY_EXCEPTION_THROWN(reader.read(path(file)), Cancelled);
    QVERIFY(m_fixture->page().objects().isEmpty());
    QVERIFY(!m_fixture->session().isDirty());
}

void TestWindowReading::whatNoFrameOfAGifCoversIsTransparent()
{
    // Of 10 x 8 pixels, the first frame covers 4 x 3 and the second 5 x 3.
    const QVector<QRect> covered = {QRect(1, 2, 4, 3), QRect(3, 4, 5, 3)};
    GifBuilder builder(10, 8);
    builder.add({covered.at(0), 0, 10, GifBuilder::Keep, -1, true});
    builder.add({covered.at(1), 1, 10, GifBuilder::Keep, -1, true});
    builder.write(path(QStringLiteral("uncovered.gif")));
    m_fixture->dropOnPage({200, 150}, {path(QStringLiteral("uncovered.gif"))});
    const Plugin::Frames frames =
        m_fixture->session().plugin().frames(*m_fixture->page().objects().first());
    for (int y = 0; y < 8; ++y) {
        for (int x = 0; x < 10; ++x) {
            const bool isFirst = covered.at(0).contains(x, y);
            const bool isSecond = isFirst || covered.at(1).contains(x, y);
            QCOMPARE(qAlpha(frames.at(0).second.pixel(x, y)), isFirst ? 255 : 0);
            QCOMPARE(qAlpha(frames.at(1).second.pixel(x, y)), isSecond ? 255 : 0);
        }
    }
}

QTEST_MAIN(TestWindowReading)
#include "tst_window_reading.moc"
