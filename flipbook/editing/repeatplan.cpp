#include "flipbook/editing/repeatplan.h"

#include <algorithm>
#include <functional>
#include <numeric>

qint64 RepeatPlan::frameCount() const
{
    return std::accumulate(repeats.cbegin(), repeats.cend(), qint64(0));
}

RepeatPlan planRepeats(const QVector<int> &delaysMs)
{
    RepeatPlan plan;
    for (const int delay : delaysMs)
        plan.intervalMs = std::gcd(plan.intervalMs, qMax(1, delay));
    for (const int delay : delaysMs)
        plan.repeats.append(qMax(1, delay) / plan.intervalMs);
    return plan;
}

bool isUneven(const QVector<int> &delaysMs)
{
    return std::adjacent_find(delaysMs.cbegin(), delaysMs.cend(), std::not_equal_to<>()) !=
           delaysMs.cend();
}

qint64 totalMs(const QVector<int> &delaysMs)
{
    return std::accumulate(delaysMs.cbegin(), delaysMs.cend(), qint64(0));
}
