#include "dsp/pitch/MPitchDetectorFFT.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <limits>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Samples = std::vector<float>;

constexpr double Rate = 48000.0;

/// Harmonics from the fundamental on, up to 20 kHz, and white noise.
struct Sound
{
    std::vector<double> amplitudes;
    double noiseRMS = 0.0;
};

Samples Play(const Sound& sound, double hz, double rate, double seconds)
{
    std::mt19937 random(static_cast<unsigned>(hz)); // NOLINT: the same each time
    std::normal_distribution<double> noise(0.0, 1.0);
    Samples samples(static_cast<std::size_t>(rate * seconds));
    for (std::size_t i = 0; i < samples.size(); ++i)
    {
        double value = sound.noiseRMS > 0.0 ? sound.noiseRMS * noise(random) : 0.0;
        double harmonic = 0.0;
        for (const double amplitude : sound.amplitudes)
            if ((harmonic += 1.0) * hz < std::min(20000.0, 0.5 * rate))
                value += amplitude * std::sin(2.0 * std::numbers::pi * harmonic * hz *
                                              static_cast<double>(i) / rate);
        samples[i] = static_cast<float>(value);
    }
    return samples;
}

Samples Sine(double hz, double amplitude = 0.5, double seconds = 0.2)
{
    return Play({{amplitude}}, hz, Rate, seconds);
}

Sound Saw()
{
    Sound saw;
    for (int k = 1; k <= 50; ++k)
        saw.amplitudes.push_back(0.4 / k);
    return saw;
}

double Cents(double hz, double expected)
{
    return hz > 0.0 ? 1200.0 * std::log2(hz / expected) : std::numeric_limits<double>::infinity();
}

/// The answers of all detections, however many a block holds.
std::vector<double> Answers(MPitchDetectorFFT& detector, const Samples& samples, int block = 64)
{
    std::vector<double> answers;
    const auto length = static_cast<int>(samples.size());
    for (int done = 0; done < length; done += block)
    {
        const double hz = detector.Process(samples.data() + done, std::min(block, length - done));
        if (detector.GetDetectionCount() > 0)
            answers.push_back(hz);
    }
    return answers;
}

double Last(MPitchDetectorFFT& detector, const Samples& samples)
{
    return detector.Process(samples.data(), static_cast<int>(samples.size()));
}

MPitchDetectorFFT& At(MPitchDetectorFFT& detector, double rate)
{
    detector.SetSampleRate(rate);
    return detector;
}

TEST(MPitchDetectorFFT, FindsTheNoteOfTones)
{
    struct Case
    {
        std::string name;
        Sound sound;
        double mostCents;
    };
    const Case cases[] = {
        {"sine", {{0.5}}, 2.0},
        {"saw", Saw(), 0.6},
        {"fundamental 20 dB below its neighbours", {{0.03, 0.3, 0.3, 0.2, 0.1}}, 1.0},
        {"fifth and octave without fundamental", {{0.0, 0.3, 0.3}}, 1.0},
        {"sine with noise 26 dB below", {{0.5}, 0.5 / std::numbers::sqrt2 / 20.0}, 3.0}};
    for (const double rate : {44100.0, 48000.0, 96000.0, 192000.0})
        for (const Case& row : cases)
            for (int note = 0; note < 12; ++note)
            {
                const double hz = 40.0 * std::pow(50.0, note / 11.0);
                MPitchDetectorFFT detector;
                const std::vector<double> answers =
                    Answers(At(detector, rate), Play(row.sound, hz, rate, 0.22));
                ASSERT_GE(answers.size(), 9U);
                for (std::size_t i = 5; i < answers.size(); ++i)
                    EXPECT_NEAR(Cents(answers[i], hz), 0.0, row.mostCents)
                        << row.name << " of " << hz << " Hz at " << rate;
            }
}

TEST(MPitchDetectorFFT, FindsNoNoteInNoise)
{
    for (const double rate : {44100.0, 48000.0, 96000.0, 192000.0})
    {
        MPitchDetectorFFT detector;
        for (const double answer : Answers(At(detector, rate), Play({{}, 0.3}, 1.0, rate, 1.0)))
            EXPECT_EQ(answer, 0.0) << rate;
    }
}

/// How long after the step, @p phase of a hop after a detection, the answers are wrong.
double SettleSeconds(double from, double to, double rate, double phase)
{
    MPitchDetectorFFT detector;
    At(detector, rate);
    Last(detector, Play(Saw(), from, rate, (10.0 + phase) * detector.GetHopSeconds()));
    const Samples after = Play(Saw(), to, rate, 0.2);
    std::size_t lastWrong = 0;
    for (std::size_t i = 0; i < after.size(); ++i)
        if (std::abs(Cents(detector.Process(&after[i], 1), to)) > 20.0)
            lastWrong = i;
    return static_cast<double>(lastWrong) / rate;
}

TEST(MPitchDetectorFFT, FollowsAStepOfAFifth)
{
    // Windows that hold some of both notes may fall to the octave that is common to them.
    constexpr double Longest = MPitchDetectorFFT::WindowLength + MPitchDetectorFFT::HopLength;
    constexpr int Phases = 8;
    for (const auto& [from, to] : {std::pair(220.0, 330.0), {330.0, 220.0}, {1200.0, 1800.0}})
    {
        double sum = 0.0;
        for (int phase = 0; phase < Phases; ++phase)
        {
            const double seconds = SettleSeconds(from, to, Rate, (phase + 0.5) / Phases);
            EXPECT_LE(seconds, Longest / 24000.0) << from << " to " << to;
            sum += seconds;
        }
        EXPECT_LE(sum / Phases, 0.096) << from << " to " << to;
    }
}

