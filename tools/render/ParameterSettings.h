#pragma once

#include <iosfwd>
#include <string>

class EffectRunner;
struct MPluginParameterRecord;

/// Sets and lists the parameters of an effect by name. Case does not matter.
class ParameterSettings
{
public:
    /// @p effectRunner outlives this.
    explicit ParameterSettings(EffectRunner& effectRunner) noexcept : runner(effectRunner) {}

    /// Takes @p text as the parameter shows it, such as "440 Hz" or "silence".
    /// @throws MException for an unknown name, a text that cannot be read in full, and a value
    /// outside the range, none of which the effect itself minds.
    void SetText(const std::string& name, const std::string& text);
    /// Takes a normalised value, 0.0 to 1.0. @throws MException outside, or for an unknown name.
    void Set01(const std::string& name, double value01);

    /// One line a parameter: name, present value as text and normalised, range.
    void List(std::ostream& stream) const;

private:
    MPluginParameterRecord& Find(const std::string& name) const;
    std::string ListNames() const;

    EffectRunner& runner;
};
