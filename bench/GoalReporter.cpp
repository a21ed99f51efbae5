#include "bench/GoalReporter.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace
{

constexpr double NsPerSecond = 1e9;
const std::string ItemsPerSecond = "items_per_second";
constexpr int NumberWidth = 12;

/// The width of a column of names, with a gap behind it.
template <class Range, class ToName>
int NameWidth(const Range& rows, ToName toName)
{
    std::size_t width = 0;
    for (const auto& row : rows)
        width = std::max(width, toName(row).size());
    return static_cast<int>(width) + 2;
}

/// Of the processor, unless the benchmark takes the time of a part by itself.
double BlockSeconds(const benchmark::BenchmarkReporter::Run& run)
{
    const bool isManual = !run.run_name.time_type.empty();
    return (isManual ? run.GetAdjustedRealTime() : run.GetAdjustedCPUTime()) /
           benchmark::GetTimeUnitMultiplier(run.time_unit);
}

} // namespace

bool GoalReporter::ReportContext(const Context& context)
{
    PrintBasicContext(&GetErrorStream(), context);
    return true;
}

void GoalReporter::ReportRuns(const std::vector<Run>& runs)
{
    for (const Run& run : runs)
    {
        // A single repetition is its own median, and comes without statistics.
        const bool isMedian = run.run_type == Run::RT_Aggregate ? run.aggregate_name == "median"
                                                                : run.repetitions <= 1;
        if (!isMedian && !run.error_occurred)
            continue;
        const auto items = run.counters.find(ItemsPerSecond);
        const Place place{run.family_index, run.per_family_instance_index};
        results[place] = {
            .name = run.run_name.str(),
            .blockNs = BlockSeconds(run) * NsPerSecond,
            .itemsPerSecond = items == run.counters.end() ? 0.0 : items->second.value,
            .error = run.error_occurred ? run.error_message : std::string(),
            .counters = {},
        };
        for (const auto& [name, counter] : run.counters)
            if (name != ItemsPerSecond)
                results[place].counters[name] = counter.value;
    }
}

void GoalReporter::Finalize()
{
    PrintResults(GetOutputStream());
    PrintGoals(GetOutputStream());
}

void GoalReporter::WriteGoals(std::ostream& out) const
{
    for (const Outcome& outcome : Outcomes())
        out << outcome.goal->name << '\t' << std::fixed << std::setprecision(3) << outcome.ratio
            << '\t' << std::setprecision(2) << outcome.goal->limit << '\t' << outcome.Verdict()
            << '\n';
}

void GoalReporter::PrintResults(std::ostream& out) const
{
    const int column = NameWidth(results, [](const auto& row) { return row.second.name; });
    out << std::left << std::setw(column) << "Benchmark" << std::right << std::setw(NumberWidth)
        << "ns/block" << std::setw(NumberWidth) << "ns/sample" << '\n';
    for (const auto& [place, result] : results)
    {
        out << std::left << std::setw(column) << result.name << std::right << std::fixed;
        if (!result.error.empty())
            out << "  " << result.error;
        else
            out << std::setw(NumberWidth) << std::setprecision(1) << result.blockNs;
        if (result.itemsPerSecond > 0.0)
            out << std::setw(NumberWidth) << std::setprecision(3)
                << NsPerSecond / result.itemsPerSecond;
        for (const auto& [name, value] : result.counters)
            out << "  " << std::setprecision(2) << value << ' ' << name;
        out << '\n';
    }
}

void GoalReporter::PrintGoals(std::ostream& out) const
{
    const std::vector<Outcome> outcomes = Outcomes();
    if (outcomes.empty())
        return;

    const int column = NameWidth(outcomes, [](const Outcome& row) { return row.goal->name; });
    out << '\n'
        << std::left << std::setw(column) << "Goal" << std::right << std::setw(NumberWidth)
        << "measured" << std::setw(NumberWidth) << "at most" << '\n';
    for (const Outcome& outcome : outcomes)
        out << std::left << std::setw(column) << outcome.goal->name << std::right << std::fixed
            << std::setw(NumberWidth) << std::setprecision(3) << outcome.ratio
            << std::setw(NumberWidth) << std::setprecision(2) << outcome.goal->limit << "  "
            << outcome.Verdict() << '\n';
}

std::vector<GoalReporter::Outcome> GoalReporter::Outcomes() const
{
    std::vector<Outcome> outcomes;
    for (const Goal& goal : GetGoals())
    {
        const Result* const numerator = Find(goal.numerator);
        const Result* const denominator = Find(goal.denominator);
        const Result* const less = goal.less.empty() ? nullptr : Find(goal.less);
        if (numerator == nullptr || denominator == nullptr || (!goal.less.empty() && !less))
            continue;
        const double ns = numerator->blockNs - (less != nullptr ? less->blockNs : 0.0);
        outcomes.push_back({&goal, ns / denominator->blockNs});
    }
    return outcomes;
}

const GoalReporter::Result* GoalReporter::Find(const std::string& name) const
{
    for (const auto& [place, result] : results)
        if (result.name == name && result.error.empty())
            return &result;
    return nullptr;
}
