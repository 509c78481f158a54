#include "flipbook/document/archivefile.h"

#include <QtCore/QFile>
#include <QtCore/QRandomGenerator>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <fcntl.h>

/// Files that are read here and there, compared with what was written to them.
class TestArchiveFile : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void bytesAreThoseOfTheirPlace_data();
    void bytesAreThoseOfTheirPlace();
    void readingEndsWhereTheFileEnds();
    void nothingIsReadWhenTheFileCannotBe();

private:
    std::unique_ptr<QFile> file(const QByteArray &bytes) const;

    QTemporaryDir m_folder;
};

std::unique_ptr<QFile> TestArchiveFile::file(const QByteArray &bytes) const
{
    auto file = std::make_unique<QFile>(m_folder.filePath(QStringLiteral("file")));
    if (!file->open(QIODevice::WriteOnly) || file->write(bytes) != bytes.size())
        return nullptr;
    file->close();
    return file->open(QIODevice::ReadOnly) ? std::move(file) : nullptr;
}

void TestArchiveFile::bytesAreThoseOfTheirPlace_data()
{
    QTest::addColumn<int>("size");
    for (const int size : {1, 4095, 4096, 4097, 8192, 100000})
        QTest::addRow("%d", size) << size;
}

void TestArchiveFile::bytesAreThoseOfTheirPlace()
{
    QFETCH(int, size);
    QRandomGenerator chance(7);
    QByteArray bytes(size, '\0');
    for (char &byte : bytes)
        byte = char(chance.bounded(256));
    ArchiveFile device(file(bytes));
    QCOMPARE(device.size(), qint64(size));
    QVERIFY(!device.isSequential());
    for (int i = 0; i < 20000; ++i) {
        if (chance.bounded(3) > 0)
            QVERIFY(device.seek(chance.bounded(size + 1)));
        const int at = int(device.pos());
        const int count = chance.bounded(chance.bounded(2) ? 50 : 10000);
        if (chance.bounded(4) == 0) {
            QCOMPARE(device.peek(count), bytes.mid(at, count));
            QCOMPARE(device.pos(), qint64(at));
        }
        QCOMPARE(device.read(count), bytes.mid(at, count));
        QCOMPARE(device.pos(), qint64(at + bytes.mid(at, count).size()));
        QCOMPARE(device.atEnd(), device.pos() == size);
    }
}

void TestArchiveFile::readingEndsWhereTheFileEnds()
{
    ArchiveFile device(file("PK and more"));
    QCOMPARE(device.peek(2), QByteArray("PK"));
    QCOMPARE(device.readAll(), QByteArray("PK and more"));
    QVERIFY(device.atEnd());
    QCOMPARE(device.read(5), QByteArray());
    QVERIFY(device.seek(3));
    QCOMPARE(device.read(100000), QByteArray("and more"));
    QVERIFY(device.seek(100));
    QCOMPARE(device.read(1), QByteArray());
    QVERIFY(device.seek(9));
    char letter = 0;
    QVERIFY(device.getChar(&letter));
    QCOMPARE(letter, 'r');

    ArchiveFile empty(file(QByteArray()));
    QCOMPARE(empty.size(), qint64(0));
    QCOMPARE(empty.peek(2), QByteArray());
    QCOMPARE(empty.readAll(), QByteArray());
}

void TestArchiveFile::nothingIsReadWhenTheFileCannotBe()
{
    // A folder can be opened, but not read.
    auto folder = std::make_unique<QFile>();
    const int handle = ::open(QFile::encodeName(m_folder.path()).constData(), O_RDONLY | O_CLOEXEC);
    QVERIFY(folder->open(handle, QIODevice::ReadOnly, QFileDevice::AutoCloseHandle));
    ArchiveFile device(std::move(folder));
    QCOMPARE(device.read(3), QByteArray());
    QCOMPARE(device.read(100000), QByteArray());
}

QTEST_GUILESS_MAIN(TestArchiveFile)
#include "tst_archivefile.moc"
