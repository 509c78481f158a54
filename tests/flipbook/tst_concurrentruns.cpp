#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"

#include <QtCore/QJsonArray>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <memory>
#include <vector>

/// Several processes that write the same document at the same time.
class TestConcurrentRuns : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void editsAtTheSameTimeAllCount();
    void onlyOneProcessMakesANewDocument();

private:
    QString path(const QString &name) const { return m_folder->filePath(name); }
    QVector<int> statusesOf(int count, const QStringList &arguments) const;

    std::unique_ptr<QTemporaryDir> m_folder;
};

void TestConcurrentRuns::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    QImage picture(4, 3, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path(QStringLiteral("sun.png"))));
}

QVector<int> TestConcurrentRuns::statusesOf(int count, const QStringList &arguments) const
{
    std::vector<std::unique_ptr<QProcess>> runs;
    for (int i = 0; i < count; ++i) {
        runs.push_back(std::make_unique<QProcess>());
        runs.back()->setWorkingDirectory(m_folder->path());
        runs.back()->start(QStringLiteral(FLIPBOOK_PROGRAM), arguments);
    }
    QVector<int> statuses;
    for (const auto &run : runs) {
        run->waitForFinished(60000);
        statuses.append(run->exitStatus() == QProcess::NormalExit ? run->exitCode() : -1);
    }
    return statuses;
}

void TestConcurrentRuns::editsAtTheSameTimeAllCount()
{
    const QString document = QStringLiteral("doc.flipbook");
    QCOMPARE(statusesOf(1, {QStringLiteral("new"), document, QStringLiteral("--add"),
                            QStringLiteral("sun.png")}),
             QVector<int>{0});
    QCOMPARE(statusesOf(12, {QStringLiteral("edit"), document, QStringLiteral("--duplicate"),
                             QStringLiteral("1:1")}),
             QVector<int>(12, 0));
    const QJsonObject info =
        flipbook({QStringLiteral("info"), QStringLiteral("--json"), path(document)}).json();
    const QJsonObject page = info.value(QStringLiteral("pages")).toArray().at(0).toObject();
    const QJsonObject object = page.value(QStringLiteral("objects")).toArray().at(0).toObject();
    QCOMPARE(object.value(QStringLiteral("frames")).toInt(), 13);
}

void TestConcurrentRuns::onlyOneProcessMakesANewDocument()
{
    const QVector<int> statuses =
        statusesOf(8, {QStringLiteral("new"), QStringLiteral("fresh.flipbook"),
                       QStringLiteral("--add"), QStringLiteral("sun.png")});
    QCOMPARE(statuses.count(0), 1);
    QCOMPARE(statuses.count(1), 7);
    QCOMPARE(QDir(m_folder->path()).entryList(QDir::Files | QDir::Hidden),
             QStringList({QStringLiteral("fresh.flipbook"), QStringLiteral("sun.png")}));
}

QTEST_GUILESS_MAIN(TestConcurrentRuns)
#include "tst_concurrentruns.moc"
