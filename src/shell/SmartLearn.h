#pragma once

#include <functional>
#include <vector>

#include "shell/modulators/MModulatorTarget.h"

class MAudioPluginAutomation;
class MModulator;
class MMultiParameter;

/// Smart learn: as long as it lives, what it teaches is frozen, and each parameter that the user
/// moves becomes one of its targets, with the place where it is left as the middle of its range.
/// Other targets stay, unless it begins with none.
/// Owned by whoever shows the mode; GUI thread. The plugin and what it teaches have to outlive it.
class SmartLearn
{
public:
    /// @p clears: begins with no targets.
    SmartLearn(const MAudioPluginAutomation& learntPlugin, MModulator& modulator, bool clears);
    SmartLearn(const MAudioPluginAutomation& learntPlugin, MMultiParameter& multiParameter,
               bool clears);
    SmartLearn(const SmartLearn&) = delete;
    SmartLearn& operator=(const SmartLearn&) = delete;
    ~SmartLearn();

    /// Takes up what has moved since the last call: to be called when editors are brought up to
    /// date. What moves by less than LeastChange does not count.
    void Capture();

    static constexpr double LeastChange = 1e-7;

private:
    using TargetList = std::vector<MModulatorTarget>;

    void Begin(bool clears);
    /// A target for parameter @p index at @p value01, or a new place for the one that there is.
    void Teach(int index, double value01);

    const MAudioPluginAutomation& plugin;
    const std::function<void(const std::function<void(TargetList&)>&)> editTargets;
    const std::function<void(bool)> freeze;
    const int ownIndex; ///< of the parameter that is taught; it cannot drive itself
    std::vector<double> values;
};
