#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtTest/QTest>

#include <sys/stat.h>

/// What "flipbook edit" says of operations that cannot be done, and that it then does none.
class TestEditRefusals : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void operationsThatDoNotFitTheFilm_data();
    void operationsThatDoNotFitTheFilm();
    void filesThatCannotBeRead_data();
    void filesThatCannotBeRead();
    void wrongUsageIsToldBeforeAnythingIsRead_data();
    void wrongUsageIsToldBeforeAnythingIsRead();
    void placesAndSizesThatAreNone_data();
    void placesAndSizesThatAreNone();
    void aLaterOperationIsJudgedByWhatTheEarlierOnesLeave();
    void picturesBeyondTheBudgetAreRefused();
    void onlyDocumentsAreEdited();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QStringList expanded(QStringList words) const;
    FlipbookRun edit(const QStringList &operations) const;
    void verifyWrongUsage(const QString &operation, const QString &message) const;
    void verifyNothingChanged() const;

    QTemporaryDir m_folder;
    QString m_document;
    QByteArray m_bytes;
    QStringList m_files;
};

void TestEditRefusals::initTestCase()
{
    const QString film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).loop(0).add(0, 10).add(1, 10).add(2, 10).write(film);
    m_document = path(QStringLiteral("doc.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), film}).status,
             0);
    m_bytes = bytesOf(m_document);
    QVERIFY(!m_bytes.isEmpty());

    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(path(QStringLiteral("sun.png"))));
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(path(QStringLiteral("png.gif")), "png"));
    writeBytes(path(QStringLiteral("text.png")), "just a few words\n");
    writeBytes(path(QStringLiteral("empty.png")), "");
    writeBytes(path(QStringLiteral("cut.png")), bytesOf(path(QStringLiteral("sun.png"))).left(45));
    QCOMPARE(::mkfifo(qPrintable(path(QStringLiteral("pipe.png"))), 0600), 0);
    m_files = QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden);
}

/// DIR/ in a word stands for the test's folder.
QStringList TestEditRefusals::expanded(QStringList words) const
{
    return words.replaceInStrings(QStringLiteral("DIR/"), m_folder.path() + QLatin1Char('/'));
}

/// Between two operations that can be done.
FlipbookRun TestEditRefusals::edit(const QStringList &operations) const
{
    QStringList arguments = {QStringLiteral("edit"), m_document, QStringLiteral("--rename"),
                             QStringLiteral("1=changed")};
    arguments += expanded(operations);
    arguments << QStringLiteral("--mirror");
    return flipbook(arguments);
}

void TestEditRefusals::verifyNothingChanged() const
{
    QVERIFY(bytesOf(m_document) == m_bytes);
    QCOMPARE(QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::System | QDir::Hidden),
             m_files);
}

void TestEditRefusals::operationsThatDoNotFitTheFilm_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *operation, const char *reason) {
        QTest::newRow(operation) << QString::fromLatin1(operation) << QString::fromLatin1(reason);
    };
    row("--insert-blank 0", "a new frame can be number 1 to 4, not 0");
    row("--insert-blank 5", "a new frame can be number 1 to 4, not 5");
    row("--insert-blank 2147483647", "a new frame can be number 1 to 4, not 2147483647");
    row("--duplicate 0:1", "there is no frame 0 (the last is 3)");
    row("--duplicate 4:1", "there is no frame 4 (the last is 3)");
    row("--duplicate 1:0", "a new frame can be number 1 to 4, not 0");
    row("--duplicate 1:5", "a new frame can be number 1 to 4, not 5");
    row("--rename 0=cat", "there is no frame 0 (the last is 3)");
    row("--rename 4=cat", "there is no frame 4 (the last is 3)");
    row("--delete 0", "there is no frame 0 (the last is 3)");
    row("--delete 4", "there is no frame 4 (the last is 3)");
    row("--delete 2-4", "there is no frame 4 (the last is 3)");
    row("--delete 0-2", "there is no frame 0 (the last is 3)");
    row("--delete 1-3", "a film needs a frame; not all can be deleted");
    row("--scale 0.1", "the object would be 0.4 x 0.3; a side is 1 to 100000");
    row("--raise", "the object is at the top");
    row("--lower", "the object is at the bottom");
    row("--move 0:1", "there is no frame 0 (the last is 3)");
    row("--move 4:1", "there is no frame 4 (the last is 3)");
    row("--move 1:0", "there is no frame 0 (the last is 3)");
    row("--move 1:4", "there is no frame 4 (the last is 3)");
    row("--insert 0=DIR/sun.png", "a new frame can be number 1 to 4, not 0");
    row("--insert 5=DIR/sun.png", "a new frame can be number 1 to 4, not 5");
    row("--replace 0=DIR/sun.png", "there is no frame 0 (the last is 3)");
    row("--replace 4=DIR/sun.png", "there is no frame 4 (the last is 3)");
}

