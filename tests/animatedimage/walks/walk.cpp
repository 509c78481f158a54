#include "tests/animatedimage/walks/walk.h"

#include "tests/animatedimage/walks/comparison.h"
#include "tests/animatedimage/walks/stepchooser.h"

namespace
{

/// Does one step with objects and model. What takes long is compared with every @p thoroughly.
QString perform(Actor &actor, ModelWorld &model, const Step &step, bool thoroughly)
{
    const Outcome expected = model.apply(step);
    const Found found = actor.perform(step, expected, model);
    const QStringList events = HostEars::instance().takeEvents();
    return Comparison::firstDifference(step, expected, found, model, actor, events,
                                       thoroughly ? Comparison::Thorough : Comparison::Quick);
}

/// Does these steps, comparing all after each.
Walks::Failure repeat(Actor &actor, const QVector<Step> &steps, Mistake mistake)
{
    Walks::Failure failure;
    ModelWorld model(mistake);
    actor.begin();
    for (const Step &step : steps) {
        failure.steps.append(step);
        failure.difference = perform(actor, model, step, true);
        if (!failure.isEmpty() || !model.isHandy())
            break;
    }
    actor.end();
    return failure;
}

} // namespace

namespace Walks
{

QString Failure::words() const
{
    QString text;
    for (int i = 0; i < steps.size(); ++i)
        text += QStringLiteral("%1. %2\n").arg(i + 1, 3).arg(steps.at(i).words());
    return text + QStringLiteral("     then ") + difference + QLatin1Char('\n');
}

Walks::Failure walk(Actor &actor, quint32 seed, Mistake mistake)
{
    Failure failure;
    StepChooser chooser(seed);
    ModelWorld model(mistake);
    actor.begin();
    const auto perform = [&](const Step &step, bool thoroughly) {
        failure.steps.append(step);
        failure.difference = ::perform(actor, model, step, thoroughly);
    };
    const QVector<Step> beginning = chooser.beginning();
    for (const Step &step : beginning) {
        if (failure.isEmpty())
            perform(step, false);
    }
    const int length = chooser.number(6, 24);
    for (int i = 0; i < length && failure.isEmpty(); ++i) {
        const Step step = chooser.next(model);
        ModelWorld afterwards = model;
        afterwards.apply(step);
        if (afterwards.isHandy())
            perform(step, chooser.chance(1, 8) || i + 1 == length);
    }
    const QVector<Step> ending = chooser.ending(model);
    for (const Step &step : ending) {
        if (failure.isEmpty() && model.isHandy())
            perform(step, false);
    }
    actor.end();
    return failure;
}

Walks::Failure shortened(Actor &actor, const Failure &failure, Mistake mistake)
{
    Failure shortest = failure;
    for (int left = failure.steps.size() - 1; left >= 0; --left) {
        if (left >= shortest.steps.size())
            continue;
        QVector<Step> fewer = shortest.steps;
        fewer.removeAt(left);
        const Failure again = repeat(actor, fewer, mistake);
        if (!again.isEmpty())
            shortest = again;
    }
    return shortest;
}

} // namespace Walks
