#pragma once

#include <functional>
#include <string>

/// Comparisons of the project's own work with a rival that does the same job: the rows of the
/// benchmark table. Each takes pairs of measurements, one of each side in turn, so that a machine
/// that is slow for a while is slow for both.
namespace Comparison
{

/// Does the work of one side once and says what it cost: seconds, bytes, instructions.
using Cost = std::function<double()>;

struct Sides {
    Cost ours;
    Cost rival;
};

/// Prepares both sides, when the comparison is run. What the closures hold lives as long as they
/// do.
using Preparation = std::function<Sides()>;

/// Seconds of CPU time, of all threads, that @p work takes. Short work is repeated, so that the
/// clock can tell.
Cost cpuTime(std::function<void()> work);

/// Seconds of CPU time of this process, with all its threads, since the construction.
class CpuClock
{
public:
    CpuClock();
    /// Seconds since construction.
    double seconds() const;

private:
    double m_start;
};

struct Plan {
    std::string name;    ///< "row/case"; rows begin with their number in two digits
    std::string rival;   ///< what it is compared with
    double target = 1.0; ///< the ratio that ours / rival must not exceed
    int pairs = 15;      ///< how many pairs are measured
};

/// Adds a row to the benchmarks of this program. Call it while the program starts.
bool add(const Plan &plan, const Preparation &prepare);

} // namespace Comparison
