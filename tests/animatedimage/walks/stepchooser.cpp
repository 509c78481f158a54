#include "tests/animatedimage/walks/stepchooser.h"

#include "tests/animatedimage/walks/walkfiles.h"

#include <climits>

int StepChooser::picture()
{
    PicturePool &pool = PicturePool::instance();
    if (chance(1, 400))
        return oneOf(pool.large());
    return chance(1, 10) ? oneOf(pool.square()) : oneOf(pool.narrow());
}

int StepChooser::frameIndex(const ModelObject &object)
{
    return object.frames.isEmpty() ? 0 : number(0, object.frames.size() - 1);
}

/// Mostly a frame's, sometimes just outside the list, rarely far away.
int StepChooser::anyIndex(const ModelObject &object)
{
    if (chance(7, 10))
        return frameIndex(object);
    if (chance(1, 8))
        return oneOf({INT_MAX, INT_MIN, 1000, -1000});
    return oneOf({-1, object.frames.size(), object.frames.size() + 1, -2});
}

double StepChooser::length(double low, double high)
{
    const double exact = low + (high - low) * m_random.generateDouble();
    return chance(1, 2) ? exact : qRound(exact * 4.0) / 4.0;
}

QSizeF StepChooser::size()
{
    if (chance(1, 25))
        return oneOf({QSizeF(0.0, 0.0), QSizeF(3.0, 0.0), QSizeF(-1.0, 4.0), QSizeF(0.2, 0.3),
                      QSizeF(qQNaN(), 2.0), QSizeF(qInf(), 2.0)});
    return {length(0.0, 24.0), length(0.0, 24.0)};
}

QPointF StepChooser::place()
{
    if (chance(1, 40))
        return oneOf({QPointF(qQNaN(), 0.0), QPointF(0.0, qInf())});
    return {length(-25.0, 40.0), length(-25.0, 45.0)};
}

double StepChooser::angle()
{
    return chance(1, 3) ? 0.0 : oneOf({90.0, 45.0, -30.0, 17.25, 360.0});
}

/// One that a frame has, or that frames are given, or another.
QString StepChooser::name(const ModelObject &object)
{
    if (!object.frames.isEmpty() && chance(2, 3))
        return object.frames.at(frameIndex(object)).name;
    static const QStringList names{
        QStringLiteral("cat"),    QStringLiteral("cat_1"), QStringLiteral("_1"),   QString(),
        QStringLiteral("a_b_%1"), QStringLiteral("%2_2"),  QStringLiteral("cat_2")};
    return oneOf(names);
}

int StepChooser::kind()
{
    return chance(1, 2) ? 1 : oneOf({0, -1, 5, 0});
}

QVector<Step> StepChooser::beginning()
{
    QVector<Step> steps;
    for (int object = 0; object < 2; ++object) {
        const int count = number(0, object == 0 ? 4 : 2);
        const int one = picture();
        for (int i = 0; i < count; ++i) {
            Step step;
            step.op = Step::AddFrame;
            step.object = object;
            step.number = chance(1, 3) ? one : picture();
            step.text = QStringLiteral("f_%1").arg(i + 1);
            steps.append(step);
        }
        Step step;
        step.object = object;
        step.op = Step::SetSize;
        step.size = QSizeF(length(1.0, 20.0), length(1.0, 20.0));
        steps.append(step);
        if (chance(1, 2)) {
            step.op = Step::SetProperty;
            step.id = 5008;
            step.input = {Wire::number(1), Wire::flag(false)};
            steps.append(step);
        }
    }
    return steps;
}

QVector<Step> StepChooser::ending(const ModelWorld &world)
{
    QVector<Step> steps;
    if (world.host.isMacroOpen || !chance(1, 8))
        return steps;
    Step step;
    step.op = Step::Undo;
    for (int i = 0; i < world.host.doneCommands; ++i)
        steps.append(step);
    step.op = Step::Redo;
    for (int i = 0; i < world.host.commands.size(); ++i)
        steps.append(step);
    return steps;
}

