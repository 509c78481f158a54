#include <QtTest/QTest>

/// Run one function at a time: CTest fails a test whose output has a warning, which the second
/// function must show.
class TestWarnings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anExpectedWarningPasses()
    {
        QTest::ignoreMessage(QtWarningMsg, "a warning");
        qWarning("a warning");
    }
    void anUnexpectedWarningFails() { qWarning("a warning"); }
};

QTEST_GUILESS_MAIN(TestWarnings)
#include "tst_warnings.moc"
