#include "tests/animatedimage/walks/actor.h"

#include "framework/framework.h"
#include "tests/animatedimage/walks/walkfiles.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFile>

namespace
{

const ImportSource &sourceAt(int number)
{
    return WalkFiles::instance().sources().at(number);
}

bool loadWithDevice(CAnimatedImage *object, const Step &step)
{
    const QString &path = sourceAt(step.number).path;
    if (step.second < 0)
        return object->loadFromFile(path, nullptr);
    QFile file(sourceAt(step.second).path);
    // A file that cannot be opened is a device that cannot be read.
    (void)file.open(QIODevice::ReadOnly);
    return object->loadFromFile(path, &file);
}

} // namespace

Actor::Actor()
    : m_plainObject(99, true, nullptr, nullptr)
{
    HostEars::instance();
    for (int i = 0; i < ModelHost::Pages; ++i)
        m_pages[size_t(i)] =
            std::make_unique<StagePage>(ModelHost::pageRect(i), &m_documents[size_t(i)], i);
}

void Actor::begin()
{
    CGDRootObject::SetHandleSize(8.0);
    HostEars::instance().begin();
    for (StageDocument &document : m_documents)
        document.setAlternateMode(0);
    setKeepsImagesInline(true);
    m_nextSerial = 1;
    for (CAnimatedImage *&object : m_objects) {
        object = newObject();
        m_pages[0]->addObject(object);
    }
    HostEars::instance().takeEvents();
}

void Actor::end()
{
    Framework::instance().dropUndoCommands();
    for (CAnimatedImage *&object : m_objects) {
        if (object)
            object->Release();
        object = nullptr;
    }
    HostEars::instance().end();
    // What pages and scenes put off until the next turn of the event loop.
    QCoreApplication::sendPostedEvents();
}

CAnimatedImage *Actor::newObject()
{
    auto *object = new CAnimatedImage(m_nextSerial, true, nullptr);
    HostEars::instance().name(object, m_nextSerial++);
    return object;
}

QList<int> Actor::objectsOf(int page) const
{
    QList<int> serials;
    const QList<CBaseObject *> objects = m_pages[size_t(page)]->objects();
    for (const CBaseObject *object : objects)
        serials.append(HostEars::instance().serialOf(object));
    return serials;
}

StagePage *Actor::pageOf(const CAnimatedImage *object)
{
    for (const auto &page : m_pages) {
        if (object->GetPage() == static_cast<IGdPage *>(page.get()))
            return page.get();
    }
    return nullptr;
}

Document *Actor::documentOf(int slot)
{
    return static_cast<Document *>(AnimatedImageProbe(*m_objects[size_t(slot)]).belongDoc());
}

void Actor::release(CAnimatedImage *object, bool dropCommands)
{
    if (dropCommands)
        Framework::instance().dropUndoCommands();
    object->Release();
}

/// @p object takes the place of what was there, which is released.
void Actor::putInPlace(int slot, CAnimatedImage *object, bool dropCommands)
{
    CAnimatedImage *old = m_objects[size_t(slot)];
    m_objects[size_t(slot)] = object;
    release(old, dropCommands);
}

void Actor::setKeepsImagesInline(bool keepsInline)
{
    for (StageDocument &document : m_documents)
        document.setKeepsImagesInline(keepsInline);
    Framework::instance().defaultDocument()->setKeepsImagesInline(keepsInline);
}

Found Actor::perform(const Step &step, const Outcome &expected, const ModelWorld &model)
{
    CAnimatedImage *object = m_objects[size_t(step.object)];
    const ModelObject &itsModel = model.objects[size_t(step.object)];
    switch (step.op) {
    case Step::CopyByStream:
        return copyByStream(step, expected);
    case Step::CopyByJson:
        return copyByJson(step, expected);
    case Step::CompareThumbnails:
        return compareThumbnails(step, object, itsModel);
    case Step::ComparePainting:
        return comparePainting(step, object, itsModel);
    default:
        break;
    }
    if (step.op <= Step::SetKeepRatio || step.op == Step::NotifyType)
        return playback(step, object);
    if (step.op <= Step::SetFlip || (step.op >= Step::SetStatus && step.op <= Step::SetHasShape))
        return geometry(step, object);
    if (step.op >= Step::SendAttribute && step.op <= Step::SetProperty)
        return request(step, object);
    if (step.op >= Step::Undo && step.op <= Step::Replace)
        return host(step, object);
    return content(step, object);
}

Found Actor::playback(const Step &step, CAnimatedImage *object)
{
    AnimatedImageProbe probe(*object);
    switch (step.op) {
    case Step::AddFrame: {
        QImage picture = PicturePool::instance().image(step.number);
        picture.setDevicePixelRatio(1.0);
        probe.frames().append(CAnimatedPortrait(step.text, picture));
        object->updateRegion(probe.frames().size() - 1, true);
        break;
    }
    case Step::Tick:
        probe.tick();
        break;
    case Step::Play:
        object->playImage(step.flag);
        break;
    case Step::SetIndex:
        object->setCurrentIndex(step.number);
        break;
    case Step::SetInterval:
        object->setShiftInterval(step.number);
        break;
    case Step::SetLoopCount:
        object->setLoopCount(step.number);
        break;
    case Step::SetKeepRatio:
        object->setKeepRatio(step.flag);
        break;
    default:
        object->notifyAnimatedType();
        break;
    }
    return {};
}

Found Actor::geometry(const Step &step, CAnimatedImage *object)
{
    switch (step.op) {
    case Step::SetSize:
        object->setSize(step.size, step.flag, step.other);
        break;
    case Step::SetCenterPos:
        object->setCenterPos(step.point, step.size, step.angle, step.flag);
        break;
    case Step::SetPos:
        object->setPos(step.point, step.flag);
        break;
    case Step::SetMirror:
        object->setMirror(step.flag, step.other);
        break;
    case Step::SetFlip:
        object->setFlip(step.flag, step.other);
        break;
    case Step::SetStatus:
        object->setStatus(step.number);
        break;
    case Step::SetRotation:
        object->setRotate(step.angle, step.flag);
        break;
    case Step::SetRotateType:
        object->setKTRotateType(step.number);
        break;
    case Step::SetShadow:
        object->setLayerShadow(step.flag ? QColor(1, 2, 3, 77) : QColor(), QPointF(1.0, 2.0));
        break;
    case Step::SetHandleSize:
        CGDRootObject::SetHandleSize(step.angle);
        break;
    default:
        AnimatedImageProbe(*object).hasShape() = step.flag;
        break;
    }
    return {};
}

Found Actor::content(const Step &step, CAnimatedImage *object)
{
    Found found;
    switch (step.op) {
    case Step::SetParam:
        found.result = object->setOtherParams(step.text, step.value);
        break;
    case Step::SetSettings:
        found.result = object->SetSettingJson(step.text, step.flag, !step.flag);
        break;
    case Step::GetSettings:
        found.result = object->GetSettingJson(found.text);
        break;
    case Step::GenerateTile:
        object->generateBGImage(step.number);
        break;
    case Step::RegenerateTile:
        object->regenBGImage();
        break;
    case Step::UpdateRegion:
        object->updateRegion(step.number, step.flag);
        break;
    case Step::UpdateRegions:
        object->updateRegion(step.flag);
        break;
    case Step::LoadImage: {
        const QImage picture = PicturePool::instance().image(step.number);
        found.result = object->loadFromImage(&picture);
        break;
    }
    case Step::LoadFile:
        found.result = object->loadFromFile(sourceAt(step.number).path);
        break;
    default:
        found.result = loadWithDevice(object, step);
        break;
    }
    return found;
}
