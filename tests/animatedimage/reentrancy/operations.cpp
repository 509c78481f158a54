#include "tests/animatedimage/reentrancy/operations.h"

#include "animatedimage/protocol/undocommands.h"
#include "framework/framework.h"
#include "host/attributeids.h"
#include "host/specialpropertyids.h"
#include "tests/animatedimage/specialproperties/knownrequests.h"
#include "tests/support/pictures.h"
#include "tests/support/request.h"

#include <QtCore/QBuffer>
#include <QtCore/QCoreApplication>
#include <QtCore/QFile>
#include <QtCore/QTimerEvent>

#include <memory>

namespace
{

using Step = std::function<void(Scene &)>;

UndoStack &stack()
{
    return *Framework::instance().undoStack();
}

void sendAttribute(Scene &scene, int id, const QByteArray &input = {})
{
    QDataStream stream(input);
    if (scene.isAlive())
        scene.object()->SetAttribute(id, stream, false);
}

Step attribute(int id, const QByteArray &input = {})
{
    return [id, input](Scene &scene) { sendAttribute(scene, id, input); };
}

Step set(int id, const QByteArray &input)
{
    return [id, input](Scene &scene) { Request(input).set(scene.object(), id); };
}

Step replaceAll()
{
    return [](Scene &scene) {
        Request(Request::packed(scene.files.picture))
            .get(scene.object(), SpecialPropertyId::ReplaceAllFrames);
    };
}

/// A tick as it happens: as an event of the timer.
void timerEvent(Scene &scene)
{
    scene.object()->setShiftInterval(200);
    QTimer *timer = scene.stage.probe.timer();
    QTimerEvent event(timer->timerId());
    QCoreApplication::sendEvent(timer, &event);
}

class List
{
public:
    void add(const QString &name, const Step &act)
    {
        add(
            name, [](Scene &) {}, act);
    }
    void add(const QString &name, const Step &prepare, const Step &act)
    {
        all.append({name, prepare, act});
    }

    void addRequests();
    void addAttributes();
    void addSavedForms();
    void addImports();
    void addUndo();
    void addPlayback();
    void addGeometry();
    void addSettings();

