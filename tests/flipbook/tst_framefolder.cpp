#include "flipbook/base/failure.h"
#include "flipbook/base/privatefolder.h"
#include "flipbook/base/reading.h"
#include "flipbook/import/framefolder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtTest/QTest>

#include <sys/stat.h>
#include <unistd.h>

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
    void namesAreTakenAsTheyStand();
    void picturesOutsideAreRefused_data();
    void picturesOutsideAreRefused();
    void picturesOutsideAreReadOnRequest();
    void theCopyHoldsWhatWasLookedAt();
    void whatWasReadIsKnown();

private:
    void writeConfig(const QByteArray &text) const;
    QStringList warnings(qint64 maxMemory = 1 << 20) const;
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

QStringList TestFrameFolder::warnings(qint64 maxMemory) const
{
    Reading reading(maxMemory, false);
    const Source source = reading.open(m_folder->path());
    PrivateFolder copies;
    return copyFrameFolder(source.folder, m_folder->path(), reading, copies).warnings;
}

QString TestFrameFolder::failure() const
{
    try {
        warnings();
    } catch (const Failure &failure) {
        return failure.reason;
    }
    return QString();
}

void TestFrameFolder::aSoundFolderGivesNoWarning()
{
    writeConfig(R"({"ImageList": [{"filename": "a.png"}, {"filename": "./a.png"}],
        "ShiftInterval": 40, "LoopCount": -1, "LockScale": false, "Comment": 3})");
    QCOMPARE(warnings(), QStringList());

    // A byte-order mark is not a fault.
    writeConfig("\xef\xbb\xbf{\"ImageList\": [{\"filename\": \"a.png\"}]}");
    QCOMPARE(warnings(), QStringList());
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
    row("an array", R"([{"filename": "a.png"}])", "it contains an array, not an object");
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
    element("a number for a frame's name", R"({"filename": "a.png", "name": 7})",
            "\"name\" of element 2 is not a text and is ignored");
    element("a missing picture", R"({"filename": "b.png"})",
            "\"filename\" of element 2, 'b.png', not found; its frame is empty");
    element("a folder", R"({"filename": "."})",
            "\"filename\" of element 2, '.', is a folder; its frame is empty");
    element("no picture", R"({"filename": "config.json"})",
            "\"filename\" of element 2, 'config.json', is not a picture that can be read; its "
            "frame is empty");
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
    QCOMPARE(warnings(), QStringList(QStringLiteral("config.json: ") + warning));
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
    QCOMPARE(failure(),
             QStringLiteral("\"filename\" of element 1, 'pipe.png', is a pipe, not a file"));
}

void TestFrameFolder::picturesBeyondTheBudgetAreRefused()
{
    QVERIFY(Pictures::solid(40, 30, Qt::red).save(m_folder->filePath(QStringLiteral("b.png"))));
    writeConfig(R"({"ImageList": [{"filename": "b.png"}, {"filename": "b.png"}]})");
    // 40 x 30 pixels of 4 bytes, and 1,024 bytes for the frame: 11,648 for both.
    QVERIFY_EXCEPTION_THROWN(warnings(11647), OverBudget);
    QCOMPARE(warnings(11648), QStringList());
}

void TestFrameFolder::namesAreTakenAsTheyStand()
{
    // Where there is no such file, Qt continues to look for it with the endings of pictures.
    QCOMPARE(::mkfifo(qPrintable(m_folder->filePath(QStringLiteral("b.png"))), 0600), 0);
    writeConfig(R"({"ImageList": [{"filename": "b"}, {"filename": "a"}, {"filename": "a.png"}]})");
    QCOMPARE(warnings(),
             QStringList({QStringLiteral("config.json: \"filename\" of element 1, 'b', not found; "
                                         "its frame is empty"),
                          QStringLiteral("config.json: \"filename\" of element 2, 'a', not found; "
                                         "its frame is empty")}));
}

void TestFrameFolder::picturesOutsideAreRefused_data()
{
    QTest::addColumn<QString>("name");
    QTest::newRow("by dots") << QStringLiteral("../secret.png");
    QTest::newRow("by dots that come back") << QStringLiteral("../%1/../secret.png");
    QTest::newRow("by a link") << QStringLiteral("link.png");
    QTest::newRow("by a link to the folder outside") << QStringLiteral("sub/secret.png");
}

