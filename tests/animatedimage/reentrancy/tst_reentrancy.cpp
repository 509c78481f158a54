#include "framework/framework.h"
#include "tests/animatedimage/reentrancy/aftermath.h"
#include "tests/animatedimage/reentrancy/deeds.h"
#include "tests/animatedimage/reentrancy/operations.h"

#include <QtCore/QLoggingCategory>
#include <QtTest/QTest>

/// While the host is told something for the nth time by any operation, it does something to the
/// object: releases it, loads another state, closes its page. REENTRANCY=whole finds the object in
/// each of 16 situations, otherwise in one of two.
class TestReentrancy : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void cleanup();
    void cleanupTestCase();

    void theHostDoesSomethingDuringAnOperation_data();
    void theHostDoesSomethingDuringAnOperation();
    void theOperationsTellOfMoreThanOneThing();

private:
    int tellings(const SceneOperation &operation, const Situation &situation) const;
    QString flaw(const SceneOperation &operation, const Situation &situation, const Deed &deed,
                 int nth) const;

    std::unique_ptr<SceneFiles> m_files;
    int m_runs = 0;
    int m_mostTellings = 0;
};

namespace
{

constexpr int lastTelling = 8;

QList<Situation> situations()
{
    if (qgetenv("REENTRANCY") == "whole")
        return Situation::all();
    // A normal object that plays while it is edited, and a background that is presented.
    return {Situation{false, false, true, false}, Situation{true, true, true, false}};
}

/// In the short form each deed is done in one situation, and the next deed in the other.
bool isTried(int deed, int situation, int operation)
{
    return qgetenv("REENTRANCY") == "whole" || (deed + situation + operation) % 2 == 0;
}

} // namespace

void TestReentrancy::initTestCase()
{
    // Each start and stop of playback writes a line.
    QLoggingCategory::defaultCategory()->setEnabled(QtDebugMsg, false);
    m_files = std::make_unique<SceneFiles>();
}

void TestReentrancy::cleanup()
{
    Framework::instance().dropUndoCommands();
}

void TestReentrancy::cleanupTestCase()
{
    qInfo("%d interrupted operations, at most %d notifications of one", m_runs, m_mostTellings);
    m_files.reset();
}

void TestReentrancy::theHostDoesSomethingDuringAnOperation_data()
{
    QTest::addColumn<int>("operation");
    const QList<SceneOperation> operations = sceneOperations();
    for (int i = 0; i < operations.size(); ++i)
        QTest::addRow("%s", qPrintable(operations.at(i).name)) << i;
}

void TestReentrancy::theHostDoesSomethingDuringAnOperation()
{
    QFETCH(int, operation);
    const SceneOperation tried = sceneOperations().at(operation);
    const QList<Situation> found = situations();
    for (int place = 0; place < found.size(); ++place) {
        const Situation &situation = found.at(place);
        const int count = tellings(tried, situation);
        m_mostTellings = qMax(m_mostTellings, count);
        for (int done = 0; done < deeds().size(); ++done) {
            const Deed &deed = deeds().at(done);
            if (!isTried(done, place, operation))
                continue;
            for (int nth = 1; nth <= qMin(count, lastTelling); ++nth) {
                const QString flaw = this->flaw(tried, situation, deed, nth);
                QVERIFY2(flaw.isEmpty(), qPrintable(QStringLiteral("%1, notification %2: %3: %4")
                                                        .arg(situation.name())
                                                        .arg(nth)
                                                        .arg(QLatin1String(deed.name), flaw)));
                ++m_runs;
            }
        }
    }
}

void TestReentrancy::theOperationsTellOfMoreThanOneThing()
{
    // Otherwise nothing was interrupted.
    QVERIFY2(m_mostTellings >= lastTelling, qPrintable(QString::number(m_mostTellings)));
    QVERIFY2(m_runs > 3000, qPrintable(QString::number(m_runs)));
}

/// How often the host is told something when it lets the operation be.
int TestReentrancy::tellings(const SceneOperation &operation, const Situation &situation) const
{
    Scene scene(situation, *m_files);
    operation.prepare(scene);
    constexpr int never = 1000;
    scene.interrupt(never, [](Scene &) {});
    operation.act(scene);
    return scene.heard();
}

QString TestReentrancy::flaw(const SceneOperation &operation, const Situation &situation,
                             const Deed &deed, int nth) const
{
    Scene scene(situation, *m_files);
    operation.prepare(scene);
    scene.interrupt(nth, deed.act);
    operation.act(scene);
    if (!scene.isInterrupted())
        return QStringLiteral("the host was not told as often");
    return flawAfter(scene);
}

QTEST_MAIN(TestReentrancy)
#include "tst_reentrancy.moc"
