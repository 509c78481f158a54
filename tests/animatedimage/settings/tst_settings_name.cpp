#include "tests/support/stage.h"

#include <QtTest/QTest>

namespace
{

const QString nameKey = QStringLiteral("object_name");

} // namespace

/// Frames follow the name of their object.
class TestSettingsName : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void framesAreRenamedAndNumberedFromOne()
    {
        Stage stage(solidFrames({{4, 4}, {4, 4}, {4, 4}}));
        stage->setOtherParams(nameKey, QStringLiteral("cat"));
        QCOMPARE(stage.frameNames(), (QStringList{QStringLiteral("cat_1"), QStringLiteral("cat_2"),
                                                  QStringLiteral("cat_3")}));
        QCOMPARE(stage->getOtherParams(nameKey), QVariant(QStringLiteral("cat")));
    }

    void otherValuesAreTakenAsText()
    {
        Stage stage(solidFrames({{4, 4}}));
        stage->setOtherParams(nameKey, 12);
        QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("12_1")});
        stage->setOtherParams(nameKey, QVariant());
        QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("_1")});
    }

    void aPercentSignInTheNameStays()
    {
        Stage stage(solidFrames({{4, 4}, {4, 4}}));
        stage->setOtherParams(nameKey, QStringLiteral("50%2"));
        QCOMPARE(stage.frameNames(),
                 (QStringList{QStringLiteral("50%2_1"), QStringLiteral("50%2_2")}));
        QCOMPARE(stage.log.entries(), QStringList());
    }

    void otherKeysRenameNothing()
    {
        Stage stage(solidFrames({{4, 4}}));
        stage->setOtherParams(QStringLiteral("Object_name"), QStringLiteral("cat"));
        QCOMPARE(stage.frameNames(), QStringList{QStringLiteral("f_1")});
        QCOMPARE(stage->getOtherParams(QStringLiteral("Object_name")),
                 QVariant(QStringLiteral("cat")));
    }

    void withoutFramesTheNameIsStillTheObjects()
    {
        Stage stage;
        stage->setOtherParams(nameKey, QStringLiteral("cat"));
        QVERIFY(stage.probe.frames().isEmpty());
        QCOMPARE(stage->getOtherParams(nameKey), QVariant(QStringLiteral("cat")));
    }

    void theAnswerIsTheBases()
    {
        Stage ours;
        Stage bases;
        for (const QString &key : {nameKey, QStringLiteral("other")}) {
            for (const QVariant &value :
                 {QVariant(QStringLiteral("cat")), QVariant(QStringLiteral("cat")), QVariant()}) {
                QCOMPARE(ours->setOtherParams(key, value),
                         bases->CBaseObject::setOtherParams(key, value));
            }
        }
    }
};

QTEST_MAIN(TestSettingsName)
#include "tst_settings_name.moc"