void TestFrameFolder::picturesOutsideAreRefused()
{
    QFETCH(QString, name);
    const QString outside = m_folder->filePath(QStringLiteral("../secret.png"));
    QVERIFY(Pictures::solid(4, 3, Qt::blue).save(outside));
    QVERIFY(QFile::link(outside, m_folder->filePath(QStringLiteral("link.png"))));
    QVERIFY(QFile::link(m_folder->filePath(QStringLiteral("..")),
                        m_folder->filePath(QStringLiteral("sub"))));
    if (name.contains(QLatin1Char('%')))
        name = name.arg(QDir(m_folder->path()).dirName());
    writeConfig(R"({"ImageList": [{"filename": ")" + name.toUtf8() + R"("}]})");
    QCOMPARE(failure(), QStringLiteral("\"filename\" of element 1, '%1', leads out of the folder; "
                                       "--allow-outside reads it")
                            .arg(name));
    QFile::remove(outside);
}

void TestFrameFolder::picturesOutsideAreReadOnRequest()
{
    QVERIFY(
        Pictures::solid(4, 3, Qt::blue).save(m_folder->filePath(QStringLiteral("outside.png"))));
    const QString inner = m_folder->filePath(QStringLiteral("inner"));
    QVERIFY(QDir().mkdir(inner));
    QFile config(inner + QStringLiteral("/config.json"));
    QVERIFY(config.open(QIODevice::WriteOnly));
    config.write(R"({"ImageList": [{"filename": "../outside.png"}]})");
    config.close();
    Reading reading(1 << 20, true);
    PrivateFolder copies;
    const FrameFolder copy = copyFrameFolder(reading.open(inner).folder, inner, reading, copies);
    QCOMPARE(copy.warnings, QStringList());
    QCOMPARE(QDir(copy.copy).entryList(QDir::Files),
             QStringList({QStringLiteral("1.png"), QStringLiteral("config.json")}));
}

void TestFrameFolder::theCopyHoldsWhatWasLookedAt()
{
    writeConfig(R"({"ImageList": [{"filename": "a.png"}, {"filename": "b.png"}, {},
        {"filename": "a.png"}], "ShiftInterval": 70})");
    QString copy;
    {
        Reading reading(1 << 20, false);
        PrivateFolder copies;
        copy = copyFrameFolder(reading.open(m_folder->path()).folder, m_folder->path(), reading,
                               copies)
                   .copy;
        QCOMPARE(QDir(copy).dirName(), QDir(m_folder->path()).dirName());
        QFile config(copy + QStringLiteral("/config.json"));
        QVERIFY(config.open(QIODevice::ReadOnly));
        QCOMPARE(config.readAll(),
                 QByteArray(R"({"ImageList":[{"filename":"1.png"},{"filename":"none"},{},)"
                            R"({"filename":"1.png"}],"ShiftInterval":70})"));
        QCOMPARE(QDir(copy).entryList(QDir::Files),
                 QStringList({QStringLiteral("1.png"), QStringLiteral("config.json")}));
    }
    QVERIFY(!QFile::exists(copy));
}

void TestFrameFolder::whatWasReadIsKnown()
{
    QVERIFY(Pictures::solid(4, 3, Qt::blue).save(m_folder->filePath(QStringLiteral("b.png"))));
    writeConfig(R"({"ImageList": [{"filename": "a.png"}]})");
    const QString hard = m_folder->filePath(QStringLiteral("hard"));
    QCOMPARE(::link(qPrintable(m_folder->filePath(QStringLiteral("a.png"))), qPrintable(hard)), 0);
    const QString link = m_folder->filePath(QStringLiteral("link"));
    QVERIFY(QFile::link(m_folder->filePath(QStringLiteral("a.png")), link));
    Reading reading(1 << 20, false);
    PrivateFolder copies;
    copyFrameFolder(reading.open(m_folder->path()).folder, m_folder->path(), reading, copies);
    for (const char *read : {"config.json", "a.png", "hard", "link"})
        QVERIFY2(reading.hasRead(m_folder->filePath(QLatin1String(read))), read);
    for (const char *other : {"b.png", "missing"})
        QVERIFY2(!reading.hasRead(m_folder->filePath(QLatin1String(other))), other);
}

QTEST_MAIN(TestFrameFolder)
#include "tst_framefolder.moc"
