#include "movieframes.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/quiet.h"

#include <QtCore/QDir>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>

#include <ctime>

/// Twenty GIFs, cut at each byte, and with single bytes changed: the object has the frames and the
/// timing that Qt alone reads. GIF_CAMPAIGN=whole tries each prefix and 100,000 changes, and tells
/// how long the longest import took; otherwise it tries a part.
class TestGifCampaign : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanupTestCase();

    void eachPrefixGivesWhatQtGives_data();
    void eachPrefixGivesWhatQtGives();
    void eachChangedByteGivesWhatQtGives_data();
    void eachChangedByteGivesWhatQtGives();

private:
    void addFiles();
    void import(const QByteArray &bytes, const QString &what);

    QTemporaryDir m_folder;
    QMap<QString, QByteArray> m_files;
    int m_imports = 0;
    qint64 m_frames = 0;
    qint64 m_longest = 0; ///< microseconds of the processor
    QString m_longestName;
};

namespace
{

bool isWhole()
{
    return qgetenv("GIF_CAMPAIGN") == "whole";
}

qint64 processorTime()
{
    timespec now = {};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return qint64(now.tv_sec) * 1000000 + now.tv_nsec / 1000;
}

GifBuilder::Frame patch(const QRect &rect, int color, GifBuilder::Disposal disposal)
{
    GifBuilder::Frame frame;
    frame.rect = rect;
    frame.colorIndex = color;
    frame.disposal = disposal;
    return frame;
}

/// Films that differ in what a reader has to do.
QList<QByteArray> builtFilms()
{
    using Builder = GifBuilder;
    QList<QByteArray> films;
    films.append(Builder(1, 1).add(0, 0).data());
    films.append(Builder(1, 1).loop(0).add(0, 1).add(1, 65535).data());
    films.append(Builder(12, 9).loop(2).add(0, 12).add(1, 5).add(2, 7).data());
    films.append(Builder(5, 16).add(3, 0).data());
    films.append(Builder(0, 0).add(patch(QRect(0, 0, 7, 5), 1, Builder::Keep)).data());
    films.append(Builder(300, 1).loop(65535).add(2, 3).add(0, 3).data());
    films.append(Builder(1, 300).loop(1).add(2, 3).add(0, 3).data());
    for (const auto disposal : {Builder::Unspecified, Builder::Keep, Builder::RestoreBackground,
                                Builder::RestorePrevious}) {
        Builder film(16, 12);
        film.loop(3).add(0, 10);
        for (int i = 0; i < 4; ++i) {
            Builder::Frame frame = patch(QRect(3 * i, 2 * i, 5, 4), i % 4, disposal);
            frame.transparentIndex = i % 2 == 0 ? -1 : 3;
            frame.delayCs = 5 * i;
            film.add(frame);
        }
        films.append(film.data());
    }
    Builder outside(10, 10);
    outside.add(patch(QRect(8, 8, 20, 20), 2, Builder::Keep));
    films.append(outside.add(patch(QRect(50, 50, 4, 4), 1, Builder::RestorePrevious)).data());
    Builder palettes(9, 9);
    for (int i = 0; i < 3; ++i) {
        Builder::Frame frame = patch(QRect(0, i, 9, 5), 0, Builder::RestoreBackground);
        frame.hasOwnPalette = i != 1;
        frame.colorAt = [](int pixel) { return pixel % 4; };
        palettes.add(frame);
    }
    films.append(palettes.data());
    Builder many(4, 4);
    for (int i = 0; i < 40; ++i)
        many.add(i % 4, i);
    films.append(many.data());
    // Not the first frame, but a later one covers the screen.
    Builder late(20, 10);
    late.loop(7).add(patch(QRect(2, 2, 3, 3), 1, Builder::RestorePrevious)).add(3, 9);
    films.append(late.data());
    return films;
}

} // namespace

void TestGifCampaign::initTestCase()
{
    const QDir samples(QStringLiteral(SAMPLES_FOLDER));
    const QStringList names = samples.entryList({QStringLiteral("*.gif")}, QDir::Files);
    for (const QString &name : names) {
        QFile file(samples.filePath(name));
        QVERIFY(file.open(QIODevice::ReadOnly));
        m_files.insert(name, file.readAll());
    }
    const QList<QByteArray> films = builtFilms();
    for (int i = 0; i < films.size(); ++i)
        m_files.insert(QStringLiteral("built %1").arg(i + 1), films.at(i));
    QCOMPARE(m_files.size(), 20);
}

void TestGifCampaign::cleanupTestCase()
{
    qInfo("%d imports, %lld frames", m_imports, m_frames);
    if (isWhole())
        qInfo("longest import: %.1f ms of the processor (%s)", double(m_longest) / 1000,
              qPrintable(m_longestName));
    QVERIFY(m_frames > m_imports);
}

void TestGifCampaign::addFiles()
{
    QTest::addColumn<QByteArray>("whole");
    for (auto file = m_files.constBegin(); file != m_files.constEnd(); ++file)
        QTest::newRow(qPrintable(file.key())) << file.value();
}

void TestGifCampaign::import(const QByteArray &bytes, const QString &what)
{
    const QString path = m_folder.filePath(QStringLiteral("film.gif"));
    QFile file(path);
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(bytes), qint64(bytes.size()));
    file.close();

    Stage stage;
    const qint64 before = processorTime();
    stage->loadFromGifFile(path);
    const qint64 time = processorTime() - before;
    int count = 0;
    MovieFrames::compareImported(stage, path, count);
    QVERIFY2(!QTest::currentTestFailed(), qPrintable(what));
    ++m_imports;
    m_frames += count;
    if (time > m_longest) {
        m_longest = time;
        m_longestName = what;
    }
}

void TestGifCampaign::eachPrefixGivesWhatQtGives_data()
{
    addFiles();
}

void TestGifCampaign::eachPrefixGivesWhatQtGives()
{
    const Quiet quiet;
    QFETCH(QByteArray, whole);
    constexpr int prefixesOfAPart = 20;
    const int step = isWhole() ? 1 : qMax(1, whole.size() / prefixesOfAPart);
    for (int length = 0; length <= whole.size() && !QTest::currentTestFailed(); length += step)
        import(whole.left(length), QStringLiteral("%1, cut after %2 bytes")
                                       .arg(QLatin1String(QTest::currentDataTag()))
                                       .arg(length));
}

void TestGifCampaign::eachChangedByteGivesWhatQtGives_data()
{
    addFiles();
}

void TestGifCampaign::eachChangedByteGivesWhatQtGives()
{
    const Quiet quiet;
    QFETCH(QByteArray, whole);
    QRandomGenerator random(quint32(whole.size()));
    const int changes = (isWhole() ? 100000 : 1000) / m_files.size();
    // The high bytes of the screen's size would only cost memory.
    constexpr int highByteOfTheWidth = 7;
    constexpr int highByteOfTheHeight = 9;
    for (int done = 0; done < changes && !QTest::currentTestFailed();) {
        const int at = random.bounded(whole.size());
        const int mask = 1 + random.bounded(255);
        if (at == highByteOfTheWidth || at == highByteOfTheHeight)
            continue;
        ++done;
        QByteArray changed = whole;
        changed[at] = char(whole.at(at) ^ mask);
        import(changed, QStringLiteral("%1, byte %2 changed by %3")
                            .arg(QLatin1String(QTest::currentDataTag()))
                            .arg(at)
                            .arg(mask));
    }
}

QTEST_MAIN(TestGifCampaign)
#include "tst_gif_campaign.moc"
