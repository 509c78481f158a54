#include "tests/animatedimage/reentrancy/scene.h"

#include "framework/framework.h"
#include "tests/support/gifbuilder.h"
#include "tests/support/pictures.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonObject>

namespace
{

constexpr int backgroundType = 1;

QList<QImage> framesOf(const Situation &situation)
{
    return solidFrames(situation.hasOneFrame ? QList<QSize>{{10, 10}}
                                             : QList<QSize>{{10, 10}, {20, 10}, {10, 30}});
}

void write(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("%s could not be written", qPrintable(path));
}

} // namespace

SceneFiles::SceneFiles()
    : gif(m_place.filePath(QStringLiteral("walk.gif")))
    , picture(m_place.filePath(QStringLiteral("one.png")))
    , folder(m_place.filePath(QStringLiteral("frames")))
    , costumes(m_place.filePath(QStringLiteral("costume")))
{
    write(gif, GifBuilder(12, 9).loop(2).add(0, 12).add(1, 5).add(2, 7).data());
    Pictures::solid(9, 7, Qt::cyan).save(picture);
    QDir().mkpath(folder);
    Pictures::solid(4, 5, Qt::red).save(folder + QStringLiteral("/x.png"));
    Pictures::solid(6, 3, Qt::blue).save(folder + QStringLiteral("/y.png"));
    write(folder + QStringLiteral("/config.json"),
          R"({"ImageList":[{"filename":"x.png"},{"filename":"y.png"}],"LoopCount":3})");

    Stage saved(solidFrames({{7, 5}, {5, 6}}));
    saved->playImage(true);
    saved.probe.tick();
    saved.probe.animatedType() = backgroundType;
    QDataStream stream(&state, QIODevice::WriteOnly);
    saved->save(stream);
    saved->saveJson(json);
    gifJson = json;
    gifJson[QStringLiteral("IsGif")] = true;
    gifJson[QStringLiteral("GifFileName")] = gif;
}

QString Situation::name() const
{
    QStringList words;
    words.append(isBackground ? QStringLiteral("background") : QStringLiteral("normal"));
    words.append(isPresented ? QStringLiteral("presented") : QStringLiteral("edited"));
    words.append(isPlaying ? QStringLiteral("playing") : QStringLiteral("stopped"));
    words.append(hasOneFrame ? QStringLiteral("one frame") : QStringLiteral("three frames"));
    return words.join(QStringLiteral(", "));
}

QList<Situation> Situation::all()
{
    QList<Situation> situations;
    for (int bits = 0; bits < 16; ++bits)
        situations.append({(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0});
    return situations;
}

Scene::Scene(const Situation &situation, const SceneFiles &files)
    : stage(framesOf(situation))
    , files(files)
    , m_object(stage.image)
    , m_other(new CAnimatedImage(2, true, nullptr))
    , m_page(stage.page)
{
    Framework &framework = Framework::instance();
    framework.dropUndoCommands();
    m_page->addObject(m_other);
    m_other->loadFromFile(files.gif);
    m_other->playImage(true);
    m_object->setLayerShadow(Qt::black, QPointF(2.0, 2.0));
    stage.probe.animatedType() = situation.isBackground ? backgroundType : 0;
    // The second frame is shown.
    m_object->playImage(true);
    stage.probe.tick();
    if (!situation.isPlaying)
        stage.probe.isRunning() = false;
    stage.document.setAlternateMode(situation.isPresented ? 1 : 0);

    const Notifier *notifier = framework.notifier();
    const CBaseObject *object = m_object;
    connect(notifier, &Notifier::propertyChanged, this,
            [this, object](const CBaseObject *sender) { hear(sender == object); });
    connect(notifier, &Notifier::posted, this, [this] { hear(true); });
    connect(notifier, &Notifier::notified, this, [this] { hear(false); });
    const UndoStack *stack = framework.undoStack();
    connect(stack, &QUndoStack::indexChanged, this, [this] { hear(false); });
    connect(stack, &QUndoStack::canUndoChanged, this, [this] { hear(false); });
    connect(stack, &QUndoStack::canRedoChanged, this, [this] { hear(false); });
}

Scene::~Scene()
{
    disconnect(Framework::instance().notifier(), nullptr, this, nullptr);
    disconnect(Framework::instance().undoStack(), nullptr, this, nullptr);
}

void Scene::interrupt(int nth, const std::function<void(Scene &)> &deed)
{
    m_deed = deed;
    m_left = nth;
    m_heard = 0;
}

void Scene::hear(bool isOfTheObject)
{
    if (m_object.isNull() && isOfTheObject)
        ++m_heardTooLate;
    if (m_left <= 0)
        return;
    ++m_heard;
    if (--m_left == 0)
        m_deed(*this);
}
