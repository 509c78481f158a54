#include "flipbook/base/reading.h"
#include "flipbook/document/openedfile.h"
#include "flipbook/import/mediaimport.h"
#include "tests/flipbook/documentfixture.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// The times for which a file says that its frames are shown.
class TestFilmTimes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyFrameOfAGifHasItsTime();
    void framesThatAreCutOffHaveTheLastTime();
    void picturesAndDocumentsGiveNone();

private:
    QVector<int> delaysOf(const QString &path);

    DocumentFixture m_fixture;
};

/// As both ways of reading give them, which must be the same.
QVector<int> TestFilmTimes::delaysOf(const QString &path)
{
    Reading reading(1 << 20, false);
    const OpenedFile opened = openFile(m_fixture.plugin(), path, reading);
    const QVector<int> delays = opened.delaysMs();
    if (!opened.isDocument) {
        const ImportedMedia media = importMedia(m_fixture.plugin(), path, reading);
        if (media.delaysMs() != delays)
            return {-1};
    }
    return delays;
}

void TestFilmTimes::everyFrameOfAGifHasItsTime()
{
    const QString film = m_fixture.path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).add(0, 5).add(1, 10).add(2, 0).write(film);
    // Less than 20 ms counts as 100 ms.
    QCOMPARE(delaysOf(film), (QVector<int>{50, 100, 100}));
}

void TestFilmTimes::framesThatAreCutOffHaveTheLastTime()
{
    const QString film = m_fixture.path(QStringLiteral("cut.gif"));
    const QByteArray bytes = GifBuilder(4, 3).add(0, 5).add(1, 30).add(2, 20).data();
    // The third frame ends after its control block (8), descriptor (10) and code size (1).
    writeBytes(film, bytes.left(bytes.lastIndexOf(QByteArray::fromHex("21f904")) + 19));
    const QVector<int> delays = delaysOf(film);
    QCOMPARE(delays.mid(0, 2), (QVector<int>{50, 300}));
    const QVector<int> others = delays.mid(2);
    for (const int delay : others)
        QVERIFY(delay == 300 || delay == 200);
}

void TestFilmTimes::picturesAndDocumentsGiveNone()
{
    const QString sun = m_fixture.path(QStringLiteral("sun.png"));
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(sun));
    QCOMPARE(delaysOf(sun), QVector<int>());

    const QString page = m_fixture.path(QStringLiteral("page.flipbook"));
    MemoryAccount memory;
    saveDocument(*m_fixture.document({Qt::red, Qt::green}), page, memory);
    QCOMPARE(delaysOf(page), QVector<int>());
}

QTEST_MAIN(TestFilmTimes)
#include "tst_filmtimes.moc"