void TestEditRefusals::operationsThatDoNotFitTheFilm()
{
    QFETCH(QString, operation);
    QFETCH(QString, reason);
    const QStringList words = operation.split(QLatin1Char(' '));
    const FlipbookRun run = edit(words);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: %2: %3\n")
                          .arg(m_document, expanded(words).join(QLatin1Char(' ')), reason));
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 1);
    verifyNothingChanged();
}

void TestEditRefusals::filesThatCannotBeRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("reason");
    const auto row = [](const char *name, const char *reason) {
        QTest::newRow(name) << QString::fromLatin1(name) << QString::fromLatin1(reason);
    };
    const char *noPicture =
        "not a picture that can be read; those are PNG, JPEG, GIF, BMP, PBM, PGM, PPM and WebP";
    row("missing.png", "not found");
    row("text.png", noPicture);
    row("empty.png", noPicture);
    row("cut.png", "the picture cannot be read: it is cut short or damaged");
    row("pipe.png", "is a pipe, not a file");
    row("png.gif", "not a GIF: it is a picture of the format PNG; rename it");
    row("doc.flipbook", noPicture);
    row("", "is a folder");
}

void TestEditRefusals::filesThatCannotBeRead()
{
    QFETCH(QString, name);
    QFETCH(QString, reason);
    const QString file = m_folder.path() + QLatin1Char('/') + name;
    const QList<QPair<QString, QString>> operations = {
        {QStringLiteral("--insert"), QStringLiteral("2=") + file},
        {QStringLiteral("--replace"), QStringLiteral("2=") + file},
        {QStringLiteral("--replace-all"), file}};
    for (const auto &operation : operations) {
        const FlipbookRun run = edit({operation.first, operation.second});
        const QString message =
            QStringLiteral("flipbook: %1: %2 %3: %4: %5\n")
                .arg(m_document, operation.first, operation.second, file, reason);
        // Of a damaged picture the library that reads it may say something before.
        QVERIFY2(run.err.endsWith(message), qPrintable(run.err));
        QVERIFY(run.err == message || name == QLatin1String("cut.png"));
        QCOMPARE(run.status, 1);
        verifyNothingChanged();
    }
}

