#include "flipbook/base/failure.h"
#include "flipbook/base/outputfile.h"
#include "flipbook/base/outputfolder.h"
#include "flipbook/document/documentfile.h"
#include "tests/flipbook/documentfixture.h"

#include <QtTest/QTest>

#include <csignal>
#include <sys/resource.h>

namespace
{

/// No file can grow beyond @p bytes while this lives, as on a disk that is full.
class SmallDisk
{
public:
    explicit SmallDisk(rlim_t bytes)
    {
        // Writing is refused with an error then, not with a signal.
        std::signal(SIGXFSZ, SIG_IGN);
        getrlimit(RLIMIT_FSIZE, &m_before);
        const rlimit limit{bytes, m_before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    ~SmallDisk() { setrlimit(RLIMIT_FSIZE, &m_before); }

private:
    Q_DISABLE_COPY(SmallDisk)
    rlimit m_before{};
};

} // namespace

class TestOutputFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFullDiskIsNoticed_data()
    {
        QTest::addColumn<int>("room");
        QTest::addColumn<int>("size");
        QTest::newRow("a single byte") << 0 << 1;
        QTest::newRow("what a buffer would hold") << 1000 << 1001;
        QTest::newRow("much") << 100000 << 200000;
    }

    void aFullDiskIsNoticed()
    {
        QFETCH(int, room);
        QFETCH(int, size);
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("out"));
        writeBytes(path, "kept");
        QString reason;
        try {
            const SmallDisk disk{rlim_t(room)};
            writeFile(path, QByteArray(size, 'x'));
        } catch (const Failure &failure) {
            reason = failure.reason;
        }
        QCOMPARE(reason, QStringLiteral("cannot be written: File too large"));
        QCOMPARE(bytesOf(path), QByteArray("kept"));
        QCOMPARE(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden),
                 QStringList(QStringLiteral("out")));
    }

    void aDiskThatIsFullAtAnyByteKeepsTheOldDocument()
    {
        const DocumentFixture fixture;
        const auto before = fixture.document({Qt::red});
        const auto after = fixture.document({Qt::green, Qt::blue});
        const QString path = fixture.path(QStringLiteral("doc.flipbook"));
        saveDocument(*after, path);
        const QByteArray whole = bytesOf(path);
        saveDocument(*before, path);
        const QByteArray kept = bytesOf(path);
        for (int room = 0; room < whole.size(); ++room) {
            bool isRefused = false;
            try {
                const SmallDisk disk{rlim_t(room)};
                saveDocument(*after, path);
            } catch (const Failure &) {
                isRefused = true;
            }
            QVERIFY2(isRefused, qPrintable(QString::number(room)));
            QVERIFY2(bytesOf(path) == kept, qPrintable(QString::number(room)));
        }
        const SmallDisk disk{rlim_t(whole.size())};
        saveDocument(*after, path);
        QCOMPARE(bytesOf(path), whole);
    }

    void aFolderMayBeNamedWithASlash()
    {
        const QTemporaryDir folder;
        for (const char *name : {"plain", "slash/", "slashes///"}) {
            const QString path = folder.filePath(QString::fromLatin1(name));
            // And again, now that it is there.
            for (int i = 0; i < 2; ++i) {
                OutputFolder(path).finish();
                QVERIFY2(QFileInfo(path).isDir(), name);
            }
        }
        QString reason;
        try {
            OutputFolder(folder.filePath(QStringLiteral("not/there/")));
        } catch (const Failure &failure) {
            reason = failure.reason;
        }
        QCOMPARE(reason, QStringLiteral("its folder does not exist"));
    }

    void whatFitsIsWritten()
    {
        const QTemporaryDir folder;
        const QString path = folder.filePath(QStringLiteral("out"));
        const QByteArray bytes(1000, 'x');
        {
            const SmallDisk disk{1000};
            writeFile(path, bytes);
        }
        QCOMPARE(bytesOf(path), bytes);
    }
};

QTEST_MAIN(TestOutputFile)
#include "tst_outputfile.moc"
