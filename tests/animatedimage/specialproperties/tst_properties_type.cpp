#include "framework/framework.h"
#include "tests/support/request.h"
#include "tests/support/stage.h"

#include <QtTest/QTest>

/// The request that sets the presentation type, with and without undo.
class TestPropertiesType : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void withoutUndoTheTypeIsSetAndTold_data();
    void withoutUndoTheTypeIsSetAndTold();
    void withoutUndoPlaybackGoesOn();
    void withUndoButWithoutAPageNothingHappens();
    void thePageIsAskedAndToldInOrder_data();
    void thePageIsAskedAndToldInOrder();
    void theMacroIsNamedInTheUsersLanguage_data();
    void theMacroIsNamedInTheUsersLanguage();
    void theSameTypeStillPushesACommandInsideTheMacro();
    void anOpenMacroIsUsedAndLeftOpen();
    void becomingABackgroundMovesToTheBackgroundLayer();
    void becomingABackgroundStopsBeforeTheTypeIsSet();
    void anotherTypeDoesNotStop();
    void theInputIsReadWhereTheStreamStands();
};

namespace
{

constexpr int setType = 5008;

QString posted(int type)
{
    return QStringLiteral("posted 100 0 {\"settings\":[{\"id\":\"idAnimatedType\",\"value\":%1}]} "
                          "-1")
        .arg(type);
}

QByteArray input(int type, bool undoable)
{
    return Request::packed(qint32(type), undoable);
}

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

/// A page that notes what it is asked, and returns its own handles.
class NotingPage : public IGdPage
{
public:
    explicit NotingPage(CGDRootObject *expected)
        : m_expected(expected)
    {
    }

    QRectF pageRect() const override { return {0.0, 0.0, 100.0, 100.0}; }
    IGdDocument *document() const override { return nullptr; }

    qint64 queryObject(CGDRootObject *object, int code) override
    {
        calls.append(QStringLiteral("query %1 %2 macro %3")
                         .arg(object == m_expected ? QStringLiteral("it") : QStringLiteral("other"))
                         .arg(code)
                         .arg(GetFramework()->isUndoMacroOpen()));
        return 70 + code;
    }

    void applyObject(int operation, qint64 handle, const QList<CGDRootObject *> &objects,
                     bool undoable, const QString &text, bool refresh) override
    {
        const bool isIt = objects == QList<CGDRootObject *>{m_expected};
        calls.append(QStringLiteral("apply %1 %2 %3 %4 '%5' %6 macro %7")
                         .arg(operation)
                         .arg(handle)
                         .arg(isIt ? QStringLiteral("it") : QStringLiteral("others"))
                         .arg(undoable)
                         .arg(text)
                         .arg(refresh)
                         .arg(GetFramework()->isUndoMacroOpen()));
    }

    QStringList calls;

private:
    CGDRootObject *m_expected;
};

} // namespace

void TestPropertiesType::init()
{
    Framework::instance().dropUndoCommands();
    Framework::instance().setLanguage(QLocale(QLocale::English));
}

void TestPropertiesType::cleanup()
{
    init();
}

void TestPropertiesType::withoutUndoTheTypeIsSetAndTold_data()
{
    QTest::addColumn<int>("type");
    for (int type : {-1, 0, 1, 2, 2147483647, -2147483647 - 1})
        QTest::addRow("%d", type) << type;
}

void TestPropertiesType::withoutUndoTheTypeIsSetAndTold()
{
    QFETCH(int, type);
    Stage stage(solidFrames({{4, 4}}));
    Request request(input(type, false));

    QVERIFY(request.set(stage.image, setType));

    QCOMPARE(stage.probe.animatedType(), type);
    QCOMPARE(stage.log.entries(), QStringList{posted(type)});
    QCOMPARE(stack().count(), 0);
}

void TestPropertiesType::withoutUndoPlaybackGoesOn()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.image->playImage(true);
    stage.probe.tick();
    stage.log.clear();
    Request request(input(1, false));

    QVERIFY(request.set(stage.image, setType));

    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 1);
    QCOMPARE(stage.log.entries(), QStringList{posted(1)});
}