void TestEditRefusals::wrongUsageIsToldBeforeAnythingIsRead_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *operation, const char *message) {
        QTest::newRow(operation) << QString::fromLatin1(operation) << QString::fromLatin1(message);
    };
    const auto noNumber =
        [](const char *operation, const char *text, const char *least = "0") {
            const QString given = QString::fromLatin1(operation);
            QTest::newRow(operation)
                << given
                << QStringLiteral("%1: '%2' is not a whole number from %3 to 2147483647")
                       .arg(given.trimmed(), QLatin1String(text), QLatin1String(least));
        };
    noNumber("--insert-blank x", "x");
    noNumber("--insert-blank -1", "-1");
    noNumber("--insert-blank 1.5", "1.5");
    noNumber("--insert-blank 2147483648", "2147483648");
    noNumber("--insert-blank ", "");
    noNumber("--duplicate x:1", "x");
    noNumber("--duplicate 1:", "");
    noNumber("--duplicate :1", "");
    noNumber("--duplicate 1:2:3", "2:3");
    row("--duplicate 1", "--duplicate 1: '1' has no ':'");
    row("--duplicate 1=2", "--duplicate 1=2: '1=2' has no ':'");
    noNumber("--rename x=cat", "x");
    noNumber("--rename =cat", "");
    row("--rename 1", "--rename 1: '1' has no '='");
    noNumber("--delete 0x1", "0x1");
    noNumber("--delete 1,2", "1,2");
    noNumber("--move a:b", "a");
    noNumber("--move 1:b", "b");
    row("--move 12", "--move 12: '12' has no ':'");
    row("--insert DIR/sun.png", "--insert DIR/sun.png: 'DIR/sun.png' has no '='");
    row("--insert 1=", "--insert 1=: a file is missing");
    noNumber("--insert x=DIR/sun.png", "x");
    row("--replace 1:DIR/sun.png", "--replace 1:DIR/sun.png: '1:DIR/sun.png' has no '='");
    row("--replace 1=", "--replace 1=: a file is missing");
    row("--replace-all ", "--replace-all: a file is missing");
    noNumber("--interval fast", "fast", "1");
    noNumber("--interval 0", "0", "1");
    noNumber("--interval -80", "-80", "1");
    noNumber("--loops often", "often", "1");
    noNumber("--loops -1", "-1", "1");
    noNumber("--loops 0", "0", "1");
    row("--type tiled", "--type tiled: 'tiled' is neither 'normal' nor 'background'");
    row("--type Normal", "--type Normal: 'Normal' is neither 'normal' nor 'background'");
    row("--mirror=yes", "Unexpected value after '--mirror'.");
    row("--flip=", "Unexpected value after '--flip'.");
    row("--shuffle", "'--shuffle' is not an option of edit");
    row("--object 0", "--object takes a whole number from 1 to 100000, not '0'");
    row("--object 1 --object x", "--object takes a whole number from 1 to 100000, not 'x'");
    noNumber("--delete 1-x", "x");
    noNumber("--delete 1-", "");
    noNumber("--delete -1", "-1");
    row("--delete 3-2", "--delete 3-2: '3-2' ends before it begins");
    row("--add ", "--add: a file is missing");
    row("--remove=1", "Unexpected value after '--remove'.");
    row("another.flipbook", "'another.flipbook' is one file too many");
}

void TestEditRefusals::wrongUsageIsToldBeforeAnythingIsRead()
{
    QFETCH(QString, operation);
    QFETCH(QString, message);
    verifyWrongUsage(operation, message);
}

void TestEditRefusals::placesAndSizesThatAreNone_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<QString>("message");
    const auto row = [](const char *operation, const char *message) {
        QTest::newRow(operation) << QString::fromLatin1(operation) << QString::fromLatin1(message);
    };
    const auto noReal = [](const char *operation, const char *text, const char *least,
                           const char *most) {
        const QString given = QString::fromLatin1(operation);
        QTest::newRow(operation) << given
                                 << QStringLiteral("%1: '%2' is not a number from %3 to %4")
                                        .arg(given.trimmed(), QLatin1String(text),
                                             QLatin1String(least), QLatin1String(most));
    };
    noReal("--fps 0", "0", "0.001", "1000");
    noReal("--fps -24", "-24", "0.001", "1000");
    noReal("--fps 1001", "1001", "0.001", "1000");
    noReal("--fps nan", "nan", "0.001", "1000");
    noReal("--fps ", "", "0.001", "1000");
    row("--move-to 10", "--move-to 10: '10' has no ','");
    noReal("--move-to 10,", "", "-100000", "100000");
    noReal("--move-to nan,0", "nan", "-100000", "100000");
    noReal("--move-to 0,inf", "inf", "-100000", "100000");
    noReal("--move-to 100001,0", "100001", "-100000", "100000");
    noReal("--move-to 1,2,3", "2,3", "-100000", "100000");
    row("--size 10", "--size 10: '10' has no 'x'");
    noReal("--size 0x10", "0", "1", "100000");
    noReal("--size 10x0.5", "0.5", "1", "100000");
    noReal("--size -10x10", "-10", "1", "100000");
    noReal("--size 10x1e300", "1e300", "1", "100000");
    noReal("--size nanxnan", "nan", "1", "100000");
    noReal("--page-size 0x10", "0", "1", "100000");
    noReal("--page-size 10x100001", "100001", "1", "100000");
    row("--page-size large", "--page-size large: 'large' has no 'x'");
    noReal("--scale 0", "0", "0.001", "1000");
    noReal("--scale -2", "-2", "0.001", "1000");
    noReal("--scale nan", "nan", "0.001", "1000");
    noReal("--scale 1e9", "1e9", "0.001", "1000");
    noReal("--rotate 361", "361", "-360", "360");
    noReal("--rotate right", "right", "-360", "360");
}

