#include "flipbook/base/failure.h"
#include "flipbook/import/framefolder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <sys/stat.h>

class TestFrameFolder : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void aSoundFolderGivesNoWarning();
    void unusableConfigsAreRefused_data();
    void unusableConfigsAreRefused();
    void wrongKeysAreNamed_data();
    void wrongKeysAreNamed();
    void aMissingConfigIsNamed();
    void aPipeAmongThePicturesIsRefused();
    void picturesBeyondTheBudgetAreRefused();
    void theFilesThatAreReadAreKnown();

private:
    void writeConfig(const QByteArray &text) const;
    QString failure() const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestFrameFolder::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QVERIFY(Pictures::solid(4, 3, Qt::red).save(m_folder->filePath(QStringLiteral("a.png"))));
}

void TestFrameFolder::writeConfig(const QByteArray &text) const
{
    QFile file(m_folder->filePath(QStringLiteral("config.json")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(text);
}

QString TestFrameFolder::failure() const
{
    try {
        examineFrameFolder(m_folder->path(), qint64(1) << 20);
    } catch (const Failure &failure) {
        return failure.reason;
    }
    return QString();
}

void TestFrameFolder::aSoundFolderGivesNoWarning()
{
    writeConfig(R"({"ImageList": [{"filename": "a.png"}, {"filename": "./a.png"}],
        "ShiftInterval": 40, "LoopCount": -1, "LockScale": false, "Comment": 3})");
    QCOMPARE(examineFrameFolder(m_folder->path(), 1 << 20), QStringList());

    // A byte-order mark is no fault.
    writeConfig("\xef\xbb\xbf{\"ImageList\": [{\"filename\": \"a.png\"}]}");
    QCOMPARE(examineFrameFolder(m_folder->path(), 1 << 20), QStringList());
}

void TestFrameFolder::unusableConfigsAreRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const QByteArray &text, const char *reason) {
        QTest::newRow(name) << text << QString::fromLatin1(reason);
    };
    row("empty", "", "the file is empty");
    row("spaces", " \n", "the file is empty");
    row("a zero byte first", QByteArray("\0{}", 3), "the file is empty");
    row("no JSON", "ImageList = a.png", "not JSON: illegal value at byte 1");
    row("cut short", R"({"ImageList": [)", "not JSON: unterminated array at byte 15");
    row("an array", R"([{"filename": "a.png"}])", "it holds an array, not an object");
    row("no list", R"({"ShiftInterval": 3})", "it has no \"ImageList\"");
    row("a list that is none", R"({"ImageList": "a.png"})", "\"ImageList\" is not an array");
    row("an empty list", R"({"ImageList": []})", "\"ImageList\" is empty");
    row("nesting without end", QByteArray(3000, '['),
        "not JSON: too deeply nested document at byte 1025");
}

void TestFrameFolder::unusableConfigsAreRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, reason);
    writeConfig(text);
    QCOMPARE(failure(), reason);
}

void TestFrameFolder::wrongKeysAreNamed_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("warning");
    const auto element = [](const char *name, const QByteArray &text, const char *warning) {
        QTest::newRow(name) << R"({"ImageList": [{"filename": "a.png"}, )" + text + "]}"
                            << QString::fromLatin1(warning);
    };
    const auto key = [](const char *name, const QByteArray &text, const char *warning) {
        QTest::newRow(name) << R"({"ImageList": [{"filename": "a.png"}], )" + text + "}"
                            << QString::fromLatin1(warning);
    };
    element("no name", "{}", "element 2 of \"ImageList\" has no \"filename\" and is skipped");
    element("no object", "7", "element 2 of \"ImageList\" has no \"filename\" and is skipped");
    element("a number for a name", R"({"filename": 7})",
            "\"filename\" of element 2 is not a text; its frame is empty");
    element("a missing picture", R"({"filename": "b.png"})",
            "\"filename\" of element 2, 'b.png', not found; its frame is empty");
    element("a folder", R"({"filename": "."})",
            "\"filename\" of element 2, '.', is a folder; its frame is empty");
    element("no picture", R"({"filename": "config.json"})",
            "\"filename\" of element 2, 'config.json', is no picture that can be read; its frame "
            "is empty");
    key("half a millisecond", R"("ShiftInterval": 120.5)",
        "\"ShiftInterval\" is not a whole number and counts as 0");
    key("a text for a number", R"("LoopCount": "3")",
        "\"LoopCount\" is not a whole number and counts as 0");
    key("a number for a switch", R"("ImageMirror": 1)",
        "\"ImageMirror\" is neither true nor false and counts as false");
}

void TestFrameFolder::wrongKeysAreNamed()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, warning);
    writeConfig(text);
    QCOMPARE(examineFrameFolder(m_folder->path(), 1 << 20),
             QStringList(QStringLiteral("config.json: ") + warning));
}

void TestFrameFolder::aMissingConfigIsNamed()
{
    QCOMPARE(failure(), QStringLiteral("config.json: not found"));
}

void TestFrameFolder::aPipeAmongThePicturesIsRefused()
{
    const QString pipe = m_folder->filePath(QStringLiteral("pipe.png"));
    QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
    writeConfig(R"({"ImageList": [{"filename": "pipe.png"}]})");
    QCOMPARE(failure(), QStringLiteral("\"filename\" of element 1, 'pipe.png', is a pipe or device "
                                       "and might never end"));
    writeConfig(R"({"ImageList": [{"filename": ")" + QByteArray("../").repeated(40) +
                R"(dev/zero"}]})");
    QVERIFY(failure().endsWith(QStringLiteral("is a pipe or device and might never end")));
}

void TestFrameFolder::picturesBeyondTheBudgetAreRefused()
{
    writeConfig(R"({"ImageList": [{"filename": "a.png"}, {"filename": "a.png"}]})");
    // 4 x 3 pixels of 4 bytes, twice each: 192 bytes for both.
    QVERIFY_EXCEPTION_THROWN(examineFrameFolder(m_folder->path(), 191), Failure);
    QCOMPARE(examineFrameFolder(m_folder->path(), 192), QStringList());
}

void TestFrameFolder::theFilesThatAreReadAreKnown()
{
    writeConfig(R"({"ImageList": [{"filename": "a.png"}, {"filename": "sub/b.png"}]})");
    const QString folder = m_folder->path();
    QCOMPARE(frameFolderFiles(folder), QStringList() << folder + QStringLiteral("/config.json")
                                                     << folder + QStringLiteral("/a.png")
                                                     << folder + QStringLiteral("/sub/b.png"));
}

QTEST_MAIN(TestFrameFolder)
#include "tst_framefolder.moc"
