#include "shell/SmartLearn.h"

#include <algorithm>
#include <cmath>

#include "foundation/limits.h"
#include "host/MAudioPluginAutomation.h"
#include "shell/modulators/MModulator.h"
#include "shell/multiparameters/MMultiParameter.h"

namespace
{

using TargetList = std::vector<MModulatorTarget>;

std::vector<double> ReadAll(const MAudioPluginAutomation& plugin)
{
    std::vector<double> values(static_cast<std::size_t>(plugin.GetParameterCount()));
    for (std::size_t i = 0; i < values.size(); ++i)
        values[i] = plugin.GetParameter(static_cast<int>(i));
    return values;
}

/// The target of parameter @p index, else one that drives none, else the end.
TargetList::iterator FindPlace(TargetList& targets, int index)
{
    const auto driving = [&targets](int wanted)
    { return std::ranges::find(targets, wanted, &MModulatorTarget::ParameterIndex); };
    const auto same = driving(index);
    return same != targets.end() ? same : driving(-1);
}

} // namespace

SmartLearn::SmartLearn(const MAudioPluginAutomation& learntPlugin, MModulator& modulator,
                       bool clears)
    : plugin(learntPlugin),
      editTargets([&modulator](const auto& edit) { modulator.EditTargets(edit); }),
      freeze([&modulator](bool on) { modulator.Frozen = on; }),
      ownIndex(-1),
      values(ReadAll(learntPlugin))
{
    Begin(clears);
}

SmartLearn::SmartLearn(const MAudioPluginAutomation& learntPlugin, MMultiParameter& multiParameter,
                       bool clears)
    : plugin(learntPlugin),
      editTargets([&multiParameter](const auto& edit) { multiParameter.EditTargets(edit); }),
      freeze([&multiParameter](bool on) { multiParameter.Frozen = on; }),
      ownIndex(multiParameter.GetFirstIndex()),
      values(ReadAll(learntPlugin))
{
    Begin(clears);
}

void SmartLearn::Begin(bool clears)
{
    freeze(true);
    if (clears)
        editTargets([](TargetList& targets) { targets = TargetList(1); });
}

SmartLearn::~SmartLearn()
{
    freeze(false);
}

void SmartLearn::Capture()
{
    const std::vector<double> now = ReadAll(plugin);
    const std::size_t count = std::min(now.size(), values.size());
    for (std::size_t i = 0; i < count; ++i)
        if (std::abs(now[i] - values[i]) >= LeastChange && static_cast<int>(i) != ownIndex)
            Teach(static_cast<int>(i), now[i]);
    values = now;
}

void SmartLearn::Teach(int index, double value01)
{
    MModulatorTarget learnt;
    learnt.Assign(index, plugin); // reads names, which have locks of their own
    learnt.Range.value = value01;
    editTargets(
        [&](TargetList& targets)
        {
            const auto place = FindPlace(targets, index);
            if (place == targets.end() && targets.size() < limits::Targets)
                targets.push_back(learnt);
            else if (place != targets.end() && place->ParameterIndex == index)
                place->Range.value = value01;
            else if (place != targets.end())
                *place = learnt;
        });
}
