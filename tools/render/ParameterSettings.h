#pragma once

#include <iosfwd>
#include <string>
#include <vector>

class HostedPlugin;
struct PluginParameter;

/// Finds, sets and lists the parameters of a plugin by name. Case does not matter.
class ParameterSettings
{
public:
    /// @p hostedPlugin outlives this.
    explicit ParameterSettings(HostedPlugin& hostedPlugin) noexcept : plugin(hostedPlugin) {}

    /// Takes @p text as the parameter shows it, such as "440 Hz" or "silence".
    /// @throws MException for an unknown name, a text that cannot be read in full, and a value
    /// outside the range, none of which the plugin itself minds.
    void SetText(const std::string& name, const std::string& text);
    /// The same for the shape: "Saw", "30% Sine, 70% Harmonics", "5.5".
    void SetShape(const std::string& text);
    /// Takes a normalised value, 0.0 to 1.0. @throws MException outside, or for an unknown name.
    void Set01(const std::string& name, double value01);

    /// @throws MException for an unknown name.
    PluginParameter Find(const std::string& name) const;
    /// One line a parameter: name, present value as text and normalised, range.
    void List(std::ostream& stream) const;

private:
    void Read(const std::string& option, const std::string& name, const std::string& text);
    std::vector<PluginParameter> GetParameters() const;
    std::string ListNames() const;

    HostedPlugin& plugin;
};
