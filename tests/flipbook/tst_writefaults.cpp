#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"

#include <QtCore/QDirIterator>
#include <QtTest/QTest>

#include <cerrno>

/// Each command that writes, with each of its calls to the disk failing in turn, and killed at it.
class TestWriteFaults : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void outputsAreOldOrNew_data();
    void outputsAreOldOrNew();
};

namespace
{

constexpr char folderMark[] = "a folder";

using Contents = QMap<QString, QByteArray>;

/// All files of @p folder and of the folders in it, by their paths.
Contents contentsOf(const QString &folder)
{
    Contents contents;
    QDirIterator files(folder, QDir::Files | QDir::Dirs | QDir::Hidden | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (files.hasNext()) {
        const QString path = files.next();
        contents.insert(path.mid(folder.size()),
                        files.fileInfo().isDir() ? QByteArray(folderMark) : bytesOf(path));
    }
    return contents;
}

void makeInputs(const QString &folder)
{
    GifBuilder(8, 6)
        .add({QRect(0, 0, 8, 6), 1})
        .add({QRect(0, 0, 8, 6), 2})
        .write(folder + QStringLiteral("/film.gif"));
    QCOMPARE(flipbookIn(folder, {QStringLiteral("new"), QStringLiteral("doc.flipbook"),
                                 QStringLiteral("--add"), QStringLiteral("film.gif")})
                 .status,
             0);
    QVERIFY(QDir(folder).mkdir(QStringLiteral("empty")));
}

struct Fault {
    const char *call;
    int number; ///< which of the calls, from 1
    int error;  ///< 0: the process is killed
};

/// Makes @p folder hold the same.
void restore(const QString &folder, const Contents &contents)
{
    for (auto entry = contents.begin(); entry != contents.end(); ++entry) {
        if (entry.value() == folderMark)
            QDir().mkpath(folder + entry.key());
        else
            writeBytes(folder + entry.key(), entry.value());
    }
}

/// Runs @p arguments with one fault. False when the call was not reached.
bool runWithFault(const QString &folder, const QString &arguments, const Fault &fault,
                  FlipbookRun &run)
{
    QTemporaryDir reports;
    const QString report = reports.filePath(QStringLiteral("reached"));
    run = flipbookIn(folder, arguments.split(QLatin1Char(' ')),
                     {QStringLiteral("LD_PRELOAD=" FAULTS_LIBRARY),
                      QStringLiteral("ASAN_OPTIONS=verify_asan_link_order=0"),
                      QStringLiteral("TMPDIR=") + reports.path(),
                      QStringLiteral("FAULT_CALL=") + QLatin1String(fault.call),
                      QStringLiteral("FAULT_NUMBER=%1").arg(fault.number),
                      QStringLiteral("FAULT_ERROR=%1").arg(fault.error),
                      QStringLiteral("FAULT_REPORT=") + report});
    return QFileInfo::exists(report);
}

/// Whether the program has reached the fault; then the outputs are as they must be.
bool checkFault(const QString &arguments, const Fault &fault, const Contents &before,
                const Contents &after)
{
    const QTemporaryDir folder;
    restore(folder.path(), before);
    FlipbookRun run;
    if (!runWithFault(folder.path(), arguments, fault, run))
        return false;
    const bool isKilled = fault.error == 0;
    // What a killed process leaves is removed by the next.
    if (isKilled && contentsOf(folder.path()) != after)
        run = flipbookIn(folder.path(), arguments.split(QLatin1Char(' ')));
    const Contents now = contentsOf(folder.path());
    const bool isWhole = now == after || (!isKilled && now == before);
    const bool isTold = isKilled || run.status == 1 || (run.status == 0 && now == after);
    if (isWhole && isTold)
        return true;
    const QString text = QStringLiteral("%1 %2, error %3: status %4, %5")
                             .arg(QLatin1String(fault.call))
                             .arg(fault.number)
                             .arg(fault.error)
                             .arg(run.status)
                             .arg(run.err);
    QTest::qFail(qPrintable(text), __FILE__, __LINE__);
    return false;
}

} // namespace

void TestWriteFaults::outputsAreOldOrNew_data()
{
    QTest::addColumn<QString>("arguments");
    for (const char *arguments :
         {"edit doc.flipbook --duplicate 1:1", "new fresh.flipbook --add film.gif",
          "new doc.flipbook --force --add film.gif film.gif", "render doc.flipbook -o page.png",
          "sheet film.gif -o sheet.png", "frames film.gif -o frames", "frames film.gif -o empty",
          "record doc.flipbook -o film --seconds 0.1", "sprite doc.flipbook -o one.sprite3",
          "project doc.flipbook -o all.sb3", "gif film.gif -o out.gif", "webp film.gif -o out.webp",
          "apng film.gif -o out.png", "atlas film.gif -o sheet.png --json sheet.json",
          "web doc.flipbook -o page.html"})
        QTest::newRow(arguments) << QString::fromLatin1(arguments);
}

void TestWriteFaults::outputsAreOldOrNew()
{
    QFETCH(QString, arguments);
    const QTemporaryDir reference;
    makeInputs(reference.path());
    const Contents before = contentsOf(reference.path());
    QCOMPARE(flipbookIn(reference.path(), arguments.split(QLatin1Char(' '))).status, 0);
    const Contents after = contentsOf(reference.path());
    QVERIFY(before != after);

    int faults = 0;
    for (const char *call : {"write", "fsync", "close", "linkat", "rename", "mkdir"}) {
        for (const int error : {call == QByteArray("write") ? ENOSPC : EIO, 0}) {
            for (int number = 1; checkFault(arguments, {call, number, error}, before, after);
                 ++number)
                ++faults;
        }
    }
    // At the least a write, a flush, a close and a rename, in two ways each.
    QVERIFY2(faults >= 8, qPrintable(QString::number(faults)));
    qInfo("%d faults", faults);
}

QTEST_GUILESS_MAIN(TestWriteFaults)
#include "tst_writefaults.moc"
