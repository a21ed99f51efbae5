#include "tools/plot/SoundAnalysis.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include <gtest/gtest.h>

namespace
{

constexpr int Rate = 48000;
constexpr SoundAnalysis::Size Pixels{
    .spectrumWidth = 601, .spectrogramWidth = 100, .spectrogramHeight = 201};

std::vector<float> Sine(double hz, double gain, int frames)
{
    std::vector<float> sound(static_cast<std::size_t>(frames));
    for (std::size_t i = 0; i < sound.size(); ++i)
        sound[i] = static_cast<float>(
            gain * std::sin(2.0 * std::numbers::pi * hz * static_cast<double>(i) / Rate));
    return sound;
}

void Play(SoundAnalysis& analysis, const std::vector<std::vector<float>>& sound, std::size_t block)
{
    for (std::size_t start = 0; start < sound[0].size(); start += block)
    {
        const std::size_t count = std::min(block, sound[0].size() - start);
        std::vector<std::vector<float>> blocks;
        blocks.reserve(sound.size());
        for (const std::vector<float>& channel : sound)
            blocks.emplace_back(channel.begin() + static_cast<std::ptrdiff_t>(start),
                                channel.begin() + static_cast<std::ptrdiff_t>(start + count));
        analysis.Feed(blocks, static_cast<int>(count));
    }
}

double Decibels(double power)
{
    return 10.0 * std::log10(power);
}

TEST(SoundAnalysis, ASineHasItsLevelAtItsFrequencyAndNothingElsewhere)
{
    struct Case
    {
        double hz;
        double gain;
        int frames;
        double tolerance; ///< dB; a frequency may lie between two bins
    };
    const Case cases[] = {{1000.0, 1.0, 96000, 0.3},
                          {50.0, 0.1, 96000, 0.3},
                          {440.0, 0.5, 40000, 0.3},
                          {15000.0, 0.001, 9 * Rate, 0.3}};
    for (const auto& [hz, gain, frames, tolerance] : cases)
    {
        SoundAnalysis analysis(Rate, 2, frames, Pixels);
        Play(analysis,
             {Sine(hz, gain, frames), std::vector<float>(static_cast<std::size_t>(frames))}, 977);
        const LogScale& scale = analysis.GetSpectrumScale();
        const std::vector<double> levels = analysis.GetSpectrum(0);
        const auto top = std::max_element(levels.begin(), levels.end());
        EXPECT_NEAR(static_cast<double>(top - levels.begin()), scale.GetPixel(hz), 1.0) << hz;
        EXPECT_NEAR(Decibels(*top), 20.0 * std::log10(gain), tolerance) << hz;
        for (std::size_t i = 0; i < levels.size(); ++i)
        {
            const bool isBeside =
                std::abs(scale.GetFrequency(static_cast<double>(i)) - hz) > 0.05 * hz + 20.0;
            EXPECT_TRUE(!isBeside || Decibels(levels[i]) < 20.0 * std::log10(gain) - 110.0)
                << hz << ", pixel " << i;
        }
        const std::vector<double> silence = analysis.GetSpectrum(1);
        EXPECT_LT(*std::ranges::max_element(silence), 1e-29);
        EXPECT_NEAR(analysis.GetPeak(0), gain, 1e-4 * gain);
        EXPECT_NEAR(analysis.GetRMS(0), gain / std::numbers::sqrt2, 2e-3 * gain);
    }
}

TEST(SoundAnalysis, TheSpectrogramFollowsAStep)
{
    std::vector<float> sound = Sine(200.0, 1.0, Rate * 2);
    const std::vector<float> second = Sine(4000.0, 1.0, Rate * 2);
    sound.insert(sound.end(), second.begin(), second.end());
    SoundAnalysis analysis(Rate, 1, static_cast<std::int64_t>(sound.size()), Pixels);
    ASSERT_TRUE(analysis.HasSpectrogram());
    Play(analysis, {sound}, 512);
    const LogScale& scale = analysis.GetSpectrogramScale();
    for (int column = 0; column < Pixels.spectrogramWidth; ++column)
    {
        if (std::abs(column - 50) < 3)
            continue; // the piece sees both
        const auto levels = analysis.GetColumn(column);
        const auto top = std::max_element(levels.begin(), levels.end()) - levels.begin();
        EXPECT_NEAR(static_cast<double>(top), scale.GetPixel(column < 50 ? 200.0 : 4000.0), 2.0)
            << column;
    }
    EXPECT_EQ(analysis.GetExcerptStart(), sound.size() / 2 - Rate / 8);
    EXPECT_EQ(analysis.GetExcerpt(0).size(), static_cast<std::size_t>(Rate / 4));
}

TEST(SoundAnalysis, TakesSoundsOfAnyLengthInAnyBlocks)
{
    for (const int frames : {1, 2, 15, 1000, Rate * 2, Rate * 2 + 1})
        for (const std::size_t block : {std::size_t{64}, std::size_t{200000}})
        {
            SoundAnalysis analysis(Rate, 1, frames, Pixels);
            Play(analysis, {std::vector<float>(static_cast<std::size_t>(frames), 0.5f)}, block);
            const std::vector<std::vector<float>> more(1, std::vector<float>(10, 1.0f));
            analysis.Feed(more, 10);
            EXPECT_EQ(analysis.GetPeak(0), 0.5f) << frames;
            EXPECT_FALSE(analysis.GetExcerpt(0).empty());
            EXPECT_EQ(analysis.HasSpectrogram(), frames >= Rate * 2);
        }
}

} // namespace
