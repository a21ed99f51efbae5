#pragma once

#include <string>

#include "host/MAudioPlugin.h"

/// A parameter as a host sees it. The plugin outlives this.
struct PluginParameter
{
    MString GetName() const { return plugin->GetParameterName(index); }
    MAutomationType GetType() const { return plugin->GetParameterType(index); }
    double Get01() const { return plugin->GetParameter(index); }
    void Set01(double value01) const { plugin->SetParameter(index, value01, false); }
    std::string GetText() const { return plugin->GetParameterValueName(index).ToUTF8(); }
    /// What it shows at @p value01, which it does not take.
    std::string GetTextAt(double value01) const
    {
        return plugin->GetParameterValueNameFrom01(index, value01).ToUTF8();
    }

    MAudioPlugin* plugin;
    int index;
};
