#include "tests/animatedimage/walks/modelworld.h"

#include "tests/animatedimage/walks/importsource.h"
#include "tests/animatedimage/walks/walkfiles.h"

namespace
{

const ImportSource *sourceAt(int number)
{
    return number < 0 ? nullptr : &WalkFiles::instance().sources().at(number);
}

QMap<QString, QString> pairs(const QStringList &texts)
{
    QMap<QString, QString> map;
    for (int i = 0; i + 1 < texts.size(); i += 2)
        map[texts.at(i)] = texts.at(i + 1);
    return map;
}

} // namespace

ModelWorld::ModelWorld(Mistake mistake)
{
    host.mistake = mistake;
    for (ModelObject &object : objects) {
        object = ModelObject(&host, m_nextSerial++);
        object.page = 0;
        host.addToPage(object.serial, 0);
    }
}

ModelWorld &ModelWorld::operator=(const ModelWorld &other)
{
    host = other.host;
    objects = other.objects;
    m_nextSerial = other.m_nextSerial;
    for (ModelObject &object : objects)
        object.useHost(&host);
    return *this;
}

bool ModelWorld::isHandy() const
{
    constexpr double smallSide = 64.0;
    constexpr double largestSide = 600.0;
    for (const ModelObject &object : objects) {
        const double limit = object.isBackground() ? smallSide : largestSide;
        if (object.size.width() > limit || object.size.height() > limit)
            return false;
    }
    return true;
}

Outcome ModelWorld::apply(const Step &step)
{
    host.events.clear();
    ModelObject &object = objects[size_t(step.object)];
    if (step.op <= Step::SetKeepRatio || step.op == Step::NotifyType)
        return applyPlayback(step, object);
    if (step.op <= Step::SetFlip || (step.op >= Step::SetStatus && step.op <= Step::SetHasShape))
        return applyGeometry(step, object);
    if (step.op >= Step::SendAttribute && step.op <= Step::SetProperty)
        return applyRequest(step, object);
    if (step.op >= Step::Undo && step.op <= Step::Replace)
        return applyToHost(step, object);
    return applyContent(step, object);
}

Outcome ModelWorld::applyPlayback(const Step &step, ModelObject &object)
{
    switch (step.op) {
    case Step::AddFrame:
        object.addFrame(step.text, PicturePool::instance().plain(step.number));
        break;
    case Step::Tick:
        object.tick();
        break;
    case Step::Play:
        object.playImage(step.flag);
        break;
    case Step::SetIndex:
        object.setCurrentIndex(step.number);
        break;
    case Step::SetInterval:
        object.setShiftInterval(step.number);
        break;
    case Step::SetLoopCount:
        object.loopCount = step.number;
        break;
    case Step::SetKeepRatio:
        object.keepRatio = step.flag;
        break;
    default:
        object.notifyType();
        break;
    }
    return {};
}

Outcome ModelWorld::applyGeometry(const Step &step, ModelObject &object)
{
    switch (step.op) {
    case Step::SetSize:
        object.setSize(step.size, step.flag, step.other);
        break;
    case Step::SetCenterPos:
        object.setCenterPos(step.point, step.size, step.angle, step.flag);
        break;
    case Step::SetPos:
        object.setPos(step.point, step.flag);
        break;
    case Step::SetMirror:
        object.setMirror(step.flag, step.other);
        break;
    case Step::SetFlip:
        object.setFlip(step.flag, step.other);
        break;
    case Step::SetStatus:
        object.status = step.number;
        break;
    case Step::SetRotation:
        object.degree = step.angle;
        if (step.flag)
            object.changed(104);
        break;
    case Step::SetRotateType:
        object.rotateType = step.number;
        break;
    case Step::SetShadow:
        object.setShadow(step.flag ? QColor(1, 2, 3, 77) : QColor());
        break;
    case Step::SetHandleSize:
        host.handleSize = step.angle;
        break;
    default:
        object.hasShape = step.flag;
        break;
    }
    return {};
}

Outcome ModelWorld::applyContent(const Step &step, ModelObject &object)
{
    Outcome outcome;
    switch (step.op) {
    case Step::SetParam:
        outcome.result = object.setParam(step.text, step.value);
        break;
    case Step::SetSettings:
        outcome.result = !step.other;
        if (outcome.result)
            object.applySettings(pairs(step.texts));
        break;
    case Step::GetSettings:
        outcome.text = object.settings();
        break;
    case Step::GenerateTile:
        object.generateTile(step.number);
        break;
    case Step::RegenerateTile:
        object.regenerateTile();
        break;
    case Step::UpdateRegion:
        object.updateRegion(step.number, step.flag);
        break;
    case Step::UpdateRegions:
        object.updateRegions(step.flag);
        break;
    case Step::LoadImage:
        object.loadFromImage(step.number);
        break;
    case Step::LoadFile:
        object.loadFromFile(*sourceAt(step.number));
        break;
    case Step::ComparePainting:
        if (!object.frames.isEmpty() && object.document == DocumentOf::Nobody)
            object.refreshDocument();
        break;
    case Step::LoadFileWithDevice:
        outcome.result = object.loadFromFile(*sourceAt(step.number), sourceAt(step.second));
        break;
    default:
        break;
    }
    return outcome;
}

Outcome ModelWorld::applyRequest(const Step &step, ModelObject &object)
{
    Outcome outcome;
    if (step.op == Step::SendAttribute) {
        outcome.result = object.setAttribute(step.id, step.input, step.bytesThere());
        return outcome;
    }
    ModelRequest request{step.id, step.input, step.bytesThere(), step.device == Step::Buffer,
                         nullptr};
    if (!step.input.isEmpty() && step.input[0].kind == WireItem::Handle) {
        if (HandleOf(step.input[0].number) == HandleOf::Self)
            request.handled = &object;
        if (HandleOf(step.input[0].number) == HandleOf::Other)
            request.handled = &objects[size_t(1 - step.object)];
    }
    outcome.answer = step.op == Step::GetProperty ? object.get(request) : object.set(request);
    outcome.result = outcome.answer.result;
    return outcome;
}
