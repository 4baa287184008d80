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
    std::string baseline;  // benchmark name
    double maxRatio;
};

class RatioReporter : public benchmark::ConsoleReporter
{
public:
    explicit RatioReporter(std::vector<RatioTarget> targets) : m_targets(std::move(targets)) {}

    void ReportRuns(const std::vector<Run> &runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run &run : runs) {
            if (run.run_type == Run::RT_Iteration && run.iterations > 0)
                m_times[run.benchmark_name()] = run.GetAdjustedRealTime();
        }
    }

    // Prints one line per target; returns the number of targets missed.
    int printRatios() const
    {
        int missed = 0;
        std::printf("\n%-44s %-34s %8s %8s\n", "operation", "baseline", "ratio", "target");
        for (const RatioTarget &target : m_targets) {
            const auto op = m_times.find(target.operation);
            const auto base = m_times.find(target.baseline);
            if (op == m_times.end() || base == m_times.end() || base->second <= 0)
                continue; // filtered out of this run
            const double ratio = op->second / base->second;
            const bool met = ratio <= target.maxRatio;
            missed += met ? 0 : 1;
            std::printf("%-44s %-34s %8.2f %7.1fx %s\n", target.operation.c_str(),
                        target.baseline.c_str(), ratio, target.maxRatio, met ? "ok" : "MISSED");
        }
        return missed;
    }

private:
    std::vector<RatioTarget> m_targets;
    std::map<std::string, double> m_times;
};
