#include "shell/MAudioPluginPipeline.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

#include "effect/TonvaleAudioEffectPlugin.h"

namespace
{

using Signal = std::vector<float>;
using enum MChannelMode;

constexpr int Rate = 48000;        ///< Hz
constexpr float Untouched = -7.0f; ///< outputs before a block

/// An effect that is known: every channel has a gain, and all are late by the same.
class PluginUnderTest : public MAudioPluginPipeline
{
public:
    explicit PluginUnderTest(int hostChannels = 2, int busCount = 1)
    {
        SetHostSampleRate(Rate);
        SetBuses(1, busCount, 2);
        SetChannels(hostChannels, hostChannels);
        InitProcessing();
    }

    void Store(const MStorageDescriptor&) override {}
    void StoreSettings(const MStorageDescriptor&) override {}
    void OnCustomParameterChanged(MAutomationAdapter&) override {}
    int GetLatency() override { return ownLatency; }
    double GetClipLimit() const override { return clipLimit; }

    float bias = 0.0f;
    int longestPiece = MaxBlock;
    int ownLatency = 0;
    double clipLimit = -1.0;
    std::vector<int> pieces;
    std::vector<double> positions;

protected:
    void Process(float* const* inputs, float* const* outputs, int samples) override
    {
        pieces.push_back(samples);
        positions.push_back(time.position);
        float gain = 10.0f;
        for (std::size_t c = 0; c < static_cast<std::size_t>(effectChannels); ++c, gain *= 10.0f)
        {
            delays[c].Process(outputs[c], inputs[c], samples);
            for (int i = 0; i < samples; ++i)
                outputs[c][i] = outputs[c][i] * gain + bias;
        }
    }
    void ProcessPre(const float* const*, int) override { subBlockSize = longestPiece; }
    void ProcessPost(float* const*, int) override {}
    void InitEffect() override
    {
        effectChannels = GetEffectChannels();
        interpolationBlockSize = MaxBlock;
        for (DelayQueue& delay : delays)
            delay.SetLength(ownLatency);
    }

private:
    int effectChannels = 0;
    std::array<DelayQueue, ChannelsPerBus> delays;
};

/// One block of a host, whose pointers a test may bend.
struct HostBlock
{
    HostBlock(const Signal& levels, std::size_t length)
    {
        for (const float level : levels)
        {
            inputBlocks.emplace_back(length, level);
            outputBlocks.emplace_back(length, Untouched);
        }
        for (std::size_t c = 0; c < levels.size(); ++c)
        {
            inputs[c] = inputBlocks[c].data();
            outputs[c] = outputBlocks[c].data();
        }
    }

    void Play(MAudioPlugin& plugin, bool replacing = true)
    {
        plugin.ProcessAudio(inputs.data(), outputs.data(),
                            static_cast<int>(inputBlocks.front().size()), replacing);
    }

