#pragma once

#include <benchmark/benchmark.h>

/// Prints the comparisons as a table: one line each, with the ratio, its spread, the target and the
/// verdict.
class Table : public benchmark::BenchmarkReporter
{
public:
    // The names of the counters that a comparison leaves.
    static constexpr char Ratio[] = "ratio";
    static constexpr char Low[] = "low";
    static constexpr char High[] = "high";
    static constexpr char Target[] = "target";

    bool ReportContext(const Context &context) override;
    void ReportRuns(const std::vector<Run> &runs) override;
    void Finalize() override;

private:
    int m_held = 0;
    int m_missed = 0;
    int m_failed = 0;
};
