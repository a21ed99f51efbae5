#pragma once

#include <string>

#include "effect/parameters/MAutomationAdapter.h"

/// One value of an adapter, which is all that users see of it. The adapter outlives this.
struct AdapterValue
{
    MString GetName() const { return adapter->GetParameterName(index); }
    double Get01() const { return adapter->GetParameter(index); }
    void Set01(double value01) const { adapter->SetParameter(index, value01, false); }
    std::string GetText() const { return adapter->GetParameterValueName(index).ToUTF8(); }
    /// What it shows at @p value01, which it does not take.
    std::string GetTextAt(double value01) const
    {
        return adapter->GetParameterValueNameFrom01(index, value01).ToUTF8();
    }

    MAutomationAdapter* adapter;
    int index;
};
