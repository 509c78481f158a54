#include "program.h"

#include <QtTest/QTest>

namespace
{

/// The symbols that the objects compiled against another base class ask for.
QStringList undefinedSymbols()
{
    const QStringList objects = QStringLiteral(OTHER_BASE_OBJECTS).split(QLatin1Char('|'));
    return linesOf(QStringLiteral("nm"),
                   QStringList({QStringLiteral("-C"), QStringLiteral("--undefined-only")}) +
                       objects);
}

bool asksFor(const QStringList &symbols, const QString &function)
{
    const QString start = QStringLiteral("U ") + function + QLatin1Char('(');
    return std::any_of(symbols.cbegin(), symbols.cend(),
                       [&start](const QString &symbol) { return symbol.startsWith(start); });
}

} // namespace

/// Whose operations the overrides build on, where a host's CBaseObject has its own overrides.
class TestObjectBaseCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void theClassOfEachOperationIsTheOneItBuildsOn_data();
    void theClassOfEachOperationIsTheOneItBuildsOn();
};

void TestObjectBaseCalls::theClassOfEachOperationIsTheOneItBuildsOn_data()
{
    QTest::addColumn<QString>("called");
    QTest::addColumn<QString>("notCalled");
    const QString root = QStringLiteral("CGDRootObject");
    const QString base = QStringLiteral("CBaseObject");
    for (const char *name :
         {"setPos", "getPos", "setCenterPos", "setMirror", "setFlip", "SetAttribute",
          "GetSpecialProperty", "SetSpecialProperty", "setOtherParams"})
        QTest::newRow(name) << root << base;
    QTest::newRow("setSize") << base << root;
}

void TestObjectBaseCalls::theClassOfEachOperationIsTheOneItBuildsOn()
{
    QFETCH(QString, called);
    QFETCH(QString, notCalled);
    const QString operation = QStringLiteral("::") + QString::fromLatin1(QTest::currentDataTag());
    const QStringList symbols = undefinedSymbols();
    QVERIFY(asksFor(symbols, called + operation));
    QVERIFY(!asksFor(symbols, notCalled + operation));
}

QTEST_GUILESS_MAIN(TestObjectBaseCalls)
#include "tst_object_basecalls.moc"
