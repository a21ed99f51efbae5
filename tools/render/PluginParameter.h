#pragma once

#include <string>

#include "tools/hosting/HostedPlugin.h"

/// One parameter of a plugin, which outlives this.
struct PluginParameter
{
    std::string GetName() const { return plugin->GetParameterName(index); }
    double Get01() const { return plugin->Get01(index); }
    void Set01(double value01) const { plugin->Set01(index, value01); }
    std::string GetText() const { return plugin->GetText(index); }
    /// What it shows at @p value01, which it does not take.
    std::string GetTextAt(double value01) const { return plugin->GetTextAt(index, value01); }
    std::optional<double> Parse(const std::string& text) const
    {
        return plugin->Parse(index, text);
    }

    HostedPlugin* plugin;
    int index;
};
