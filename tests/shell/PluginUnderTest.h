#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include "foundation/xml/MStorageDescriptor.h"
#include "foundation/xml/MXMLItem.h"
#include "shell/MQuillfernAudioEffectPlugin.h"

/// The whole plugin as a host adapter drives it, with blocks for eight channels.
class PluginUnderTest
{
public:
    static constexpr int Channels = MAudioPlugin::ChannelsPerBus;

    explicit PluginUnderTest(int channels = 2)
    {
        plugin->SetHostSampleRate(48000);
        plugin->SetChannels(channels, channels);
        plugin->InitProcessing();
    }

    MQuillfernAudioEffectPlugin& operator*() const noexcept { return *plugin; }
    MQuillfernAudioEffectPlugin* operator->() const noexcept { return plugin.get(); }

    /// Behind it, outputs holds the block.
    void Play(int samples, float input = 0.0f)
    {
        std::array<const float*, MAudioPlugin::MaxChannels> ins{};
        std::array<float*, MAudioPlugin::MaxChannels> outs{};
        for (std::size_t i = 0; i < Channels; ++i)
        {
            std::fill_n(inputs[i].begin(), samples, input);
            ins[i] = inputs[i].data();
            outs[i] = outputs[i].data();
        }
        plugin->ProcessAudio(ins.data(), outs.data(), samples, true);
    }
    bool IsFinite(int samples) const
    {
        return std::ranges::all_of(outputs,
                                   [samples](const std::vector<float>& block)
                                   {
                                       return std::all_of(block.begin(), block.begin() + samples,
                                                          [](float sample)
                                                          { return std::isfinite(sample); });
                                   });
    }
    void Send(const std::array<int, 3>& bytes) const
    {
        std::array<std::uint8_t, 3> event{};
        std::ranges::transform(bytes, event.begin(),
                               [](int byte) { return static_cast<std::uint8_t>(byte); });
        plugin->ProcessMIDIEvent(0, event.data());
    }
    std::unique_ptr<MXMLItem> Store() const
    {
        auto item = std::make_unique<MXMLItem>("settings");
        plugin->Store({.storing = true, .item = *item});
        return item;
    }
    void Load(MXMLItem& item) const { plugin->Store({.storing = false, .item = item}); }

    std::vector<std::vector<float>> outputs = MakeBlocks();

private:
    static constexpr std::size_t MaxSamples = 4096;

    static std::vector<std::vector<float>> MakeBlocks()
    {
        return {static_cast<std::size_t>(Channels), std::vector<float>(MaxSamples)};
    }

    std::vector<std::vector<float>> inputs = MakeBlocks();
    std::unique_ptr<MQuillfernAudioEffectPlugin> plugin{
        static_cast<MQuillfernAudioEffectPlugin*>(CreateAudioPlugin().release())};
};