    QList<SceneOperation> all;
};

void List::addRequests()
{
    // The files and the other object are known when the request is sent.
    const QList<KnownRequest> known = knownRequests(QString(), nullptr);
    for (int i = 0; i < known.size(); ++i) {
        const QString verb = known.at(i).direction == KnownRequest::Get ? QStringLiteral("get %1")
                                                                        : QStringLiteral("set %1");
        add(verb.arg(known.at(i).id), [i](Scene &scene) {
            const KnownRequest request = knownRequests(scene.files.picture, scene.other()).at(i);
            Request sent(request.input);
            request.send(scene.object(), sent.stream());
        });
    }
    using namespace SpecialPropertyId;
    for (const qint32 type : {0, 1, 5})
        add(QStringLiteral("set 5008 to %1 undoably").arg(type),
            set(AnimatedType, Request::packed(type, true)));
    add(QStringLiteral("set 5008 in a macro of the host"), [](Scene &scene) {
        GetFramework()->openUndoMacro(QStringLiteral("Own"));
        if (scene.isAlive())
            set(AnimatedType, Request::packed(qint32(1), true))(scene);
        GetFramework()->closeUndoMacro();
    });
    for (const qint32 index : {0, 1, 2})
        add(QStringLiteral("set 5009 at %1").arg(index), set(DeleteFrame, Request::packed(index)));
    add(QStringLiteral("set 5013 to off"), set(Running, Request::packed(false)));
    add(QStringLiteral("set 5016 from itself"), [](Scene &scene) {
        const auto address = reinterpret_cast<qint64>(static_cast<CGDRootObject *>(scene.object()));
        Request(Request::packed(address)).set(scene.object(), CopyFromObject);
    });
    add(QStringLiteral("all thumbnails"), [](Scene &scene) {
        ThumbnailList list;
        scene.object()->GetAllThumbnail(false, list);
    });
}

void List::addAttributes()
{
    using namespace AttributeId;
    const QByteArray off = Request::packed(false);
    const QByteArray on = Request::packed(true);
    const QByteArray start = Request::packed(false, false);
    const QByteArray resume = Request::packed(false, true);
    const auto suspend = attribute(EnableTimer, off);
    add(QStringLiteral("suspend"), attribute(EnableTimer, off));
    add(QStringLiteral("enable"), attribute(EnableTimer, on));
    add(QStringLiteral("enable after suspension"), suspend, attribute(EnableTimer, on));
    add(QStringLiteral("start with the timer"), attribute(StartSteppedPlayback, start));
    add(QStringLiteral("start stepped playback"), suspend, attribute(StartSteppedPlayback, start));
    add(QStringLiteral("resume stepped playback"), suspend,
        attribute(StartSteppedPlayback, resume));
    add(QStringLiteral("stepped tick"), attribute(SteppedTick));
    const auto tickNear = [](int loops) {
        return [loops](Scene &scene) {
            scene.object()->setLoopCount(loops);
            scene.stage.probe.elapsedMs() = 200 * scene.stage.probe.frames().size() - 40;
        };
    };
    add(QStringLiteral("stepped tick into the next pass"), tickNear(-1), attribute(SteppedTick));
    add(QStringLiteral("last stepped tick"), tickNear(0), attribute(SteppedTick));
    add(QStringLiteral("enter the alternate mode"), attribute(EnterAlternateMode));
    const Step enterAndMove = [](Scene &scene) {
        sendAttribute(scene, EnterAlternateMode);
        if (scene.isAlive())
            scene.object()->setCurrentIndex(0);
        scene.stage.probe.isRunning() = !scene.stage.probe.isRunning();
    };
    add(QStringLiteral("leave the alternate mode"), enterAndMove, attribute(LeaveAlternateMode));
    // The document's own mode, which Stage does not show to objects. What is posted does not tell
    // its object, so there is one alone.
    const Step releaseOther = [](Scene &scene) { scene.other()->Release(); };
    add(QStringLiteral("the document enters the alternate mode"), releaseOther,
        [](Scene &scene) { scene.stage.document.enterAlternateMode(); });
    add(
        QStringLiteral("the document leaves the alternate mode"),
        [releaseOther](Scene &scene) {
            releaseOther(scene);
            scene.stage.document.enterAlternateMode();
        },
        [](Scene &scene) { scene.stage.document.leaveAlternateMode(); });
}

void List::addSavedForms()
{
    for (const bool isInline : {true, false}) {
        const Step prepare = [isInline](Scene &scene) {
            scene.stage.document.setKeepsImagesInline(isInline);
        };
        const QString pictures =
            isInline ? QStringLiteral(", pictures inline") : QStringLiteral(", pictures stored");
        add(QStringLiteral("save") + pictures, prepare, [](Scene &scene) {
            QByteArray bytes;
            QDataStream stream(&bytes, QIODevice::WriteOnly);
            scene.object()->save(stream);
        });
        add(QStringLiteral("save as JSON") + pictures, prepare, [](Scene &scene) {
            QJsonObject json;
            scene.object()->saveJson(json);
        });
    }
    const Step empty = [](Scene &scene) {
        scene.object()->loadFromFile(QStringLiteral("none.gif"));
        scene.stage.document.setKeepsImagesInline(true);
    };
    add(QStringLiteral("load"), empty, [](Scene &scene) {
        QDataStream stream(scene.files.state);
        scene.object()->load(stream);
    });
    add(QStringLiteral("load as JSON"), empty, [](Scene &scene) {
        QJsonObject json = scene.files.json;
        scene.object()->loadJson(json);
    });
    add(QStringLiteral("load a reference to a GIF"), empty, [](Scene &scene) {
        QJsonObject json = scene.files.gifJson;
        scene.object()->loadJson(json);
    });
}

void List::addImports()
{
    add(QStringLiteral("import a GIF"),
        [](Scene &scene) { scene.object()->loadFromFile(scene.files.gif); });
    add(QStringLiteral("import a GIF with a device"), [](Scene &scene) {
        QFile device(scene.files.gif);
        device.open(QIODevice::ReadOnly);
        scene.object()->loadFromFile(scene.files.gif, &device);
    });
    add(QStringLiteral("append a GIF"),
        [](Scene &scene) { scene.object()->loadFromGifFile(scene.files.gif); });
    add(QStringLiteral("import no file"),
        [](Scene &scene) { scene.object()->loadFromFile(QStringLiteral("none.gif")); });
    add(QStringLiteral("import a folder"),
        [](Scene &scene) { scene.object()->loadFromFile(scene.files.folder); });
    add(QStringLiteral("import a picture"), [](Scene &scene) {
        const QImage picture = Pictures::solid(6, 4, Qt::green);
        scene.object()->loadFromImage(&picture);
    });
    add(QStringLiteral("costumes"),
        [](Scene &scene) { scene.object()->generateCostumesCode(scene.files.costumes); });
}

void List::addUndo()
{
    const auto addBoth = [this](const QString &name, const Step &push) {
        add(QStringLiteral("undo ") + name, push, [](Scene &) { stack().undo(); });
        add(
            QStringLiteral("redo ") + name,
            [push](Scene &scene) {
                push(scene);
                stack().undo();
            },
            [](Scene &) { stack().redo(); });
    };
    addBoth(QStringLiteral("all frames"), replaceAll());
    for (const qint32 type : {0, 1, 5})
        addBoth(QStringLiteral("type %1").arg(type),
                set(SpecialPropertyId::AnimatedType, Request::packed(type, true)));
    for (const auto change : {CHANGE_SHIFT_INTERVAL, CHANGE_KEEP_RATIO, CHANGE_LOOP_COUNT}) {
        addBoth(QStringLiteral("change %1").arg(int(change)), [change](Scene &scene) {
            auto *command = new CAnimatedImageChangeCommand(scene.object(), change);
            command->setIntValue(200, 300);
            command->setBoolValue(true, false);
            CUndoRedo::GetInstance()->push(command);
        });
    }
    const Step several = [](Scene &scene) {
        replaceAll()(scene);
        set(SpecialPropertyId::AnimatedType, Request::packed(qint32(1), true))(scene);
        set(SpecialPropertyId::AnimatedType, Request::packed(qint32(0), true))(scene);
        replaceAll()(scene);
    };
    addBoth(QStringLiteral("the last of several"), several);
    add(QStringLiteral("undo all of several"), several, [](Scene &) { stack().setIndex(0); });
    add(
        QStringLiteral("redo all of several"),
        [several](Scene &scene) {
            several(scene);
            stack().setIndex(0);
        },
        [](Scene &) { stack().setIndex(stack().count()); });
    add(
        QStringLiteral("replace all after an undo"),
        [](Scene &scene) {
            replaceAll()(scene);
            replaceAll()(scene);
            stack().undo();
        },
        replaceAll());
}

void List::addPlayback()
{
    add(QStringLiteral("play"), [](Scene &scene) { scene.object()->playImage(true); });
    add(QStringLiteral("stop"), [](Scene &scene) { scene.object()->playImage(false); });
    for (const int index : {-1, 0, 2})
        add(QStringLiteral("show frame %1").arg(index),
            [index](Scene &scene) { scene.object()->setCurrentIndex(index); });
    add(QStringLiteral("tick"), timerEvent);
    const auto nearEnd = [](int loops) {
        return [loops](Scene &scene) {
            scene.object()->setLoopCount(loops);
            scene.stage.probe.runningIndex() = scene.stage.probe.frames().size() - 1;
        };
    };
    add(QStringLiteral("tick into the next pass"), nearEnd(-1), timerEvent);
    add(QStringLiteral("last tick"), nearEnd(0), timerEvent);
    add(QStringLiteral("interval"), [](Scene &scene) { scene.object()->setShiftInterval(50); });
    add(QStringLiteral("background tile"), [](Scene &scene) { scene.object()->regenBGImage(); });
}

void List::addGeometry()
{
    add(QStringLiteral("size"),
        [](Scene &scene) { scene.object()->setSize(QSizeF(50.0, 60.0), true, true); });
    add(QStringLiteral("position"),
        [](Scene &scene) { scene.object()->setPos(QPointF(3.0, 4.0), true); });
    add(
        QStringLiteral("position while moved by hand"),
        [](Scene &scene) { scene.object()->setStatus(2); },
        [](Scene &scene) { scene.object()->setPos(QPointF(3.0, 4.0), true); });
    add(QStringLiteral("centre"), [](Scene &scene) {
        scene.object()->setCenterPos(QPointF(9.0, 9.0), QSizeF(5.0, 5.0), 10.0, true);
    });
    add(QStringLiteral("mirror"), [](Scene &scene) { scene.object()->setMirror(true, true); });
    add(QStringLiteral("flip"), [](Scene &scene) { scene.object()->setFlip(true, true); });
    add(QStringLiteral("rotation"), [](Scene &scene) { scene.object()->setRotate(30.0, true); });
    add(QStringLiteral("after a change of geometry"), [](Scene &scene) {
        scene.object()->updateAfterObjRectChanged(scene.object()->GetGraphicsItemPtr(), true);
    });
    add(QStringLiteral("layer"), [](Scene &scene) {
        scene.page()->applyObject(0, scene.page()->queryObject(scene.object(), 2), {scene.object()},
                                  true, QString(), true);
    });
    add(QStringLiteral("paint the page"), [](Scene &scene) { scene.page()->rendered(); });
}

void List::addSettings()
{
    add(QStringLiteral("settings"), [](Scene &scene) {
        scene.object()->SetSettingJson(
            QStringLiteral(R"({"settings":[{"id":"idImagePlay","value":"true"},)"
                           R"({"id":"idShiftInterval","value":"70"},)"
                           R"({"id":"idLoopCount","value":"false"}]})"),
            true, true);
    });
    add(QStringLiteral("settings that stop"), [](Scene &scene) {
        scene.object()->SetSettingJson(
            QStringLiteral(R"({"settings":[{"id":"idImagePlay","value":"false"},)"
                           R"({"id":"idShiftInterval","value":"0"}]})"),
            true, true);
    });
    add(QStringLiteral("name"), [](Scene &scene) {
        scene.object()->setOtherParams(QStringLiteral("object_name"), QStringLiteral("new"));
    });
}

} // namespace

QList<SceneOperation> sceneOperations()
{
    List list;
    list.addRequests();
    list.addAttributes();
    list.addSavedForms();
    list.addImports();
    list.addUndo();
    list.addPlayback();
    list.addGeometry();
    list.addSettings();
    return list.all;
}
