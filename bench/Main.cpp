#include <fstream>
#include <iostream>
#include <string>
#include <string_view>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/GoalReporter.h"

namespace
{

constexpr std::string_view GoalsFlag = "--goals-tsv=";

/// Many short repetitions in random order; whoever wants others says so after them.
std::vector<std::string> DefaultFlags()
{
    return {"--benchmark_repetitions=11", "--benchmark_min_time=0.02",
            "--benchmark_enable_random_interleaving=true"};
}

} // namespace

/// tonvale-bench [--goals-tsv=FILE] [--benchmark_filter=REGEX] [--benchmark_...]
/// Goals that are missed do not fail the program: speed is shown here, not tested.
int main(int argc, char** argv)
{
    std::vector<std::string> flags = DefaultFlags();
    std::string goalsPath;
    for (const std::string_view argument : std::vector<std::string_view>(argv + 1, argv + argc))
    {
        if (argument.starts_with(GoalsFlag))
            goalsPath = argument.substr(GoalsFlag.size());
        else
            flags.emplace_back(argument);
    }

    std::vector<char*> arguments{argv[0]};
    for (std::string& flag : flags)
        arguments.push_back(flag.data());
    int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    benchmark::Initialize(&count, arguments.data());
    if (benchmark::ReportUnrecognizedArguments(count, arguments.data()))
        return 1;

    GoalReporter reporter;
    benchmark::RunSpecifiedBenchmarks(&reporter);
    benchmark::Shutdown();

    if (goalsPath.empty())
        return 0;
    std::ofstream file(goalsPath);
    reporter.WriteGoals(file);
    if (!file.flush())
    {
        std::cerr << "tonvale-bench: cannot write " << goalsPath << '\n';
        return 1;
    }
    return 0;
}
