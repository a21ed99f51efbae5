#pragma once

#include <cstdint>
#include <iosfwd>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/Goals.h"

/// Ends a run with a table of all benchmarks, in the order of their registration, and the goals.
/// Of the repetitions, which come in random order, the median counts: what disturbs the machine for
/// a while then hits a few repetitions of every benchmark and leaves the medians alone.
class GoalReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

    /// The goals of which both benchmarks ran, one a line, tabs between the columns: name, ratio,
    /// limit, "met" or "missed".
    void WriteGoals(std::ostream& out) const;

private:
    /// A benchmark's family, in the order of registration, and its place among the arguments.
    using Place = std::pair<std::int64_t, std::int64_t>;

    struct Result
    {
        std::string name;
        double blockNs;                         ///< CPU time of an iteration
        double itemsPerSecond;                  ///< 0 if the benchmark does not count any
        std::string error;                      ///< empty if it ran
        std::map<std::string, double> counters; ///< what else it measured
    };

    struct Outcome
    {
        const Goal* goal;
        double ratio;

        const char* Verdict() const { return ratio <= goal->limit ? "met" : "missed"; }
    };

    void PrintResults(std::ostream& out) const;
    void PrintGoals(std::ostream& out) const;
    std::vector<Outcome> Outcomes() const;
    const Result* Find(const std::string& name) const;

    std::map<Place, Result> results;
};
