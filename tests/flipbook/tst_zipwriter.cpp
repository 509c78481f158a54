#include "flipbook/base/zipwriter.h"

#include <KZip>
#include <QtCore/QBuffer>
#include <QtTest/QTest>

namespace
{

/// The files of an archive that has no folders, by their names.
QMap<QString, QByteArray> filesOf(QByteArray archive)
{
    QBuffer buffer(&archive);
    KZip zip(&buffer);
    QMap<QString, QByteArray> files;
    if (!zip.open(QIODevice::ReadOnly))
        return files;
    const QStringList names = zip.directory()->entries();
    for (const QString &name : names)
        files.insert(name, zip.directory()->file(name)->data());
    return files;
}

} // namespace

/// Zip archives as they are written: documents and Scratch packages.
class TestZipWriter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesComeBackAsTheyWereAdded();
    void theFirstOfTwoFilesWithOneNameIsKept();
    void picturesAreNotCompressedAgain();
    void equalContentsGiveEqualBytes();
    void moreFilesThanFit16BitsComeBack();
};

void TestZipWriter::filesComeBackAsTheyWereAdded()
{
    QByteArray allBytes;
    for (int i = 0; i < 100000; ++i)
        allBytes.append(char(i % 251));
    const QMap<QString, QByteArray> files{
        {QStringLiteral("empty.json"), QByteArray()},
        {QStringLiteral("large.json"), allBytes},
        {QStringLiteral("large.png"), allBytes},
        {QString::fromUtf8("\u706f\u7b3c.json"), QByteArray("lantern")},
    };
    ZipWriter zip;
    for (auto file = files.cbegin(); file != files.cend(); ++file)
        zip.add(file.key(), file.value());
    QCOMPARE(filesOf(zip.finished()), files);
}

void TestZipWriter::theFirstOfTwoFilesWithOneNameIsKept()
{
    ZipWriter zip;
    zip.add(QStringLiteral("a.png"), "first");
    zip.add(QStringLiteral("a.png"), "second");
    const QMap<QString, QByteArray> expected{{QStringLiteral("a.png"), "first"}};
    QCOMPARE(filesOf(zip.finished()), expected);
}

void TestZipWriter::picturesAreNotCompressedAgain()
{
    const QByteArray bytes(1000, 'x');
    ZipWriter pictures;
    pictures.add(QStringLiteral("a.png"), bytes);
    QVERIFY(pictures.finished().contains(bytes));
    ZipWriter others;
    others.add(QStringLiteral("a.json"), bytes);
    QVERIFY(others.finished().size() < 200);
}

void TestZipWriter::equalContentsGiveEqualBytes()
{
    QByteArray archives[2];
    for (QByteArray &archive : archives) {
        ZipWriter zip;
        zip.add(QStringLiteral("a.json"), "{}");
        archive = zip.finished();
    }
    QCOMPARE(archives[0], archives[1]);
    // At the beginning, from the eleventh byte on: the time 00:00, and 1 January 1980.
    QCOMPARE(archives[0].mid(10, 4).toHex(), QByteArray("00002100"));
}

void TestZipWriter::moreFilesThanFit16BitsComeBack()
{
    constexpr int count = 70000;
    ZipWriter zip;
    for (int i = 0; i < count; ++i)
        zip.add(QStringLiteral("%1.png").arg(i), QByteArray::number(i));
    const QMap<QString, QByteArray> files = filesOf(zip.finished());
    QCOMPARE(files.size(), count);
    QCOMPARE(files.value(QStringLiteral("69999.png")), QByteArray("69999"));
}

QTEST_GUILESS_MAIN(TestZipWriter)
#include "tst_zipwriter.moc"
