// SPDX-License-Identifier: MIT
// A console reporter that, after the run, prints each measured operation as
// a ratio to the baseline measured beside it in the same run, against its
// target. Ratios, not absolute times, are what the targets are about: they
// hold on any machine.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdio>
#include <map>
#include <string>
#include <vector>

struct RatioTarget {
    std::string operation; // benchmark name
    std::string baseline;  // benchmark name; empty for an absolute target
    double max;            // the ratio, or nanoseconds for an absolute target
};

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    explicit RatioReporter(std::vector<RatioTarget> targets) : m_targets(std::move(targets)) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            const double nanoseconds = run.GetAdjustedRealTime()
                                       * benchmark::GetTimeUnitMultiplier(benchmark::kNanosecond)
                                       / benchmark::GetTimeUnitMultiplier(run.time_unit);
            // With --benchmark_repetitions the median stands for the benchmark.
            if (run.run_type == Run::RT_Aggregate && run.aggregate_name == "median")
                m_medians[run.run_name.str()] = nanoseconds;
            else if (run.run_type == Run::RT_Iteration && run.iterations > 0)
                m_times[run.run_name.str()] = nanoseconds;
        }
    }

    // Prints one line per target; returns the number of targets missed.
    // Times are compared in nanoseconds whatever unit a benchmark reports in.
    int printRatios()
    {
        for (const auto &[name, median] : m_medians)
            m_times[name] = median;
        int missed = 0;
        std::printf("\n%-44s %-34s %10s %10s\n", "operation", "baseline", "measured", "target");
        for (const RatioTarget &target : m_targets) {
            const auto op = m_times.find(target.operation);
            if (op == m_times.end())
                continue; // filtered out of this run
            bool met = false;
            if (target.baseline.empty()) {
                met = op->second <= target.max;
                std::printf("%-44s %-34s %8.0fns %8.0fns %s\n", target.operation.c_str(), "(absolute)",
                            op->second, target.max, met ? "ok" : "MISSED");
            } else {
                const auto base = m_times.find(target.baseline);
                if (base == m_times.end() || base->second <= 0)
                    continue;
                const double ratio = op->second / base->second;
                met = ratio <= target.max;
                std::printf("%-44s %-34s %9.2fx %9.1fx %s\n", target.operation.c_str(),
                            target.baseline.c_str(), ratio, target.max, met ? "ok" : "MISSED");
            }
            missed += met ? 0 : 1;
        }
        return missed;
    }

private:
    std::vector<RatioTarget> m_targets;
    std::map<std::string, double> m_times;
    std::map<std::string, double> m_medians;
};

// The body of every suite's main: runs the registered benchmarks with the
// command line's filters, then prints the targets' ratios. Targets are
// reported, not enforced: timings vary with the machine's load.
inline int runWithRatioReport(int argc, char **argv, std::vector<RatioTarget> targets)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    RatioReporter reporter(std::move(targets));
    benchmark::RunSpecifiedBenchmarks(&reporter);
    reporter.printRatios();
    benchmark::Shutdown();
    return 0;
}
