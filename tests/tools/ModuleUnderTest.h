#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <numbers>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tools/hosting/HostedVst2.h"
#include "tools/hosting/HostedVst3.h"
#include "tools/hosting/PluginModule.h"

/// One channel of sound.
using Sound = std::vector<float>;

inline const char* const ModulePaths[] = {TONVALE_VST2_MODULE, TONVALE_VST3_MODULE};

/// Stereo, the channels one after the other; a tone that is no neighbour of the plugin's own.
inline std::array<Sound, 2> MakeInput(int samples)
{
    std::array<Sound, 2> input;
    for (std::size_t channel = 0; channel < 2; ++channel)
        for (int i = 0; i < samples; ++i)
            input[channel].push_back(
                static_cast<float>(0.25 * std::sin(0.01 * i * (1.0 + static_cast<double>(channel)))));
    return input;
}

/// An instance of a built module. Its blocks come by the function that hosts call, so that they may
/// be as odd as theirs.
class ModuleUnderTest
{
public:
    static constexpr int Rate = 48000; ///< Hz, unless started otherwise

    explicit ModuleUnderTest(const std::shared_ptr<PluginModule>& pluginModule)
    {
        if (pluginModule->GetEntry() != nullptr)
            vst2 = &Own(std::make_unique<HostedVst2>(pluginModule));
        else
            vst3 = &Own(std::make_unique<HostedVst3>(pluginModule));
    }
    explicit ModuleUnderTest(const std::string& path) : ModuleUnderTest(PluginModule::Open(path)) {}

    HostedPlugin* operator->() const { return plugin.get(); }

    int Find(const std::string& name) const
    {
        for (int i = 0; i < plugin->GetParameterCount(); ++i)
            if (plugin->GetParameterName(i) == name)
                return i;
        ADD_FAILURE() << name;
        return 0;
    }
    /// Values of two parameters, and a start; no line is drawn from values before.
    void Start(double dry, double wet, int maxBlock, std::int32_t mode = Vst3::kRealtime)
    {
        plugin->Set01(Find("Dry"), dry);
        plugin->Set01(Find("Wet"), wet);
        plugin->Start(2, Rate, maxBlock);
        if (vst3 == nullptr)
            return;
        Vst3::ProcessSetup setup{mode, Vst3::kSample32, maxBlock, Rate};
        vst3->GetComponent()->setActive(0);
        EXPECT_EQ(vst3->GetProcessor()->setupProcessing(setup), Vst3::kResultOk);
        vst3->GetComponent()->setActive(1);
        processMode = mode;
    }
    /// A block of two channels. VST3 gets no bus where there is no row.
    void Call(float** inputs, float** outputs, int samples) const
    {
        if (vst2 != nullptr)
        {
            Vst2::AEffect* const effect = vst2->GetEffect();
            return effect->processReplacing(effect, inputs, outputs, samples);
        }
        Vst3::AudioBusBuffers input{.numChannels = 2, .silenceFlags = 0, .channelBuffers32 = inputs};
        Vst3::AudioBusBuffers output{
            .numChannels = 2, .silenceFlags = 3, .channelBuffers32 = outputs};
        Vst3::ProcessData data{};
        data.processMode = processMode;
        data.symbolicSampleSize = Vst3::kSample32;
        data.numSamples = samples;
        data.numInputs = inputs != nullptr ? 1 : 0;
        data.inputs = inputs != nullptr ? &input : nullptr;
        data.numOutputs = outputs != nullptr ? 1 : 0;
        data.outputs = outputs != nullptr ? &output : nullptr;
        EXPECT_EQ(vst3->GetProcessor()->process(data), Vst3::kResultOk);
        EXPECT_EQ(output.silenceFlags, samples > 0 && outputs != nullptr ? 0u : 3u);
    }
    /// Both channels, one behind the other, of @p input in blocks of @p blocks samples.
    Sound Play(std::array<Sound, 2> input, const std::vector<int>& blocks, bool isInPlace) const
    {
        const std::array<Sound, 2> before = input;
        std::array<Sound, 2> apart = {Sound(input[0].size()), Sound(input[0].size())};
        std::array<Sound, 2>& output = isInPlace ? input : apart;
        std::size_t at = 0;
        for (const int samples : blocks)
        {
            float* inputs[] = {input[0].data() + at, input[1].data() + at};
            float* outputs[] = {output[0].data() + at, output[1].data() + at};
            Call(inputs, outputs, samples);
            at += static_cast<std::size_t>(samples);
        }
        EXPECT_EQ(at, input[0].size());
        EXPECT_TRUE(isInPlace || input == before) << "the input was written to";
        Sound sound = output[0];
        sound.insert(sound.end(), output[1].begin(), output[1].end());
        return sound;
    }
    Sound Play(int samples) const { return Play(MakeInput(samples), {samples}, false); }

private:
    template <class Hosted>
    Hosted& Own(std::unique_ptr<Hosted> made)
    {
        Hosted& reference = *made;
        plugin = std::move(made);
        return reference;
    }

    std::unique_ptr<HostedPlugin> plugin;
    HostedVst2* vst2 = nullptr;
    HostedVst3* vst3 = nullptr;
    std::int32_t processMode = Vst3::kRealtime;
};
