#include <QtCore/QProcess>
#include <QtTest/QTest>

/// Objects that a host releases after the end of its main().
class TestObjectExit : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsMayBeReleasedByStaticsOfTheHost_data();
    void objectsMayBeReleasedByStaticsOfTheHost();
};

void TestObjectExit::objectsMayBeReleasedByStaticsOfTheHost_data()
{
    QTest::addColumn<QString>("state");
    QTest::newRow("stopped") << QStringLiteral("stopped");
    QTest::newRow("playing") << QStringLiteral("playing");
}

void TestObjectExit::objectsMayBeReleasedByStaticsOfTheHost()
{
    QFETCH(QString, state);
    QProcess process;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    // Memory that was freed is overwritten, so that whoever still reads it is found out.
    environment.insert(QStringLiteral("MALLOC_PERTURB_"), QStringLiteral("165"));
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(LATE_HOLDER), {state});
    QVERIFY2(process.waitForFinished(60000), qPrintable(process.errorString()));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(process.readAllStandardOutput().trimmed(), QByteArray("released"));
}

QTEST_GUILESS_MAIN(TestObjectExit)
#include "tst_object_exit.moc"
