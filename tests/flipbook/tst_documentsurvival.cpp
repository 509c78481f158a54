#include "flipbook/base/reading.h"
#include "flipbook/document/documentfile.h"
#include "flipbook/document/documentjson.h"
#include "tests/flipbook/documentfixture.h"

#include <QtCore/QRandomGenerator>
#include <QtTest/QTest>

#include <csignal>
#include <sys/wait.h>
#include <unistd.h>

/// A process that saves one document over another without end is killed at random moments.
class TestDocumentSurvival : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aKilledSaveLeavesTheOldOrTheNewDocument();
};

namespace
{

[[noreturn]] void saveForEver(Document &one, Document &other, const QString &path)
{
    while (true) {
        saveDocument(one, path);
        saveDocument(other, path);
    }
}

} // namespace

void TestDocumentSurvival::aKilledSaveLeavesTheOldOrTheNewDocument()
{
    constexpr int kills = 200;
    constexpr int mostRounds = 6;
    int longestLifeUs = 12000;
    DocumentFixture fixture;
    const QString path = fixture.path(QStringLiteral("precious.flipbook"));
    const auto one = fixture.document({Qt::red, Qt::green, Qt::blue});
    const auto other = fixture.document({Qt::white, Qt::black});
    for (Document *document : {other.get(), one.get()})
        saveDocument(*document, path);
    const QByteArray oneText = documentJson(*one);
    const QByteArray otherText = documentJson(*other);
    QVERIFY(oneText != otherText);

    int survivors[2] = {0, 0};
    const auto bothWereSaved = [&survivors] { return survivors[0] > 0 && survivors[1] > 0; };
    for (int i = 0; i < kills || (!bothWereSaved() && i < mostRounds * kills); ++i) {
        // A save takes longer on a busy machine.
        if (i > 0 && i % kills == 0)
            longestLifeUs *= 2;
        const pid_t saver = ::fork();
        QVERIFY(saver >= 0);
        if (saver == 0)
            saveForEver(*one, *other, path);
        ::usleep(useconds_t(QRandomGenerator::global()->bounded(longestLifeUs)));
        QCOMPARE(::kill(saver, SIGKILL), 0);
        int status = 0;
        QCOMPARE(::waitpid(saver, &status, 0), saver);
        QVERIFY(WIFSIGNALED(status) && WTERMSIG(status) == SIGKILL);

        Reading reading(qint64(64) << 20, false);
        const LoadedDocument loaded = loadDocument(fixture.plugin(), path, reading);
        QCOMPARE(loaded.warnings, QStringList());
        const QByteArray text = documentJson(*loaded.document);
        QVERIFY(text == oneText || text == otherText);
        ++survivors[text == oneText ? 0 : 1];
    }
    // Both were saved: the savers lived long enough to be caught at their work.
    QVERIFY(bothWereSaved());
    // What they left beside the document goes with the next save.
    saveDocument(*one, path);
    QCOMPARE(QDir(QFileInfo(path).path()).entryList(QDir::Files | QDir::Hidden),
             QStringList(QFileInfo(path).fileName()));
}

QTEST_MAIN(TestDocumentSurvival)
#include "tst_documentsurvival.moc"
