#include "tests/flipbook/documentfixture.h"
#include "tests/flipbook/flipbookrun.h"
#include "tests/support/pictures.h"

#include <QtCore/QTemporaryDir>
#include <QtTest/QtTest>

/// What flipbook does where the environment names a display that nobody serves.
class TestDisplay : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aFileIsDescribedWhereTheDisplayCannotBeReached_data();
    void aFileIsDescribedWhereTheDisplayCannotBeReached();
    void commandsDoNotAskForTheDisplay();
    void withoutAFileTheHelpIsNamed();
};

namespace
{

// No server has such a number, and none of Wayland such a name.
const char noX[] = "DISPLAY=:59987";
const char noWayland[] = "WAYLAND_DISPLAY=none-59987";

QStringList environment(std::initializer_list<const char *> variables)
{
    QStringList list;
    for (const char *variable : variables)
        list << QLatin1String(variable);
    return list;
}

QString picture(const QTemporaryDir &folder)
{
    const QString path = folder.filePath(QStringLiteral("sun.png"));
    Pictures::solid(4, 3, Qt::yellow).save(path);
    return path;
}

} // namespace

void TestDisplay::aFileIsDescribedWhereTheDisplayCannotBeReached_data()
{
    QTest::addColumn<QStringList>("variables");
    QTest::addColumn<QString>("display");
    QTest::newRow("X") << environment({noX}) << ":59987";
    QTest::newRow("X, asked for") << environment({noX, "QT_QPA_PLATFORM=xcb"}) << ":59987";
    QTest::newRow("Wayland") << environment(
                                    {"QT_QPA_PLATFORM=", "DISPLAY=", "WAYLAND_DISPLAY=none-59987"})
                             << "none-59987";
}

void TestDisplay::aFileIsDescribedWhereTheDisplayCannotBeReached()
{
    QFETCH(const QStringList, variables);
    QFETCH(const QString, display);
    const QTemporaryDir folder;
    const FlipbookRun run = flipbook({picture(folder)}, variables);
    QCOMPARE(run.status, 0);
    // The library of Wayland may have complained before.
    QVERIFY2(
        run.err.endsWith(QStringLiteral("flipbook: warning: cannot connect to the display \"%1\"; "
                                        "continuing without a window\n")
                             .arg(display)),
        qPrintable(run.err));
    QVERIFY2(run.out.contains(QStringLiteral("4 x 3")), qPrintable(run.out));
}

void TestDisplay::commandsDoNotAskForTheDisplay()
{
    const QTemporaryDir folder;
    const FlipbookRun run = flipbook({QStringLiteral("info"), picture(folder)}, environment({noX}));
    QCOMPARE(run.status, 0);
    QCOMPARE(run.err, QString());
}

void TestDisplay::withoutAFileTheHelpIsNamed()
{
    const FlipbookRun without = flipbook({});
    const FlipbookRun run = flipbook({}, environment({noX}));
    QCOMPARE(run.status, without.status);
    QVERIFY2(run.err.endsWith(without.err), qPrintable(run.err));
    QVERIFY(run.err.size() > without.err.size());
}

QTEST_MAIN(TestDisplay)
#include "tst_display.moc"
