#pragma once

#include <span>
#include <string>

/// How long one benchmark may take, as a share of another of the same run. A share carries over
/// from machine to machine far better than a time does.
struct Goal
{
    std::string name;
    std::string numerator;   ///< a benchmark, by its full name
    std::string denominator; ///< likewise
    double limit;
    std::string less{}; ///< a benchmark of which the numerator is what it takes more, or none
};

/// Adds @p goal to those that end the report. At start-up, beside the benchmarks of the goal.
void RegisterGoal(Goal goal);

std::span<const Goal> GetGoals();