void TestPropertiesType::withUndoButWithoutAPageNothingHappens()
{
    NotificationLog log;
    CAnimatedImage image(3, true, nullptr);
    Request request(input(1, true));

    QVERIFY(request.set(&image, setType));

    QCOMPARE(AnimatedImageProbe(image).animatedType(), -1);
    QCOMPARE(stack().count(), 0);
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(log.entries(), QStringList());
}

void TestPropertiesType::thePageIsAskedAndToldInOrder_data()
{
    QTest::addColumn<int>("oldType");
    QTest::addColumn<int>("newType");
    QTest::addColumn<QStringList>("calls");
    const QStringList toBackground{QStringLiteral("query it 2 macro 0"),
                                   QStringLiteral("apply 0 72 it 1 '' 1 macro 1")};
    const QStringList toNormal{QStringLiteral("query it 0 macro 0"),
                               QStringLiteral("apply 0 70 it 1 '' 1 macro 1")};
    QTest::addRow("-1 to 1") << -1 << 1 << toBackground;
    QTest::addRow("0 to 1") << 0 << 1 << toBackground;
    QTest::addRow("1 to 0") << 1 << 0 << toNormal;
    QTest::addRow("-1 to 0") << -1 << 0 << toNormal;
    QTest::addRow("1 to 1") << 1 << 1 << QStringList();
    QTest::addRow("0 to 0") << 0 << 0 << QStringList();
    QTest::addRow("1 to 2") << 1 << 2 << QStringList();
    QTest::addRow("1 to -1") << 1 << -1 << QStringList();
}

void TestPropertiesType::thePageIsAskedAndToldInOrder()
{
    QFETCH(int, oldType);
    QFETCH(int, newType);
    QFETCH(QStringList, calls);
    CAnimatedImage image(3, true, nullptr);
    NotingPage page(&image);
    image.SetPage(&page);
    AnimatedImageProbe probe(image);
    probe.animatedType() = oldType;
    Request request(input(newType, true));

    QVERIFY(request.set(&image, setType));

    QCOMPARE(page.calls, calls);
    QCOMPARE(probe.animatedType(), newType);
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    Framework::instance().dropUndoCommands();
}

void TestPropertiesType::theMacroIsNamedInTheUsersLanguage_data()
{
    QTest::addColumn<QLocale>("locale");
    QTest::addColumn<QString>("text");
    QTest::addRow("English") << QLocale(QLocale::English)
                             << QStringLiteral("Change Animation Type");
    QTest::addRow("Simplified Chinese") << QLocale(QStringLiteral("zh_CN"))
                                        << QStringLiteral(u"\u66f4\u6539\u52a8\u753b\u7c7b\u578b");
}

void TestPropertiesType::theMacroIsNamedInTheUsersLanguage()
{
    QFETCH(QLocale, locale);
    QFETCH(QString, text);
    Framework::instance().setLanguage(locale);
    Stage stage(solidFrames({{4, 4}}));
    Request request(input(1, true));

    QVERIFY(request.set(stage.image, setType));

    QCOMPARE(stack().count(), 1);
    QCOMPARE(stack().text(0), text);
    QCOMPARE(stack().undoText(), text);
    // The move to the other layer, then the type, which has no text of its own.
    QCOMPARE(stack().command(0)->childCount(), 2);
    QCOMPARE(stack().command(0)->child(1)->text(), QString());
}

void TestPropertiesType::theSameTypeStillPushesACommandInsideTheMacro()
{
    Stage stage(solidFrames({{4, 4}}));
    Request request(input(-1, true));

    QVERIFY(request.set(stage.image, setType));

    QCOMPARE(stack().count(), 1);
    QCOMPARE(stack().text(0), QStringLiteral("Change Animation Type"));
    QCOMPARE(stack().command(0)->childCount(), 1);
    QCOMPARE(stage.log.entries(), QStringList{posted(-1)});
}