TEST(MPitchDetectorFFT, DoesNotCareForBlocks)
{
    Samples glide(48000);
    for (std::size_t i = 0; i < glide.size(); ++i)
        glide[i] = 0.5f * std::sin(static_cast<float>(i * i) * 2e-6f);
    for (const double rate : {8000.0, 44100.0, 700000.0})
    {
        MPitchDetectorFFT whole;
        const std::vector<double> expected = Answers(At(whole, rate), glide, 1);
        for (const int block : {7, 64, 333})
        {
            MPitchDetectorFFT detector;
            EXPECT_EQ(Answers(At(detector, rate), glide, block), expected) << block;
        }
        MPitchDetectorFFT detector;
        EXPECT_EQ(Last(At(detector, rate), glide), expected.back());
        EXPECT_EQ(detector.GetDetectionCount(), static_cast<int>(expected.size()));
        EXPECT_NEAR(static_cast<double>(expected.size()) * detector.GetHopSeconds(),
                    static_cast<double>(glide.size()) / rate, detector.GetHopSeconds());
    }
}

TEST(MPitchDetectorFFT, NeedsLevelClarityAndRange)
{
    const double atThreshold = 0.1 * std::numbers::sqrt2;
    struct Case
    {
        std::string name;
        Samples samples;
        double minHz;
        double maxHz;
        bool isPitched;
    };
    Samples offset = Sine(750.0);
    for (float& sample : offset)
        sample += 2.0f;
    // With noise, the difference at the period is the tone's share of the power: noise does not
    // repeat. All above half the analysis rate is filtered out of it.
    const Case cases[] = {
        {"loud enough", Sine(750.0, atThreshold * 1.02), 20.0, 20000.0, true},
        {"too quiet", Sine(750.0, atThreshold * 0.98), 20.0, 20000.0, false},
        {"within", Sine(750.0), 745.0, 755.0, true},
        {"too low", Sine(750.0), 755.0, 20000.0, false},
        {"too high", Sine(750.0), 20.0, 745.0, false},
        {"clear enough", Play({{0.5}, std::sqrt(0.125)}, 300.0, Rate, 0.2), 20.0, 20000.0, true},
        {"too noisy", Play({{0.5}, std::sqrt(0.5)}, 300.0, Rate, 0.2), 20.0, 20000.0, false},
        {"silent", Samples(10000), 20.0, 20000.0, false},
        {"constant", Samples(10000, 0.5f), 20.0, 20000.0, false},
        {"on top of a constant", offset, 20.0, 20000.0, true}};
    for (const Case& row : cases)
    {
        MPitchDetectorFFT detector;
        At(detector, Rate).SetRange(row.minHz, row.maxHz);
        detector.SetThreshold(0.01);
        EXPECT_EQ(Last(detector, row.samples) > 0.0, row.isPitched) << row.name;
    }
}

TEST(MPitchDetectorFFT, TakesAWeakFundamentalByAccuracy)
{
    // After half a period the fundamental opposes itself and the octave repeats, so the difference
    // there is (1 - 0.09) / (1 + 0.09) = 0.835.
    const Samples octave = Play({{0.15, 0.5}}, 200.0, Rate, 0.2);
    for (const auto& [accuracy, hz] : {std::pair(0.87, 200.0), {0.999, 200.0}, {0.8, 400.0}})
    {
        MPitchDetectorFFT detector;
        At(detector, Rate).SetAccuracy(accuracy);
        EXPECT_NEAR(Cents(Last(detector, octave), hz), 0.0, 2.0) << accuracy;
    }
}

TEST(MPitchDetectorFFT, ForgetsByResetAndRate)
{
    MPitchDetectorFFT detector;
    EXPECT_EQ(Last(detector, Sine(300.0)), 0.0) << "without a rate";
    const std::vector<double> expected = Answers(At(detector, Rate), Sine(300.0));
    EXPECT_GT(expected.back(), 0.0);
    detector.Reset();
    EXPECT_EQ(detector.Process(nullptr, 64), 0.0);
    EXPECT_EQ(Answers(detector, Sine(300.0)), expected);
    EXPECT_EQ(Answers(At(detector, Rate), Sine(300.0)), expected);

    for (const auto& [rate, analysisRate] : {std::pair(8000.0, 8000.0),
                                             {24576.0, 24576.0},
                                             {24577.0, 12288.5},
                                             {44100.0, 22050.0},
                                             {192000.0, 24000.0},
                                             {6144000.0, 24576.0},
                                             {0.0, 8000.0},
                                             {1e300, 24576.0}})
        EXPECT_EQ(At(detector, rate).GetAnalysisRate(), analysisRate) << rate;
    detector.SetSampleRate(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(detector.GetAnalysisRate(), 8000.0);
}

TEST(MPitchDetectorFFT, RecoversFromAnySamples)
{
    using Limits = std::numeric_limits<float>;
    for (const float poison : {Limits::quiet_NaN(), Limits::infinity(), Limits::max(), 1e20f})
    {
        Samples samples = Sine(300.0, 0.5, 0.4);
        MPitchDetectorFFT clean;
        const double expected = Last(At(clean, Rate), samples);
        for (std::size_t i = 0; i < samples.size() / 2; i += i % 100 + 1)
            samples[i] = i % 2 == 0 ? poison : -poison;
        MPitchDetectorFFT detector;
        for (const double answer : Answers(At(detector, Rate), samples))
            EXPECT_TRUE(answer >= 0.0 && answer <= 20000.0) << poison;
        EXPECT_EQ(detector.Process(nullptr, 0), expected) << poison;
        if (!std::isfinite(poison)) // a single one hardly counts
        {
            samples[samples.size() - 1500] = poison;
            EXPECT_NEAR(Cents(Last(detector, samples), 300.0), 0.0, 2.0) << poison;
        }
    }
}

} // namespace
