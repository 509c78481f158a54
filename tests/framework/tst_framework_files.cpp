#include "framework/document.h"

#include <QtCore/QDataStream>
#include <QtCore/QDir>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

namespace
{

const QString key = QStringLiteral("GifFileName");

/// What @p to makes of the reference that @p from writes for @p path, in both forms.
QStringList referred(Document &from, Document &to, QString path)
{
    QByteArray bytes;
    QString scratch;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    from.streamFileReference(out, path, scratch, true);
    QDataStream in(bytes);
    QString fromStream = QStringLiteral("left over");
    to.streamFileReference(in, fromStream, scratch, false);

    QJsonObject json;
    from.jsonFileReference(json, path, key, true);
    QString fromJson = QStringLiteral("left over");
    to.jsonFileReference(json, fromJson, key, false);
    return {fromStream, fromJson};
}

QStringList twice(const QString &path)
{
    return {path, path};
}

QString resolved(Document &document, const QJsonValue &reference)
{
    QJsonObject json{{key, reference}};
    QString path = QStringLiteral("left over");
    document.jsonFileReference(json, path, key, false);
    return path;
}

} // namespace

class TestFrameworkFiles : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void filesBelowTheBaseFolderMoveWithIt();
    void otherFilesKeepTheirFullPath();
    void withoutABaseFolderPathsAreFull();
    void theReferenceIsThis();
    void referencesMayNotLeadOut_data();
    void referencesMayNotLeadOut();
    void aDamagedStreamGivesNoPath();
    void anotherJsonValueGivesNoPath();
};

void TestFrameworkFiles::filesBelowTheBaseFolderMoveWithIt()
{
    Document from;
    from.setBaseFolder(QStringLiteral("/home/a/films/"));
    Document to;
    to.setBaseFolder(QStringLiteral("/mnt/b"));
    QCOMPARE(to.baseFolder(), QStringLiteral("/mnt/b"));
    QCOMPARE(referred(from, to, QStringLiteral("/home/a/films/gifs/walk 1.gif")),
             twice(QStringLiteral("/mnt/b/gifs/walk 1.gif")));
    QCOMPARE(referred(from, to, QStringLiteral("/home/a/films/../films/x.gif")),
             twice(QStringLiteral("/mnt/b/x.gif")));
    to.setBaseFolder(QStringLiteral("/"));
    QCOMPARE(referred(from, to, QStringLiteral("/home/a/films/x.gif")),
             twice(QStringLiteral("/x.gif")));
}

void TestFrameworkFiles::otherFilesKeepTheirFullPath()
{
    Document from;
    from.setBaseFolder(QStringLiteral("/home/a/films"));
    Document to;
    to.setBaseFolder(QStringLiteral("/mnt/b"));
    for (const char *path : {"/home/a/walk.gif", "/home/a/films2/walk.gif", "/walk.gif"})
        QCOMPARE(referred(from, to, QString::fromLatin1(path)), twice(QString::fromLatin1(path)));
}

void TestFrameworkFiles::withoutABaseFolderPathsAreFull()
{
    Document document;
    QCOMPARE(document.baseFolder(), QString());
    QCOMPARE(referred(document, document, QStringLiteral("/home/a/walk.gif")),
             twice(QStringLiteral("/home/a/walk.gif")));
    QCOMPARE(referred(document, document, QStringLiteral("walk.gif")),
             twice(QDir::currentPath() + QStringLiteral("/walk.gif")));
    QCOMPARE(referred(document, document, QString()), twice(QString()));
}

void TestFrameworkFiles::theReferenceIsThis()
{
    Document document;
    document.setBaseFolder(QStringLiteral("/home/a"));
    QString path = QStringLiteral("/home/a/b/c.gif");
    QString scratch;
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    document.streamFileReference(stream, path, scratch, true);
    QCOMPARE(bytes, QByteArray("\0\0\0\x07", 4) + "b/c.gif");
    QJsonObject json;
    document.jsonFileReference(json, path, key, true);
    QCOMPARE(json, (QJsonObject{{key, QStringLiteral("b/c.gif")}}));
    QCOMPARE(path, QStringLiteral("/home/a/b/c.gif"));
}

void TestFrameworkFiles::referencesMayNotLeadOut_data()
{
    QTest::addColumn<QString>("reference");
    QTest::newRow("up") << QStringLiteral("../secret.gif");
    QTest::newRow("down and up") << QStringLiteral("a/../../secret.gif");
    QTest::newRow("parent") << QStringLiteral("..");
    QTest::newRow("resource") << QStringLiteral(":/framework/translations/framework_en.qm");
    QTest::newRow("nul") << QStringLiteral("a") + QChar(u'\0') + QStringLiteral("b");
    QTest::newRow("nothing") << QString();
}

void TestFrameworkFiles::referencesMayNotLeadOut()
{
    QFETCH(QString, reference);
    Document document;
    document.setBaseFolder(QStringLiteral("/home/a/films"));
    QCOMPARE(resolved(document, reference), QString());
    QCOMPARE(resolved(document, QStringLiteral("..gif")), QStringLiteral("/home/a/films/..gif"));
}

void TestFrameworkFiles::aDamagedStreamGivesNoPath()
{
    Document document;
    for (const char *hex : {"", "0000", "00000005", "0000000541424344", "ffffffff41"}) {
        QDataStream stream(QByteArray::fromHex(hex));
        QString path = QStringLiteral("left over");
        QString scratch;
        document.streamFileReference(stream, path, scratch, false);
        QCOMPARE(path, QString());
    }
}

void TestFrameworkFiles::anotherJsonValueGivesNoPath()
{
    Document document;
    document.setBaseFolder(QStringLiteral("/home/a"));
    for (const QJsonValue &value :
         {QJsonValue(), QJsonValue(5), QJsonValue(true), QJsonValue(QJsonObject())})
        QCOMPARE(resolved(document, value), QString());
    QJsonObject empty;
    QString path = QStringLiteral("left over");
    document.jsonFileReference(empty, path, key, false);
    QCOMPARE(path, QString());
    QVERIFY(empty.isEmpty());
}

QTEST_MAIN(TestFrameworkFiles)
#include "tst_framework_files.moc"
