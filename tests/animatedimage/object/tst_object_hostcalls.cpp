#include "tests/support/pictures.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtCore/QJsonObject>
#include <QtTest/QTest>

namespace
{

/// What the object asked of its host, and what the host answers.
struct Host {
    QStringList calls;
    bool answer = false;
};

/// The host of this program.
Host &host()
{
    static Host onlyOne;
    return onlyOne;
}

QString yesOrNo(bool value)
{
    return value ? QStringLiteral("yes") : QStringLiteral("no");
}

} // namespace

// This program is its own host for these operations: what it defines here takes the place of
// what the framework's library defines, also for the plug-in.

void CBaseObject::clearLayerEffectCache(ClearLayerEffectCacheReason reason)
{
    host().calls.append(QStringLiteral("clear %1").arg(int(reason)));
}

void CGDRootObject::updateAfterObjRectChanged(QGraphicsItem *item, bool notify)
{
    const bool isOwnItem = dynamic_cast<CGDRootObject *>(item) == this;
    host().calls.append(QStringLiteral("update own=%1 notify=%2 stale=%3")
                            .arg(yesOrNo(isOwnItem), yesOrNo(notify), yesOrNo(m_rectStale)));
    m_rectStale = false;
}

bool CGDRootObject::GetSpecialProperty(int id, QDataStream &)
{
    host().calls.append(QStringLiteral("get %1").arg(id));
    return host().answer;
}

bool CGDRootObject::SetSpecialProperty(int id, QDataStream &, bool flag)
{
    host().calls.append(QStringLiteral("set %1 %2").arg(id).arg(yesOrNo(flag)));
    return host().answer;
}

/// What the object passes on to its host where the framework makes no difference of it.
class TestObjectHostCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { host() = Host(); }

    void changedContentIsTheReasonForNewLayerEffects_data();
    void changedContentIsTheReasonForNewLayerEffects();
    void withoutLayerEffectsNoneAreDropped();
    void aLoadedObjectHasItsPlaceWorkedOutAgain();
    void aCopyHasItsPlaceWorkedOutAgain();
    void theBaseAnswersWhatTheObjectDoesNot_data();
    void theBaseAnswersWhatTheObjectDoesNot();
    void theBaseIsNotAskedWhatTheObjectAnswers_data();
    void theBaseIsNotAskedWhatTheObjectAnswers();
};

namespace
{

const QString updated = QStringLiteral("update own=yes notify=yes stale=no");
const QString updatedStale = QStringLiteral("update own=yes notify=yes stale=yes");
const QString cleared = QStringLiteral("clear 2");

using Change = void (*)(Stage &);

} // namespace

Q_DECLARE_METATYPE(Change)

void TestObjectHostCalls::changedContentIsTheReasonForNewLayerEffects_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<Change>("change");
    QTest::addColumn<QStringList>("calls");
    QTest::newRow("another frame") << -1 << Change([](Stage &stage) { stage->setCurrentIndex(1); })
                                   << QStringList{updated, updated, cleared};
    QTest::newRow("another frame of a background")
        << 1 << Change([](Stage &stage) { stage->setCurrentIndex(1); })
        << QStringList{updated, cleared};
    QTest::newRow("mirror") << -1 << Change([](Stage &stage) { stage->setMirror(true, false); })
                            << QStringList{cleared};
    QTest::newRow("flip") << -1 << Change([](Stage &stage) { stage->setFlip(true, false); })
                          << QStringList{cleared};
}

void TestObjectHostCalls::changedContentIsTheReasonForNewLayerEffects()
{
    QFETCH(int, type);
    QFETCH(Change, change);
    Stage stage(solidFrames({{4, 4}, {6, 2}}));
    stage.probe.rectStale() = false;
    stage.probe.animatedType() = type;
    stage.probe.hasLayerEffects() = true;
    host().calls.clear();
    change(stage);
    QTEST(host().calls, "calls");
}

void TestObjectHostCalls::withoutLayerEffectsNoneAreDropped()
{
    Stage stage(solidFrames({{4, 4}, {6, 2}}));
    stage.probe.rectStale() = false;
    host().calls.clear();
    stage->setCurrentIndex(1);
    stage->setMirror(true, false);
    stage->setFlip(true, false);
    QCOMPARE(host().calls, (QStringList{updated, updated}));
}