Step StepChooser::next(const ModelWorld &world)
{
    Step step;
    step.object = chance(3, 4) ? 0 : 1;
    const ModelObject &object = world.objects[size_t(step.object)];
    const int dice = number(1, 100);
    if (dice <= 30)
        choosePlayback(step, object);
    else if (dice <= 46)
        chooseGeometry(step, object);
    else if (dice <= 53)
        chooseContent(step, object);
    else if (dice <= 71)
        chooseRequest(step, object);
    else if (dice <= 80)
        chooseAttribute(step);
    else if (dice <= 89)
        chooseUndo(step, world);
    else if (dice <= 97)
        chooseMode(step, world);
    else
        chooseCopy(step, world);
    return step;
}

void StepChooser::choosePlayback(Step &step, const ModelObject &object)
{
    const int dice = number(1, 100);
    if (dice <= 50) {
        step.op = Step::Tick;
    } else if (dice <= 66) {
        step.op = Step::Play;
        step.flag = chance(2, 3);
    } else if (dice <= 78) {
        step.op = Step::SetIndex;
        step.number = anyIndex(object);
    } else if (dice <= 85) {
        step.op = Step::SetInterval;
        step.number = oneOf({200, 100, 40, 20, 1, 0, -5, 13, 90});
    } else if (dice <= 92) {
        step.op = Step::SetLoopCount;
        step.number = oneOf({-1, 0, 1, 2, -2});
    } else if (dice <= 95) {
        step.op = Step::SetKeepRatio;
        step.flag = chance(1, 2);
    } else {
        step.op = oneOf({Step::NotifyType, Step::GetSettings, Step::RegenerateTile,
                         Step::GenerateTile, Step::GenerateTile});
        step.number = anyIndex(object);
    }
}

void StepChooser::chooseGeometry(Step &step, const ModelObject &object)
{
    const int dice = number(1, 100);
    step.flag = chance(1, 2);
    step.other = chance(1, 2);
    step.size = size();
    step.point = place();
    if (dice <= 20) {
        step.op = Step::SetSize;
    } else if (dice <= 38) {
        step.op = Step::SetCenterPos;
        step.angle = angle();
    } else if (dice <= 56) {
        step.op = Step::SetPos;
    } else if (dice <= 64) {
        step.op = Step::SetMirror;
    } else if (dice <= 72) {
        step.op = Step::SetFlip;
    } else if (dice <= 84) {
        step.op = Step::ComparePainting;
        step.point = QPointF(length(0.0, 12.0), length(0.0, 12.0));
    } else if (dice <= 90) {
        step.op = chance(1, 2) ? Step::UpdateRegion : Step::UpdateRegions;
        step.number = anyIndex(object);
    } else {
        chooseGeometryOfHost(step);
    }
}

void StepChooser::chooseGeometryOfHost(Step &step)
{
    step.op = oneOf({Step::SetStatus, Step::SetRotation, Step::SetRotateType, Step::SetShadow,
                     Step::SetHandleSize, Step::SetHasShape});
    step.angle = angle();
    if (step.op == Step::SetStatus)
        step.number = oneOf({0, 2, 1});
    if (step.op == Step::SetRotateType)
        step.number = number(0, 2);
    if (step.op == Step::SetHandleSize)
        step.angle = oneOf({4.0, 8.0, 5.5});
    if (step.op == Step::SetHasShape)
        step.flag = chance(3, 4);
}

void StepChooser::chooseContent(Step &step, const ModelObject &object)
{
    const int sources = WalkFiles::instance().sources().size();
    const int dice = number(1, 100);
    if (dice <= 20) {
        step.op = Step::AddFrame;
        step.number = picture();
        step.text = name(object);
    } else if (dice <= 40) {
        step.op = Step::SetParam;
        const bool isName = chance(3, 4);
        step.text = isName ? QStringLiteral("object_name") : QStringLiteral("Object_name");
        step.value = chance(1, 6) ? QVariant() : chance(1, 6) ? QVariant(7) : name(object);
    } else if (dice <= 60) {
        chooseSettings(step);
    } else if (dice <= 80) {
        step.op = Step::LoadImage;
        step.number = picture();
    } else if (dice <= 84) {
        step.op = Step::LoadFile;
        step.number = number(0, sources - 1);
    } else if (dice <= 86) {
        step.op = Step::LoadFileWithDevice;
        step.number = number(0, sources - 1);
        // A device that cannot be read gives an interval that depends on how fast the movie is
        // read.
        step.second = number(-1, 1);
    } else {
        step.op = Step::CompareThumbnails;
        step.flag = chance(2, 3);
    }
}
