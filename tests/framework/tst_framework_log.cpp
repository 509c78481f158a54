#include "framework/framework.h"
#include "host/notificationcodes.h"
#include "tests/framework/paintedobject.h"

#include <QtCore/QLoggingCategory>
#include <QtTest/QTest>

class TestFrameworkLog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everythingTheHostHearsIsLoggedOnRequest();
};

void TestFrameworkLog::everythingTheHostHearsIsLoggedOnRequest()
{
    QLoggingCategory::setFilterRules(QStringLiteral("framework.notifications.debug=true"));
    PaintedObject object;
    QTest::ignoreMessage(QtDebugMsg, "object 1 changed 1002 ");
    object.notifyObjPropertyChanged(PropertyChange::ShownContent, QString());
    QTest::ignoreMessage(QtDebugMsg, "object 1 changed 104 moved");
    object.notifyObjPropertyChanged(PropertyChange::Geometry, QStringLiteral("moved"));
    QTest::ignoreMessage(QtDebugMsg, "posted 100 0 { \"a\": 1 } -1");
    Framework::instance().notifier()->post(100, 0, QStringLiteral("{\n    \"a\": 1\n}\n"), -1);
    QTest::ignoreMessage(QtDebugMsg, "notified 309 0 0 -1");
    Framework::instance().notifier()->notify(309, 0, 0, -1);
}

QTEST_MAIN(TestFrameworkLog)
#include "tst_framework_log.moc"
