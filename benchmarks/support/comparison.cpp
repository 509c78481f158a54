#include "benchmarks/support/comparison.h"

#include "benchmarks/support/table.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cmath>
#include <ctime>
#include <utility>
#include <vector>

namespace Comparison
{

namespace
{

/// Work shorter than this is repeated until it takes as long.
constexpr double shortestSeconds = 0.004;

/// Of all threads: some work is spread over the cores.
double cpuSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return double(now.tv_sec) + double(now.tv_nsec) * 1e-9;
}

/// The value below which @p share of the sorted @p values are.
double quantile(const std::vector<double> &values, double share)
{
    const double place = share * double(values.size() - 1);
    const auto below = size_t(place);
    const size_t above = std::min(below + 1, values.size() - 1);
    return values[below] + (place - std::floor(place)) * (values[above] - values[below]);
}

void measure(benchmark::State &state, const Plan &plan, const Preparation &prepare)
{
    const Sides sides = prepare();
    // The first run of each side meets cold caches.
    sides.rival();
    sides.ours();
    std::vector<double> ratios;
    bool oursFirst = false;
    for (auto iteration : state) {
        (void)iteration;
        double ours = oursFirst ? sides.ours() : 0.0;
        const double rival = sides.rival();
        if (!oursFirst)
            ours = sides.ours();
        oursFirst = !oursFirst;
        state.SetIterationTime(ours);
        ratios.push_back(ours / rival);
    }
    std::sort(ratios.begin(), ratios.end());
    state.SetLabel(plan.rival);
    state.counters[Table::Ratio] = quantile(ratios, 0.5);
    state.counters[Table::Low] = quantile(ratios, 0.25);
    state.counters[Table::High] = quantile(ratios, 0.75);
    state.counters[Table::Target] = plan.target;
}

} // namespace

CpuClock::CpuClock()
    : m_start(cpuSeconds())
{
}

double CpuClock::seconds() const
{
    return cpuSeconds() - m_start;
}

Cost cpuTime(std::function<void()> work)
{
    return [work = std::move(work), times = 0]() mutable {
        if (times == 0) {
            work();
            const CpuClock clock;
            work();
            times = std::max(1, int(shortestSeconds / std::max(clock.seconds(), 1e-9)));
        }
        const CpuClock clock;
        for (int i = 0; i < times; ++i)
            work();
        return clock.seconds() / times;
    };
}

bool add(const Plan &plan, const Preparation &prepare)
{
    benchmark::RegisterBenchmark(
        plan.name.c_str(),
        [plan, prepare](benchmark::State &state) { measure(state, plan, prepare); })
        ->UseManualTime()
        ->Iterations(plan.pairs);
    return true;
}

} // namespace Comparison
