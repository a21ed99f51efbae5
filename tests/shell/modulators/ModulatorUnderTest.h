#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <vector>

#include "foundation/xml/MXMLItem.h"
#include "shell/modulators/MModulationCounter.h"
#include "shell/modulators/MModulator.h"
#include "tests/host/AutomationUnderTest.h"

/// Two parameters with an alternate value and two without, which modulators write to.
class ModulatedRow final : public MModulationWriter
{
public:
    static constexpr int Count = 4;
    static constexpr int FirstPlain = 2; ///< from here on without an alternate

    ModulatedRow()
    {
        plugin.AddAdapter(row);
        counter.Resize(Count);
    }

    void SetParameter(int index, double value01) override
    {
        row.SetParameter(index, value01, false);
    }
    void SetModulated(int index, bool on) override
    {
        ++switches;
        if (HasAlternate(index))
            row.SetModulated(index, on);
    }
    bool HasAlternate(int index) const override { return index < FirstPlain; }

    RowAdapter row{Count};
    SilentPlugin plugin;
    MModulationCounter counter{*this};
    int switches = 0;
};

/// A running modulator whose only target hears its value as it is, at 48 kHz.
class ModulatorUnderTest
{
public:
    static constexpr double Rate = 48000.0;
    static constexpr int MaxSamples = 4096;

    explicit ModulatorUnderTest(MModulatorMode mode = MModulatorMode::Normal)
    {
        modulator->InitProcessing(Rate);
        modulator->Enabled = true;
        modulator->SetMode(mode);
        Target(0, 0);
        blocks.fill(std::vector<float>(MaxSamples));
        std::ranges::transform(blocks, pointers.begin(), [](auto& block) { return block.data(); });
    }

    MModulator* operator->() const noexcept { return modulator.get(); }
    MModulator& operator*() const noexcept { return *modulator; }

    /// Adds targets up to @p place, which then drives @p parameter.
    void Target(std::size_t place, int parameter)
    {
        modulator->EditTargets(
            [&](MModulator::TargetList& list)
            {
                list.resize(std::max(list.size(), place + 1));
                list[place].Assign(parameter, parameters.plugin);
            });
    }
    /// Returns the value, -1.0 to 1.0, after a block of what is in blocks.
    double Play(int samples, int channels = 2)
    {
        if (modulator->Prepare())
            modulator->ProcessBlock(time, pointers.data(), samples, channels);
        return 2.0 * parameters.row.Heard(0) - 1.0;
    }
    /// The same for @p samples in blocks of 64.
    double PlayFor(int samples, int channels = 2)
    {
        double value = 0.0;
        for (; samples > 0; samples -= 64)
            value = Play(std::min(samples, 64), channels);
        return value;
    }
    void Fill(std::size_t channel, float level) { std::ranges::fill(blocks[channel], level); }

    ModulatedRow parameters;
    MAudioPluginTime time;
    std::array<std::vector<float>, MAudioPlugin::MaxChannels> blocks;
    std::array<float*, MAudioPlugin::MaxChannels> pointers{};

private:
    std::unique_ptr<MModulator> modulator =
        std::make_unique<MModulator>(parameters.counter, parameters.plugin.GetProcessingLock());
};
