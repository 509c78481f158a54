#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "host/attributeids.h"
#include "tests/animatedimage/memory/endofprocess.h"
#include "tests/animatedimage/memory/failingallocations.h"
#include "tests/animatedimage/memory/failureoutcome.h"
#include "tests/animatedimage/specialproperties/knownrequests.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QPainter>
#include <QtTest/QTest>

using FailureOutcome::Operation;
using FailureOutcome::plain;

/// One allocation fails while the host asks by number or by text, undoes, and looks at a page that
/// is presented.
class TestAllocationRequests : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void aRequestThrowsNothing_data();
    void aRequestThrowsNothing();
    void anAttributeThrowsNothing_data();
    void anAttributeThrowsNothing();
    void undoingThrowsNothing_data();
    void undoingThrowsNothing();
    void settingsThrowNothing_data();
    void settingsThrowNothing();
    void presentingThrowsNothing_data();
    void presentingThrowsNothing();

private:
    QString picture() const { return m_folder.filePath(QStringLiteral("1.png")); }

    QTemporaryDir m_folder;
};

namespace
{

constexpr qint32 backgroundType = 1;
constexpr int setType = 5008;
constexpr int replaceAll = 5020;

/// Takes over from a second object, so that 5016 has a source.
Operation send(int place, const QString &file)
{
    return [place, file](Stage &stage) {
        auto *other = new CAnimatedImage(2, true, nullptr);
        stage.page->addObject(other);
        const KnownRequest known = knownRequests(file, other).at(place);
        auto request = std::make_shared<Request>(known.input);
        return [&stage, known, request] { known.send(stage.image, request->stream()); };
    };
}

void becomeBackground(Stage &stage)
{
    Request request(Request::packed(backgroundType, false));
    request.set(stage.image, setType);
}

Operation attribute(int id, const QByteArray &input, bool isBackground)
{
    return [id, input, isBackground](Stage &stage) {
        if (isBackground)
            becomeBackground(stage);
        stage->playImage(true);
        if (id == AttributeId::LeaveAlternateMode) {
            QDataStream none{QByteArray()};
            stage->SetAttribute(AttributeId::EnterAlternateMode, none, false);
        }
        auto stream = std::make_shared<QDataStream>(input);
        return [&stage, id, stream] { stage->SetAttribute(id, *stream, false); };
    };
}

/// Sends an undoable request, and undoes it or does it again.
Operation undoOf(int id, const QByteArray &input, bool isRedo)
{
    return [id, input, isRedo](Stage &stage) {
        Request request(input);
        if (id == setType)
            request.set(stage.image, id);
        else
            request.get(stage.image, id);
        UndoStack *stack = Framework::instance().undoStack();
        if (isRedo)
            stack->undo();
        return [stack, isRedo] { isRedo ? stack->redo() : stack->undo(); };
    };
}

Operation change(ANIMATEDIMAGE_CHANGE_TYPE type)
{
    return [type](Stage &stage) {
        auto command = std::make_shared<CAnimatedImageChangeCommand>(stage.image, type);
        command->setIntValue(200, 50);
        command->setBoolValue(true, false);
        return [command] {
            command->redo();
            command->undo();
        };
    };
}

Operation setSetting(const QString &json)
{
    return plain([json](Stage &stage) { stage->SetSettingJson(json, true, true); });
}

void present(Stage &stage, bool isBackground)
{
    if (isBackground)
        becomeBackground(stage);
    QDataStream none{QByteArray()};
    stage->SetAttribute(AttributeId::EnterAlternateMode, none, false);
    stage.document.setAlternateMode(1);
}

Operation presented(bool isBackground, const std::function<void(Stage &, QPainter &)> &look)
{
    return [isBackground, look](Stage &stage) {
        present(stage, isBackground);
        auto canvas = std::make_shared<QImage>(20, 20, QImage::Format_ARGB32_Premultiplied);
        auto painter = std::make_shared<QPainter>(canvas.get());
        painter->scale(1.5, 0.5);
        return [&stage, canvas, painter, look] { look(stage, *painter); };
    };
}

} // namespace