void TestObjectHostCalls::aLoadedObjectHasItsPlaceWorkedOutAgain()
{
    Stage from(solidFrames({{4, 4}}));
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    from->save(out);
    QJsonObject json;
    from->saveJson(json);

    Stage byStream;
    byStream.probe.rectStale() = false;
    host().calls.clear();
    QDataStream in(bytes);
    QVERIFY(byStream->load(in));
    QCOMPARE(host().calls.count(updatedStale), 1);
    QCOMPARE(host().calls.last(), updatedStale);

    Stage byJson;
    byJson.probe.rectStale() = false;
    host().calls.clear();
    QVERIFY(byJson->loadJson(json));
    QCOMPARE(host().calls.count(updatedStale), 1);
    QCOMPARE(host().calls.last(), updatedStale);
}

void TestObjectHostCalls::aCopyHasItsPlaceWorkedOutAgain()
{
    Stage other(solidFrames({{4, 4}}));
    Stage stage(solidFrames({{6, 2}}));
    stage.probe.rectStale() = false;
    auto *handle = static_cast<CGDRootObject *>(other.image);
    Request copy(Request::packed(reinterpret_cast<qint64>(handle)));
    host().calls.clear();
    QVERIFY(!copy.set(stage.image, 5016, true));
    QCOMPARE(host().calls.count(updatedStale), 1);
    // The base hears of the request afterwards.
    QCOMPARE(host().calls.last(), QStringLiteral("set 5016 yes"));
}

void TestObjectHostCalls::theBaseAnswersWhatTheObjectDoesNot_data()
{
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<int>("id");
    QTest::addColumn<int>("frames");
    const auto addRows = [](bool isSet, int frames, std::initializer_list<int> ids) {
        for (const int id : ids) {
            QTest::addRow("%s %d, %d frames", isSet ? "set" : "get", id, frames)
                << isSet << id << frames;
        }
    };
    addRows(false, 2, {0, 5000, 5001, 5002, 5003, 5004, 5009, 5015, 5016, 5022});
    // Also those that the object has done its part of.
    addRows(true, 2, {0, 5000, 5006, 5009, 5010, 5011, 5012, 5013, 5014, 5015, 5016, 5017, 5021});
    addRows(true, 0, {5009, 5013, 5015, 5016});
    addRows(true, 1, {5013, 5015, 5016});
}

void TestObjectHostCalls::theBaseAnswersWhatTheObjectDoesNot()
{
    QFETCH(bool, isSet);
    QFETCH(int, id);
    QFETCH(int, frames);
    Stage stage(solidFrames({{4, 4}, {4, 4}}).mid(0, frames));
    for (const bool answer : {false, true}) {
        for (const bool flag : {false, true}) {
            // Input that names no frame and no object.
            Request request(QByteArray(16, '\xff'));
            host() = Host{{}, answer};
            QCOMPARE(isSet ? request.set(stage.image, id, flag) : request.get(stage.image, id),
                     answer);
            const QString call = isSet ? QStringLiteral("set %1 %2").arg(id).arg(yesOrNo(flag))
                                       : QStringLiteral("get %1").arg(id);
            QCOMPARE(host().calls.count(call), 1);
            QCOMPARE(host().calls.last(), call);
        }
    }
}

void TestObjectHostCalls::theBaseIsNotAskedWhatTheObjectAnswers_data()
{
    QTest::addColumn<bool>("isSet");
    QTest::addColumn<int>("id");
    QTest::addColumn<bool>("answer");
    for (const int id :
         {5005, 5006, 5007, 5008, 5010, 5011, 5012, 5013, 5014, 5017, 5018, 5019, 5020, 5021})
        QTest::addRow("get %d", id) << false << id << true;
    for (const int id : {5001, 5002, 5003, 5004, 5005, 5007, 5008})
        QTest::addRow("set %d", id) << true << id << true;
    QTest::addRow("set 5009 of the only frame") << true << 5009 << false;
}

void TestObjectHostCalls::theBaseIsNotAskedWhatTheObjectAnswers()
{
    QFETCH(bool, isSet);
    QFETCH(int, id);
    QFETCH(bool, answer);
    Stage stage(solidFrames({{4, 4}}));
    Request request;
    host() = Host{{}, !answer};
    QCOMPARE(isSet ? request.set(stage.image, id) : request.get(stage.image, id), answer);
    for (const QString &call : qAsConst(host().calls))
        QVERIFY2(call.startsWith(QLatin1String("update")), qPrintable(call));
}

QTEST_MAIN(TestObjectHostCalls)
#include "tst_object_hostcalls.moc"
