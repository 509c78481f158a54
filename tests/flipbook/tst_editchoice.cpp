#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtTest/QTest>

/// What "flipbook edit" says when it is not clear which object is to be edited, and that it then
/// edits none.
class TestEditChoice : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void everyOperationNeedsAnObject_data();
    void everyOperationNeedsAnObject();
    void theObjectMustBeThereAndChosen();

private:
    QString path(const QString &name) const { return m_folder.filePath(name); }
    QStringList expanded(QStringList words) const;
    void verifyNothingChanged() const { QVERIFY(bytesOf(m_document) == m_bytes); }

    QTemporaryDir m_folder;
    QString m_document;
    QByteArray m_bytes;
};

void TestEditChoice::initTestCase()
{
    const QString film = path(QStringLiteral("film.gif"));
    GifBuilder(4, 3).loop(0).add(0, 10).add(1, 10).add(2, 10).write(film);
    m_document = path(QStringLiteral("doc.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), m_document, QStringLiteral("--add"), film}).status,
             0);
    m_bytes = bytesOf(m_document);
    QVERIFY(!m_bytes.isEmpty());
    QVERIFY(Pictures::solid(4, 3, Qt::yellow).save(path(QStringLiteral("sun.png"))));
}

/// DIR/ in a word stands for the test's folder.
QStringList TestEditChoice::expanded(QStringList words) const
{
    return words.replaceInStrings(QStringLiteral("DIR/"), m_folder.path() + QLatin1Char('/'));
}

void TestEditChoice::everyOperationNeedsAnObject_data()
{
    QTest::addColumn<QString>("operation");
    for (const char *operation : {"--insert-blank 1",
                                  "--duplicate 1:1",
                                  "--rename 1=a",
                                  "--delete 1",
                                  "--delete 1-2",
                                  "--move 1:2",
                                  "--insert 1=DIR/sun.png",
                                  "--replace 1=DIR/sun.png",
                                  "--replace-all DIR/sun.png",
                                  "--interval 10",
                                  "--fps 10",
                                  "--reverse",
                                  "--loops 2",
                                  "--type background",
                                  "--type normal",
                                  "--mirror",
                                  "--flip",
                                  "--move-to 1,2",
                                  "--size 3x4",
                                  "--scale 2",
                                  "--rotate 90",
                                  "--fit-page",
                                  "--name a",
                                  "--raise",
                                  "--lower",
                                  "--raise-to-top",
                                  "--lower-to-bottom",
                                  "--remove"})
        QTest::newRow(operation) << QString::fromLatin1(operation);
}

void TestEditChoice::everyOperationNeedsAnObject()
{
    QFETCH(QString, operation);
    const QStringList words = expanded(operation.split(QLatin1Char(' ')));
    const QStringList removing = {QStringLiteral("edit"), m_document, QStringLiteral("--remove")};
    const FlipbookRun run = flipbook(removing + words);
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: %2: the object has been removed; choose "
                                     "another with --object\n")
                          .arg(m_document, words.join(QLatin1Char(' '))));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();
}

void TestEditChoice::theObjectMustBeThereAndChosen()
{
    FlipbookRun run = flipbook({QStringLiteral("edit"), m_document, QStringLiteral("--mirror"),
                                QStringLiteral("--object"), QStringLiteral("2")});
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: it has 1 object, so no object 2\n").arg(m_document));
    QCOMPARE(run.status, 1);
    verifyNothingChanged();

    const QString film = path(QStringLiteral("film.gif"));
    const QString pair = path(QStringLiteral("pair.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), pair, QStringLiteral("--add"), film, film}).status,
             0);
    const QByteArray before = bytesOf(pair);
    run = flipbook({QStringLiteral("edit"), pair, QStringLiteral("--mirror")});
    QCOMPARE(run.err,
             QStringLiteral(
                 "flipbook: %1: --mirror: the document has 2 objects; choose one with --object\n")
                 .arg(pair));
    QCOMPARE(run.status, 1);
    QVERIFY(bytesOf(pair) == before);

    // What --remove leaves has other numbers, and none is chosen.
    const QStringList choosing = {QStringLiteral("edit"),     pair,
                                  QStringLiteral("--object"), QStringLiteral("1"),
                                  QStringLiteral("--remove"), QStringLiteral("--object")};
    run = flipbook(choosing + QStringList({QStringLiteral("2"), QStringLiteral("--mirror")}));
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: --object 2: there is no object 2 (the last is 1)\n")
                 .arg(pair));
    QCOMPARE(run.status, 1);
    run = flipbook(
        QStringList({QStringLiteral("edit"), pair, QStringLiteral("--object"), QStringLiteral("1"),
                     QStringLiteral("--remove"), QStringLiteral("--mirror")}));
    QCOMPARE(run.err, QStringLiteral("flipbook: %1: --mirror: the object has been removed; choose "
                                     "another with --object\n")
                          .arg(pair));
    QCOMPARE(run.status, 1);
    QVERIFY(bytesOf(pair) == before);

    const QString blank = path(QStringLiteral("blank.flipbook"));
    QCOMPARE(flipbook({QStringLiteral("new"), blank}).status, 0);
    run = flipbook({QStringLiteral("edit"), blank, QStringLiteral("--mirror")});
    QCOMPARE(run.err,
             QStringLiteral("flipbook: %1: --mirror: the document has no objects\n").arg(blank));
    QCOMPARE(run.status, 1);
    QVERIFY(QFile::remove(pair));
    QVERIFY(QFile::remove(blank));
}

QTEST_GUILESS_MAIN(TestEditChoice)
#include "tst_editchoice.moc"
