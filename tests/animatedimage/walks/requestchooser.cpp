#include "tests/animatedimage/walks/stepchooser.h"
#include "tests/animatedimage/walks/walkfiles.h"

void StepChooser::chooseRequest(Step &step, const ModelObject &object)
{
    if (chance(2, 5))
        chooseGet(step, object);
    else
        chooseSet(step, object);
    disturb(step);
}

void StepChooser::chooseGet(Step &step, const ModelObject &object)
{
    step.op = Step::GetProperty;
    // Those that make thumbnails take the longest.
    if (chance(1, 8))
        step.id = oneOf({5006, 5010, 5010, 5011, 5011, 5014});
    else
        step.id = oneOf({5005, 5007, 5008, 5012, 5013, 5017, 5018, 5019, 5020, 5020, 5021, 5001,
                         5009, 5015, 5016, 5022, 0});
    // The blank frame of an empty list is 500 pixels wide: it takes its time.
    if (step.id == 5010 && object.frames.isEmpty() && !chance(1, 12))
        step.id = 5006;
    switch (step.id) {
    case 5005:
    case 5007:
    case 5010:
        step.input = {Wire::number(anyIndex(object))};
        break;
    case 5011:
        step.input = {Wire::number(anyIndex(object)), Wire::number(anyIndex(object))};
        break;
    case 5014:
        step.input = {Wire::number(anyIndex(object)),
                      Wire::text(oneOf(WalkFiles::instance().pictures()))};
        break;
    case 5020:
        step.input = {Wire::text(oneOf(WalkFiles::instance().pictures()))};
        break;
    default:
        break;
    }
}

void StepChooser::chooseSet(Step &step, const ModelObject &object)
{
    step.op = Step::SetProperty;
    step.flag = chance(1, 2);
    if (chance(1, 20))
        step.id = oneOf({5007, 5015});
    else
        step.id =
            oneOf({5001, 5001, 5002, 5002, 5003, 5003, 5004, 5004, 5005, 5008, 5008, 5008, 5009,
                   5009, 5013, 5013, 5016, 5016, 5006, 5010, 5011, 5012, 5014, 5017, 5020, 0});
    switch (step.id) {
    case 5003:
    case 5009:
        step.input = {Wire::number(anyIndex(object))};
        break;
    case 5004:
        step.input = {Wire::text(name(object))};
        break;
    case 5005:
        step.input = {Wire::number(anyIndex(object)), Wire::text(name(object))};
        break;
    case 5007:
        step.input = {Wire::flag(chance(1, 2)), Wire::number(anyIndex(object)),
                      Wire::picture(picture())};
        break;
    case 5008:
        step.input = {Wire::number(kind()), Wire::flag(chance(2, 3))};
        break;
    case 5013:
        step.input = {Wire::flag(chance(2, 3))};
        break;
    case 5015:
        step.input = {Wire::number(anyIndex(object)), Wire::number(anyIndex(object))};
        break;
    case 5016:
        step.input = {
            Wire::handle(chance(1, 2) ? HandleOf::Other : HandleOf(number(0, handleKinds - 1)))};
        break;
    default:
        break;
    }
}