    std::vector<Signal> inputBlocks, outputBlocks;
    std::array<float*, MAudioPlugin::MaxChannels> inputs{}, outputs{};
};

/// What both channels of @p plugin play to @p signal, the left one first, @p length at a time.
std::array<Signal, 2> Play(MAudioPlugin& plugin, const Signal& signal, std::size_t length)
{
    std::array<Signal, 2> played;
    for (std::size_t done = 0; done < signal.size(); done += length)
    {
        const std::size_t count = std::min(length, signal.size() - done);
        HostBlock block({0.0f, 0.0f}, count);
        for (Signal& input : block.inputBlocks)
            std::copy_n(&signal[done], count, input.begin());
        block.Play(plugin);
        for (std::size_t c = 0; c < 2; ++c)
            played[c].insert(played[c].end(), block.outputBlocks[c].begin(),
                             block.outputBlocks[c].end());
    }
    return played;
}

Signal Impulse(std::size_t length)
{
    Signal signal(length);
    signal.front() = 1.0f;
    return signal;
}

int PeakIndex(const Signal& signal)
{
    const auto isQuieter = [](float a, float b) { return std::abs(a) < std::abs(b); };
    return static_cast<int>(std::ranges::max_element(signal, isQuieter) - signal.begin());
}

float Peak(const Signal& signal)
{
    return std::abs(signal[static_cast<std::size_t>(PeakIndex(signal))]);
}

enum class Bend
{
    None,
    OneInput, ///< left and right are one block
    NullInputs,
    NullRightInput,
    OneOutput,
    NullRightOutput,
};

struct ModeCase
{
    const char* what;
    MChannelMode mode;
    Signal inputs;
    Signal expected; ///< gains are 10, 100 and so on; Untouched where nothing may be written
    Bend bend = Bend::None;
    float bias = 0.0f;
};

// With left 3 and right 1 the middle is 2 and the side 1.
const ModeCase ModeCases[] = {
    {"both", LeftRight, {3, 1}, {30, 100}},
    {"left", Left, {3, 1}, {30, 1}},
    {"right", Right, {3, 1}, {3, 10}},
    {"middle", Mono, {3, 1}, {20 + 1, 20 - 1}},
    {"side", Stereo, {3, 1}, {2 + 10, 2 - 10}},
    {"middle and side", MonoStereo, {3, 1}, {20 + 100, 20 - 100}},
    {"right inverted", LeftRightNegative, {3, 1}, {30, -100}},
    {"surround of two", Surround, {3, 1}, {30, 100}},
    {"mono host, middle", Mono, {3}, {30}},
    {"mono host, right", Right, {3}, {30}},
    {"mono host, inverted", LeftRightNegative, {3}, {30}},
    {"three, of which two", LeftRight, {3, 1, 5}, {30, 100, 5}},
    {"three, middle of two", Mono, {3, 1, 5}, {21, 19, 5}},
    {"three", Surround, {3, 1, 5}, {30, 100, 5000}},
    {"eight, of which two", LeftRight, {1, 2, 3, 4, 5, 6, 7, 8}, {10, 200, 3, 4, 5, 6, 7, 8}},
    {"eight", Surround, {1, 2, 1, 2, 1, 2, 1, 2}, {1e1, 2e2, 1e3, 2e4, 1e5, 2e6, 1e7, 2e8}},
    {"one input, right", Right, {3, 1}, {30, 3}, Bend::OneInput},
    {"one input, middle", Mono, {3, 1}, {30, 3}, Bend::OneInput},
    {"one input, inverted", LeftRightNegative, {3, 1}, {30, 300}, Bend::OneInput},
    {"null right input", MonoStereo, {3, 1}, {30, 300}, Bend::NullRightInput},
    {"no inputs, middle", Mono, {3, 1}, {1, 1}, Bend::NullInputs, 1.0f},
    {"no inputs, side", Stereo, {3, 1}, {1, -1}, Bend::NullInputs, 1.0f},
    {"one output", LeftRight, {3, 1}, {30, Untouched}, Bend::OneOutput},
    {"one output, right", Right, {3, 1}, {30, Untouched}, Bend::OneOutput},
    {"null right output, middle", Mono, {3, 1}, {30, Untouched}, Bend::NullRightOutput},
};

void Apply(Bend bend, HostBlock& block)
{
    switch (bend)
    {
        using enum Bend;
    case None:
        break;
    case OneInput:
        block.inputs[1] = block.inputs[0];
        break;
    case NullInputs:
        block.inputs = {};
        break;
    case NullRightInput:
        block.inputs[1] = nullptr;
        break;
    case OneOutput:
        block.outputs[1] = block.outputs[0];
        break;
    case NullRightOutput:
        block.outputs[1] = nullptr;
        break;
    }
}

TEST(MAudioPluginPipeline, ChannelModesTurnThePairAndBack)
{
    for (const ModeCase& row : ModeCases)
        for (const bool replacing : {true, false})
        {
            PluginUnderTest plugin(static_cast<int>(row.inputs.size()));
            plugin.bias = row.bias;
            plugin.SetChannelMode(row.mode);
            HostBlock block(row.inputs, 37);
            Apply(row.bend, block);
            block.Play(plugin, replacing);
            for (std::size_t c = 0; c < row.inputs.size(); ++c)
            {
                const float expected = row.expected[c];
                const float before = replacing || expected == Untouched ? 0.0f : Untouched;
                EXPECT_EQ(block.outputBlocks[c], Signal(37, before + expected))
                    << row.what << ", channel " << c << ", replacing " << replacing;
                EXPECT_EQ(block.inputBlocks[c], Signal(37, row.inputs[c])) << row.what;
            }
        }
}

TEST(MAudioPluginPipeline, BlocksMayBeSharedInAnyWay)
{
    for (const bool isCrossed : {false, true})
    {
        PluginUnderTest plugin;
        plugin.SetChannelMode(MonoStereo);
        HostBlock block({3.0f, 1.0f}, 100);
        block.outputs[0] = block.inputs[isCrossed];
        block.outputs[1] = block.inputs[!isCrossed];
        block.Play(plugin);
        EXPECT_EQ(block.inputBlocks[isCrossed], Signal(100, 120.0f));
        EXPECT_EQ(block.inputBlocks[!isCrossed], Signal(100, -80.0f));
    }
}

struct PieceCase
{
    int samples;
    int longest;
    std::vector<int> pieces;
};

TEST(MAudioPluginPipeline, CutsBlocksIntoNearlyEqualPieces)
{
    const PieceCase cases[] = {
        {1000, 256, {250, 250, 250, 250}},
        {1000, 300, {250, 250, 250, 250}},
        {1001, 300, {250, 250, 250, 250, 1}},
        {256, 256, {256}},
        {257, 256, {128, 128, 1}},
        {3, 0, {1, 1, 1}},
    };
    for (const PieceCase& row : cases)
        for (const bool isPlaying : {false, true})
        {
            PluginUnderTest plugin;
            plugin.longestPiece = row.longest;
            plugin.GetTime() = {.position = 4.0, .tempo = 120.0, .playing = isPlaying};
            HostBlock block({3.0f, 1.0f}, static_cast<std::size_t>(row.samples));
            block.Play(plugin);
            EXPECT_EQ(plugin.pieces, row.pieces);
            EXPECT_EQ(Peak(block.outputBlocks[1]), 100.0f);
            EXPECT_EQ(block.outputBlocks[1].back(), 100.0f);
            double quarters = 4.0; // 24000 samples each
            for (std::size_t i = 0; i < row.pieces.size(); ++i)
            {
                const bool isWhole = row.pieces.size() == 1; // as the host left it
                EXPECT_NEAR(plugin.positions[i], isPlaying || isWhole ? quarters : 0.0, 1e-12);
                quarters += row.pieces[i] / 24000.0;
            }
        }
}

TEST(MAudioPluginPipeline, BypassIsAsLateAsProcessing)
{
    PluginUnderTest plugin; // one for all rows, so that what stays of a setting shows
    for (const int ownLatency : {0, 96})
        for (const MChannelMode mode : {LeftRight, Left})
            for (const bool isHigh : {true, false})
                for (const int factor : {1, 16, 2, 4})
                {
                    plugin.ownLatency = ownLatency;
                    plugin.SetChannelMode(mode);
                    plugin.SetUpsampling(factor, isHigh);
                    const int late = factor == 1 ? 0 : (isHigh ? 6144 : 1536) / factor;
                    EXPECT_EQ(plugin.GetEffectiveLatency(), late + ownLatency / factor);
                    for (const bool isBypassed : {false, true})
                    {
                        plugin.SetBypassed(isBypassed);
                        Play(plugin, Signal(10000), 1000);
                        for (const Signal& played : Play(plugin, Impulse(8000), 700))
                        {
                            EXPECT_EQ(PeakIndex(played), plugin.GetEffectiveLatency())
                                << factor << isHigh << isBypassed;
                            EXPECT_GT(Peak(played), 0.8f);
                        }
                    }
                }
}

TEST(MAudioPluginPipeline, BypassTakesOverWhatIsUnderWayAndLeavesNothingBehind)
{
    PluginUnderTest plugin;
    plugin.SetUpsampling(4, true); // 1536 samples late
    Play(plugin, Impulse(500), 500);
    plugin.SetBypassed(true);
    EXPECT_EQ(PeakIndex(Play(plugin, Signal(3000), 500)[0]), 1536 - 500);

    plugin.SetBypassed(false);
    Play(plugin, Impulse(500), 500);
    plugin.SetBypassed(true);
    Play(plugin, Signal(3000), 500);
    plugin.SetBypassed(false);
    EXPECT_LT(Peak(Play(plugin, Signal(3000), 500)[0]), 1e-10f);
}

TEST(MAudioPluginPipeline, IsSilentWhileSuspended)
{
    PluginUnderTest plugin;
    plugin.pieces.clear();
    HostBlock block({3.0f, 1.0f}, 100);
    {
        const MAudioPlugin::SuspendScope suspended(plugin);
        block.Play(plugin, false);
        for (const Signal& output : block.outputBlocks)
            EXPECT_EQ(output, Signal(100, 0.0f));
        EXPECT_TRUE(plugin.pieces.empty());
    }
    block.Play(plugin);
    EXPECT_EQ(block.outputBlocks[0], Signal(100, 30.0f));
}

TEST(MAudioPluginPipeline, IgnoresBlocksThatAreNone)
{
    PluginUnderTest plugin;
    HostBlock block({3.0f, 1.0f}, 100);
    plugin.ProcessAudio(block.inputs.data(), nullptr, 100, true);
    plugin.ProcessAudio(block.inputs.data(), block.outputs.data(), 0, true);
    block.outputs[0] = nullptr;
    block.Play(plugin);
    EXPECT_TRUE(plugin.pieces.empty());
    EXPECT_EQ(block.outputBlocks[1], Signal(100, Untouched));
}

TEST(MAudioPluginPipeline, BlocksBeyondTheAnnouncedLengthSoundTheSame)
{
    Signal noise(20000);
    unsigned random = 1;
    for (float& sample : noise)
        sample = static_cast<float>((random = random * 1664525u + 1013904223u) >> 16) / 65536.0f;
    for (const int factor : {1, 4})
    {
        PluginUnderTest whole, pieces;
        for (PluginUnderTest* const plugin : {&whole, &pieces})
            plugin->SetUpsampling(factor, true);
        EXPECT_EQ(Play(whole, noise, 20000), Play(pieces, noise, 1000)) << factor;
    }
}

TEST(MAudioPluginPipeline, FurtherOutputsAreSilentWithoutAnInput)
{
    for (const bool isBypassed : {false, true})
    {
        PluginUnderTest plugin(2, 2);
        plugin.SetChannelMode(Left);
        plugin.SetUpsampling(4, true);
        plugin.SetBypassed(isBypassed);
        HostBlock block({3.0f, 1.0f}, 5000); // more than was announced
        Signal further(5000, Untouched);
        block.outputs[MAudioPlugin::ChannelsPerBus + 1] = further.data();
        block.Play(plugin);
        EXPECT_EQ(further, Signal(5000));
        EXPECT_NEAR(block.outputBlocks[1].back(), 1.0f, 1e-3f) << isBypassed;
    }
}

TEST(MAudioPluginPipeline, HoldsTheUpsampledOutputToTheLimit)
{
    PluginUnderTest plugin;
    plugin.clipLimit = 20.0;
    plugin.SetUpsampling(2, false);
    const Signal played = Play(plugin, Signal(4000, 3.0f), 1000)[0];
    EXPECT_EQ(Peak(played), 20.0f);
}

// What a host calls the gains.
constexpr int Dry = TonvaleAudioEffectPlugin::Dry;
constexpr int Wet = TonvaleAudioEffectPlugin::Wet;

/// Tonvale whole, at the rate of these tests.
std::unique_ptr<MAudioPlugin> MakeTonvale(int factor, double dry, double wet)
{
    std::unique_ptr<MAudioPlugin> plugin = CreateAudioPlugin();
    plugin->SetHostSampleRate(Rate);
    static_cast<MAudioPluginPipeline&>(*plugin).SetUpsampling(factor, true);
    plugin->SetParameter(Dry, dry, true);
    plugin->SetParameter(Wet, wet, true);
    return plugin;
}

TEST(MAudioPluginPipeline, WhatIsNoNumberPassesAndDoesNotStay)
{
    using Limits = std::numeric_limits<float>;
    for (const float poison : {Limits::quiet_NaN(), Limits::infinity(), 1e-40f})
        for (const int factor : {1, 4})
        {
            const auto plugin = MakeTonvale(factor, 1.0, 0.5);
            Play(*plugin, Signal(1000, poison), 250);
            Play(*plugin, Signal(6000), 1000);
            const auto after = Play(*plugin, Signal(1000), 250);
            for (const Signal& channel : after)
                for (const float sample : channel)
                    ASSERT_TRUE(std::isfinite(sample)) << poison << " at " << factor;

            const auto deaf = MakeTonvale(factor, 0.0, 0.5);
            Play(*deaf, Signal(1000), 250);
            const Signal played = Play(*deaf, Signal(1000, poison), 250)[0];
            for (const float sample : played)
                ASSERT_TRUE(std::isfinite(sample)) << poison << " at " << factor;
        }
}

TEST(MAudioPluginPipeline, AHostsStepIsALineThroughTheBlock)
{
    const auto plugin = MakeTonvale(1, 0.0, 0.5);
    const auto steady = MakeTonvale(1, 0.0, 1.0);
    const Signal silence(1024);
    for (const std::size_t length : {1024u, 100u}) // short ones draw no line, but lead up to one
    {
        for (MAudioPlugin* const each : {plugin.get(), steady.get()})
            Play(*each, silence, length);
        plugin->SetParameter(Wet, 0.2, true);
    }
    Play(*plugin, silence, 100);
    Play(*steady, silence, 100);
    plugin->SetParameter(Wet, 1.0, true);
    const Signal played = Play(*plugin, silence, 1024)[0];
    const Signal full = Play(*steady, silence, 1024)[0];

    // Each piece goes on to the value at its start, so the line is heard one piece of 256 late.
    const auto gainAt = [](int piece)
    {
        return std::pow(0.2 + 0.8 * std::max(piece, 0) / 4.0, 4.0); // two squared laws
    };
    for (int i = 0; i < 1024; ++i)
    {
        const int piece = i / 256;
        const double share = (i % 256) / 256.0;
        const double gain = gainAt(piece - 1) + share * (gainAt(piece) - gainAt(piece - 1));
        const auto at = static_cast<std::size_t>(i);
        ASSERT_NEAR(played[at], gain * static_cast<double>(full[at]), 1e-5) << i;
    }
    EXPECT_EQ(plugin->GetParameter(Wet), 1.0);
}

TEST(MAudioPluginPipeline, HighQualityIsFlatAndAsLateAsItSays)
{
    for (const int factor : {2, 4, 8, 16})
        for (const double cycles : {0.001, 0.05, 0.123, 0.25, 0.3, 0.4, 0.43, 0.45}) // a sample
        {
            const auto plugin = MakeTonvale(factor, 1.0, 0.0);
            const auto late = static_cast<double>(plugin->GetEffectiveLatency());
            constexpr std::size_t Settled = 8192;
            constexpr std::size_t Window = 8000; // whole cycles of all of them
            Signal sine(Settled + Window);
            const auto angle = [&](double i) { return 2.0 * std::numbers::pi * cycles * i; };
            for (std::size_t i = 0; i < sine.size(); ++i)
                sine[i] = static_cast<float>(std::sin(angle(static_cast<double>(i))));
            const Signal played = Play(*plugin, sine, 1000)[1];

            std::complex<double> sum;
            for (std::size_t i = Settled; i < sine.size(); ++i)
                sum += static_cast<double>(played[i]) *
                       std::polar(1.0, -angle(static_cast<double>(i) - late));
            sum *= std::complex<double>(0.0, 2.0 / Window); // of a sine: its amplitude
            EXPECT_NEAR(20.0 * std::log10(std::abs(sum)), 0.0, 0.1) << factor << ": " << cycles;
            EXPECT_NEAR(std::arg(sum), 0.0, 1e-3) << factor << ": " << cycles;
        }
}

} // namespace
