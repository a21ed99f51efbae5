#include "bench/Goals.h"

#include <utility>
#include <vector>

namespace
{

std::vector<Goal>& Registered()
{
    static std::vector<Goal> goals;
    return goals;
}

} // namespace

void RegisterGoal(Goal goal)
{
    Registered().push_back(std::move(goal));
}

std::span<const Goal> GetGoals()
{
    return Registered();
}
