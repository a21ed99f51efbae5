#pragma once

#include <set>

#include "host/MAudioPluginAdapter.h"

/// A host that remembers which parameters it was told of.
class ToldParameters final : public MAudioPluginAdapter
{
public:
    virtual ~ToldParameters() = default;

    void SendAutomation(int index, double /*value01*/) override { told.insert(index); }
    void SendBypassAutomation(bool /*isBypassed*/) override {}
    void GenerateMIDIEvent(int /*offset*/, const std::uint8_t* /*bytes*/) override {}
    bool ChangeEditorSize(int /*width*/, int /*height*/) override { return false; }

    std::set<int> told;
};
