#include "shell/MQuillfernAudioEffectPlugin.h"

#include <array>

#include <gtest/gtest.h>

#include "persistence/MPluginConfiguration.h"
#include "tests/TemporaryFolder.h"

namespace
{

/// What comes out for a block of silence while the plugin is bypassed.
float BypassSilence(MAudioPlugin& plugin)
{
    constexpr int Samples = 16;
    std::array<float, Samples> silence{};
    std::array<float, Samples> heard{};
    std::array<const float*, MAudioPlugin::MaxChannels> inputs{};
    std::array<float*, MAudioPlugin::MaxChannels> outputs{};
    inputs[0] = silence.data();
    outputs[0] = heard.data();
    plugin.SetBypassed(true);
    plugin.InitProcessing();
    plugin.ProcessAudio(inputs.data(), outputs.data(), Samples, true);
    return heard.back();
}

TEST(MQuillfernAudioEffectPlugin, NewInstancesFollowTheConfiguration)
{
    const TemporaryFolder folder;
    MPluginConfiguration configuration(MString::FromUTF8((folder / "settings").generic_string()));
    const auto stereo = MQuillfernAudioEffectPlugin::Create(configuration);
    EXPECT_EQ(stereo->GetChannelsPerBus(), 2);
    EXPECT_FLOAT_EQ(BypassSilence(*stereo), 1e-15f);

    configuration.Set(MPluginConfiguration::SurroundActivated, true);
    configuration.Set(MPluginConfiguration::AntiDenormal, false);
    const auto surround = MQuillfernAudioEffectPlugin::Create(configuration);
    EXPECT_EQ(surround->GetChannelsPerBus(), 8);
    EXPECT_EQ(surround->GetOutputChannelsTotal(), 8);
    EXPECT_EQ(stereo->GetChannelsPerBus(), 2) << "as it was made";
    EXPECT_EQ(BypassSilence(*surround), 0.0f);
    MAudioPluginPipeline::SetAntiDenormal(true); // it counts for the whole process
}

} // namespace