void TestAllocationRequests::initTestCase()
{
    if (!FailingAllocations::isPossible())
        QSKIP("the sanitizers have allocators of their own");
    QVERIFY(Pictures::solid(8, 6, Qt::cyan).save(picture()));
    // Qt makes some things once, and does not recover if it fails.
    EndOfProcess::prepare();
    Stage stage(FailureOutcome::frames());
    stage->SetSettingJson(QStringLiteral("{}"), false, false);
    QVERIFY(FailureOutcome::isUsable(stage));
}

void TestAllocationRequests::aRequestThrowsNothing_data()
{
    QTest::addColumn<Operation>("operation");
    const QList<KnownRequest> all = knownRequests(picture(), nullptr);
    for (int i = 0; i < all.size(); ++i) {
        const char *verb = all.at(i).direction == KnownRequest::Get ? "get" : "set";
        QTest::addRow("%s %d", verb, all.at(i).id) << send(i, picture());
    }
    QTest::newRow("set 5008 undoably") << Operation([](Stage &stage) {
        auto request = std::make_shared<Request>(Request::packed(backgroundType, true));
        return [&stage, request] { request->set(stage.image, setType); };
    });
}

void TestAllocationRequests::aRequestThrowsNothing()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

void TestAllocationRequests::anAttributeThrowsNothing_data()
{
    QTest::addColumn<Operation>("operation");
    using namespace AttributeId;
    for (const bool isBackground : {false, true}) {
        const char *type = isBackground ? "background" : "normal";
        for (const int id : {EnableTimer, StartSteppedPlayback, SteppedTick, EnterAlternateMode,
                             LeaveAlternateMode}) {
            QTest::addRow("%d of a %s object", id, type)
                << attribute(id, Request::packed(false, false), isBackground);
        }
    }
}

void TestAllocationRequests::anAttributeThrowsNothing()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

void TestAllocationRequests::undoingThrowsNothing_data()
{
    QTest::addColumn<Operation>("operation");
    const QByteArray type = Request::packed(backgroundType, true);
    QTest::newRow("the type undone") << undoOf(setType, type, false);
    QTest::newRow("the type done again") << undoOf(setType, type, true);
    QTest::newRow("frames brought back") << undoOf(replaceAll, Request::packed(picture()), false);
    QTest::newRow("frames replaced again") << undoOf(replaceAll, Request::packed(picture()), true);
    QTest::newRow("the interval") << change(CHANGE_SHIFT_INTERVAL);
    QTest::newRow("the proportions") << change(CHANGE_KEEP_RATIO);
    QTest::newRow("the loop count") << change(CHANGE_LOOP_COUNT);
}

void TestAllocationRequests::undoingThrowsNothing()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

void TestAllocationRequests::settingsThrowNothing_data()
{
    QTest::addColumn<Operation>("operation");
    const QString format = QStringLiteral(R"({"settings":[{"id":"%1","value":"%2"}]})");
    QTest::newRow("play") << setSetting(
        format.arg(QStringLiteral("idImagePlay"), QStringLiteral("true")));
    QTest::newRow("interval") << setSetting(
        format.arg(QStringLiteral("idShiftInterval"), QStringLiteral("50")));
    QTest::newRow("loop") << setSetting(
        format.arg(QStringLiteral("idLoopCount"), QStringLiteral("false")));
}

void TestAllocationRequests::settingsThrowNothing()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

void TestAllocationRequests::presentingThrowsNothing_data()
{
    QTest::addColumn<Operation>("operation");
    for (const bool isBackground : {false, true}) {
        const char *type = isBackground ? "background" : "normal";
        QTest::addRow("a %s object is painted", type) << presented(
            isBackground, [](Stage &stage, QPainter &painter) { stage->OnQPainterDraw(&painter); });
        QTest::addRow("the shape of a %s object", type)
            << presented(isBackground, [](Stage &stage, QPainter &) {
                   stage->shape();
                   stage->boundingRect();
               });
        QTest::addRow("a %s object is moved", type)
            << presented(isBackground, [](Stage &stage, QPainter &) {
                   stage->setPos(QPointF(5, 4), true);
                   stage->getPos();
               });
    }
}

void TestAllocationRequests::presentingThrowsNothing()
{
    QFETCH(Operation, operation);
    FailureOutcome::check(operation);
}

QTEST_MAIN(TestAllocationRequests)
#include "tst_allocation_requests.moc"