void TestEditRefusals::placesAndSizesThatAreNone()
{
    QFETCH(QString, operation);
    QFETCH(QString, message);
    verifyWrongUsage(operation, message);
}

void TestEditRefusals::verifyWrongUsage(const QString &operation, const QString &message) const
{
    const QString first = QStringLiteral("flipbook: %1\n").arg(expanded({message}).constFirst());
    const QString second = QStringLiteral("flipbook: see 'flipbook edit --help'\n");
    const FlipbookRun run = edit(operation.split(QLatin1Char(' ')));
    QCOMPARE(run.err, first + second);
    QCOMPARE(run.out, QString());
    QCOMPARE(run.status, 2);
    verifyNothingChanged();

    // The same where no document is.
    QStringList arguments = {QStringLiteral("edit"), path(QStringLiteral("missing.flipbook"))};
    arguments += expanded(operation.split(QLatin1Char(' ')));
    const FlipbookRun without = flipbook(arguments);
    QCOMPARE(without.err, first + second);
    QCOMPARE(without.status, 2);
}

void TestEditRefusals::aLaterOperationIsJudgedByWhatTheEarlierOnesLeave()
{
    const auto words = [](const char *text) {
        return QString::fromLatin1(text).split(QLatin1Char(' '));
    };
    FlipbookRun run = edit(words("--delete 3 --rename 3=cat"));
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: --rename 3=cat: there is no frame 3 (the last is 2)\n")
                 .arg(m_document));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();

    run = edit(words("--delete 1 --delete 1 --delete 1"));
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: --delete 1: the only frame cannot be deleted\n")
                          .arg(m_document));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();

    run = edit(words("--replace-all DIR/sun.png --loops 3 --type background --move 1:2"));
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: --move 1:2: there is no frame 2 (the last is 1)\n")
                 .arg(m_document));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();
}

void TestEditRefusals::picturesBeyondTheBudgetAreRefused()
{
    const QString vast = path(QStringLiteral("vast.png"));
    QVERIFY(Pictures::solid(2000, 1000, Qt::white).save(vast));
    const FlipbookRun run = edit({QStringLiteral("--max-memory"), QStringLiteral("100K"),
                                  QStringLiteral("--insert"), QStringLiteral("1=DIR/vast.png")});
    QVERIFY2(run.err.startsWith(
                 QStringLiteral("flipbook: %1: --insert 1=%2: %2: ").arg(m_document, vast)),
             qPrintable(run.err));
    QVERIFY2(run.err.endsWith(QStringLiteral("more than the 100.0 KiB that --max-memory allows\n")),
             qPrintable(run.err));
    QCOMPARE(run.status, 1);
    QVERIFY(QFile::remove(vast));
    verifyNothingChanged();
}

void TestEditRefusals::onlyDocumentsAreEdited()
{
    const QString film = path(QStringLiteral("film.gif"));
    const QByteArray before = bytesOf(film);
    const QStringList mirror(QStringLiteral("--mirror"));
    FlipbookRun run = flipbook(QStringList({QStringLiteral("edit"), film}) + mirror);
    QCOMPARE(
        run.err,
        QStringLiteral("flipbook: %1: is not a document; 'flipbook new' creates one\n").arg(film));
    QCOMPARE(run.status, 1);
    QVERIFY(bytesOf(film) == before);

    const QString missing = path(QStringLiteral("missing.flipbook"));
    run = flipbook(QStringList({QStringLiteral("edit"), missing}) + mirror);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: not found\n").arg(missing));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();

    run = flipbook({QStringLiteral("edit"), m_document});
    QCOMPARE(run.err, QStringLiteral("flipbook: there is nothing to do: an operation is missing\n"
                                     "flipbook: see 'flipbook edit --help'\n"));
    QCOMPARE(run.status, 2);
    verifyNothingChanged();
}

QTEST_GUILESS_MAIN(TestEditRefusals)
#include "tst_editrefusals.moc"