void TestPropertiesType::anOpenMacroIsUsedAndLeftOpen()
{
    Stage stage(solidFrames({{4, 4}}));
    GetFramework()->openUndoMacro(QStringLiteral("Several steps"));
    Request first(input(5, true));
    Request second(input(6, true));

    QVERIFY(first.set(stage.image, setType));
    QVERIFY(second.set(stage.image, setType));

    QVERIFY(GetFramework()->isUndoMacroOpen());
    GetFramework()->closeUndoMacro();
    QVERIFY(!GetFramework()->isUndoMacroOpen());
    QCOMPARE(stack().count(), 1);
    QCOMPARE(stack().text(0), QStringLiteral("Several steps"));
    QCOMPARE(stack().command(0)->childCount(), 2);
    QCOMPARE(stack().command(0)->child(0)->childCount(), 0);
    stack().undo();
    QCOMPARE(stage.probe.animatedType(), -1);
}

void TestPropertiesType::becomingABackgroundMovesToTheBackgroundLayer()
{
    Stage stage(solidFrames({{4, 4}}));
    const auto layer = [&stage] { return stage.page->placeOf(stage.image).layer; };
    QVERIFY(layer() == Page::Layer::Normal);

    Request toBackground(input(1, true));
    QVERIFY(toBackground.set(stage.image, setType));
    QVERIFY(layer() == Page::Layer::Background);

    Request toNormal(input(0, true));
    QVERIFY(toNormal.set(stage.image, setType));
    QVERIFY(layer() == Page::Layer::Normal);

    stack().undo();
    QVERIFY(layer() == Page::Layer::Background);
    QCOMPARE(stage.probe.animatedType(), 1);
    stack().undo();
    QVERIFY(layer() == Page::Layer::Normal);
    QCOMPARE(stage.probe.animatedType(), -1);
}

void TestPropertiesType::becomingABackgroundStopsBeforeTheTypeIsSet()
{
    Stage stage(solidFrames({{4, 4}, {8, 8}}));
    stage.image->playImage(true);
    stage.probe.tick();
    QCOMPARE(stage.image->getSize(), QSizeF(8.0, 8.0));
    stage.log.clear();
    Request request(input(1, true));

    QVERIFY(request.set(stage.image, setType));

    // It rewound the way the normal type does: the object has the size of frame 0 again.
    QVERIFY(!stage.probe.isRunning());
    QCOMPARE(stage.probe.runningIndex(), 0);
    QCOMPARE(stage.image->getSize(), QSizeF(4.0, 4.0));
    const QString geometry = QStringLiteral("changed 104");
    const QString shown = QStringLiteral("changed 1002");
    QCOMPARE(
        stage.log.entries(),
        (QStringList{
            geometry, geometry, shown, shown,
            QStringLiteral(
                "posted 100 0 {\"settings\":[{\"id\":\"idImagePlay\",\"value\":\"false\"}]} -1"),
            posted(1)}));
}

void TestPropertiesType::anotherTypeDoesNotStop()
{
    Stage stage(solidFrames({{4, 4}, {4, 4}}));
    stage.probe.animatedType() = 1;
    stage.image->playImage(true);
    stage.log.clear();
    Request request(input(0, true));

    QVERIFY(request.set(stage.image, setType));

    QVERIFY(stage.probe.isRunning());
    QCOMPARE(stage.log.entries(), QStringList{posted(0)});
}

void TestPropertiesType::theInputIsReadWhereTheStreamStands()
{
    Stage stage(solidFrames({{4, 4}}));
    Request request(QByteArray::fromHex("01"
                                        "00000003"
                                        "00"
                                        "ff"));
    request.from(1);

    QVERIFY(request.set(stage.image, setType));

    QCOMPARE(stage.probe.animatedType(), 3);
    QCOMPARE(request.position(), qint64(6));
}

QTEST_MAIN(TestPropertiesType)
#include "tst_properties_type.moc"
