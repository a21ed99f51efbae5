#include "shell/MAudioPluginPipeline.h"

#include <array>
#include <cmath>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

namespace
{

TEST(MAudioPluginPipeline, PlaysTheOscillator)
{
    const std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    ASSERT_NE(plugin, nullptr);
    plugin->SetHostSampleRate(48000);
    plugin->InitProcessing();
    std::vector<float> left(480), right(480);
    std::array<float*, MAudioPlugin::MaxChannels> outputs{left.data(), right.data()};
    std::array<const float*, MAudioPlugin::MaxChannels> inputs{};
    plugin->ProcessAudio(inputs.data(), outputs.data(), 480, true);
    for (int i = 0; i < 480; ++i)
    {
        const double phase = 440.0 * std::exp2(3.0 / 12.0) * i / 48000.0;
        const double expected = 0.5 * std::sin(2.0 * 3.14159265358979 * phase);
        ASSERT_NEAR(left[static_cast<std::size_t>(i)], expected, 1e-5) << i;
        ASSERT_NEAR(right[static_cast<std::size_t>(i)], expected, 1e-5) << i;
    }
}

} // namespace
