#include <cmath>
#include <complex>
#include <numbers>

#include <gtest/gtest.h>

#include "tests/shell/modulators/ModulatorUnderTest.h"

namespace
{

using std::numbers::pi;

TEST(MModulatorFollower, MapsTheLevelOfAllChannels)
{
    // A level L of two channels at amplitudes 0.6 and 0.2: L² is (0.36 + 0.04) / 2.
    const double level = std::sqrt(0.2);
    const double db = 20.0 * std::log10(level);
    const auto linear = [level](double minDb, double maxDb)
    {
        const double low = std::pow(10.0, minDb / 20.0);
        return (level - low) / (std::pow(10.0, maxDb / 20.0) - low);
    };
    struct Case
    {
        const char* what;
        MFollowerMode mode;
        double min, max, expected;
    };
    const Case cases[] = {
        {"linear", MFollowerMode::Linear, -50.0, 0.0, linear(-50.0, 0.0)},
        {"squared", MFollowerMode::Squared, -20.0, -3.0, std::sqrt(linear(-20.0, -3.0))},
        {"logarithmic", MFollowerMode::Logarithmic, -40.0, -2.0, (db + 40.0) / 38.0},
        {"above the top", MFollowerMode::Linear, -50.0, -20.0, 1.0},
        {"below", MFollowerMode::Squared, -2.0, -1.0, 0.0},
        {"no span", MFollowerMode::Linear, -20.0, -20.0, 1.0},
        {"narrow", MFollowerMode::Logarithmic, db - 2.0, db - 1.5, 0.5},
        {"top below", MFollowerMode::Logarithmic, -20.0, -30.0, 0.0},
    };
    for (const Case& row : cases)
    {
        ModulatorUnderTest test(MModulatorMode::Envelope);
        test->Follower.FollowerMode = static_cast<std::int32_t>(row.mode);
        test->Follower.LevelMin = row.min;
        test->Follower.LevelMax = row.max;
        test.Fill(0, 0.6f);
        test.Fill(1, -0.2f);
        // "narrow": what is held at the top is half of the least span of 1 dB.
        EXPECT_NEAR((test.PlayFor(48000) + 1.0) / 2.0, row.expected, 1e-6) << row.what;
        EXPECT_NEAR((test.Play(64, 0) + 1.0) / 2.0, row.expected, 1e-6) << row.what << ", deaf";
    }
}

TEST(MModulatorFollower, RisesAndFallsInItsTimes)
{
    // The power settles in 10 ms; behind it attack and release are poles of their own.
    ModulatorUnderTest test(MModulatorMode::Envelope);
    test->Follower.FollowerMode = static_cast<std::int32_t>(MFollowerMode::Linear);
    test->Follower.LevelMin = -120.0;
    test->Follower.Attack = 0.0;
    test->Follower.Release = 0.05;
    test->SideChain = true;
    test.Fill(8, 0.5f);
    const auto level = [&](double value) { return (value + 1.0) / 2.0 * (1.0 - 1e-6) + 1e-6; };
    constexpr int Samples = 700;
    const double a = std::exp(-1.0 / 480.0);
    EXPECT_NEAR(level(test.PlayFor(Samples, 1)), 0.5 * std::sqrt(1.0 - std::pow(a, Samples)), 1e-9);
    test.PlayFor(48000, 1);
    test.Fill(8, 0.0f);
    // r falls by q with each sample, the value V as V' = (1 - k) r + k V.
    const double q = std::sqrt(a);
    const double k = std::exp(-1.0 / (0.05 * 48000.0));
    const double fall =
        0.5 * (std::pow(k, Samples) +
               (1.0 - k) * q * (std::pow(q, Samples) - std::pow(k, Samples)) / (q - k));
    EXPECT_NEAR(level(test.PlayFor(Samples, 1)), fall, 1e-9);
    test->InitProcessing(48000.0);
    EXPECT_NEAR(level(test.Play(0, 1)), 0.0, 2e-6);

    test->Follower.Maximize = true;
    test->Follower.Release = 0.0;
    for (const float amplitude : {0.1581f, 0.1582f}) // the threshold is 0.025
    {
        test.Fill(8, amplitude);
        EXPECT_NEAR(level(test.PlayFor(48000, 1)), amplitude > 0.15815f ? 1.0 : 0.0, 1e-5);
    }
}

TEST(MModulatorFollower, FiltersAsAnalogueOnes)
{
    // Bilinear filters are analogue ones along a bent scale of frequencies.
    const double q = 2.0;
    const auto gain = [&](double hz, double edge, bool isHighPass)
    {
        const double w = std::tan(pi * hz / 48000.0) / std::tan(pi * edge / 48000.0);
        const std::complex<double> bottom(1.0 - w * w, w / q);
        return (isHighPass ? w * w : 1.0) / std::abs(bottom);
    };
    for (const double hz : {400.0, 1000.0, 3000.0, 9000.0})
    {
        ModulatorUnderTest test(MModulatorMode::Envelope);
        test->Follower.BandPassMin = 3.0;
        test->Follower.BandPassMax = std::log10(4000.0);
        test->Follower.BandPassQ = q;
        test->Follower.Attack = 0.1;
        test->Follower.FollowerMode = static_cast<std::int32_t>(MFollowerMode::Linear);
        test->Follower.LevelMin = -120.0;
        double value = 0.0;
        for (int sample = 0; sample < 96000; sample += 64)
        {
            for (int i = 0; i < 64; ++i)
                test.blocks[1][static_cast<std::size_t>(i)] =
                    static_cast<float>(0.2 * std::sin(2.0 * pi * hz * (sample + i) / 48000.0));
            test.blocks[0] = test.blocks[1];
            value = (test.Play(64) + 1.0) / 2.0;
        }
        const double expected =
            0.2 / std::numbers::sqrt2 * gain(hz, 1000.0, true) * gain(hz, 4000.0, false);
        EXPECT_NEAR(value / expected, 1.0, 5e-3) << hz;
    }
}

TEST(MModulatorEnvelope, NotesDriveTheGate)
{
    ModulatorUnderTest test(MModulatorMode::MIDIEnvelope);
    MADSR& adsr = test->Envelope.ADSR;
    adsr.Attack = adsr.Decay = adsr.Release = 1000.0 / 48000.0;
    adsr.Sustain = 0.5;
    adsr.Rebuild();
    const auto y = [&](int samples) { return (test.Play(samples) + 1.0) / 2.0; };
    EXPECT_EQ(y(500), 0.0) << "silent before the first note";
    test->OnNote(0, 1.0, false); // astray
    test->OnNote(0, 1.0, true);
    EXPECT_NEAR(y(500), 0.0, 1e-12);
    EXPECT_NEAR(y(500), 0.5, 1e-12);
    EXPECT_NEAR(y(500), 1.0, 1e-12);
    test->OnNote(3, 1.0, true); // legato
    EXPECT_NEAR(y(500), 0.75, 1e-12);
    test->OnNote(3, 1.0, false);
    for (int i = 0; i < 10; ++i)
        EXPECT_NEAR(y(500), 0.5, 1e-12) << "one note is still held";
    test->OnNote(0, 1.0, false);
    y(0);   // leaves the sustain
    y(500); // into the release
    EXPECT_NEAR(y(0), 0.25, 1e-12);
    test->OnNote(0, 1.0, true);
    EXPECT_NEAR(y(250), 0.25, 1e-12) << "the attack goes on from there";
    EXPECT_NEAR(y(0), 0.5, 1e-12);

    test->SetMode(MModulatorMode::Normal);
    test->OnNote(0, 1.0, false);
    test->SetMode(MModulatorMode::MIDIEnvelope);
    test->OnNote(0, 1.0, true);
    test.PlayFor(2000);
    EXPECT_NEAR(y(0), 0.5, 1e-12) << "the end in another mode counted";
    test->SetMode(MModulatorMode::Normal);
    test->InitProcessing(48000.0);
    test->OnNote(0, 1.0, true);
    test->SetMode(MModulatorMode::MIDIEnvelope);
    y(500);
    EXPECT_EQ(y(0), 0.0) << "notes of another mode start nothing";
}

TEST(MModulatorEnvelope, LoudInputDrivesTheGate)
{
    ModulatorUnderTest test(MModulatorMode::MIDIEnvelope);
    test->Envelope.EnvelopeSource = static_cast<std::int32_t>(MLFOEnvelopeMode::Audio);
    test->Envelope.ADSR.Attack = 1.0;
    test->Envelope.ADSR.Release = 0.0;
    test->Envelope.ADSR.Rebuild();
    test->Envelope.ThresholdOn = 0.6;
    test.Fill(0, 1.0f); // a mean square of 0.5
    EXPECT_EQ(test.PlayFor(48000), -1.0);
    test.Fill(1, 1.0f);
    // From 0.5 to above 0.6 within 480 ln(0.5 / 0.4) samples, and the note starts there.
    const double flip = std::floor(480.0 * std::log(0.5 / 0.4));
    test.Play(1024);
    EXPECT_NEAR((test.Play(0) + 1.0) / 2.0, (flip + 1024.0) / 48000.0, 1e-9);
    test.Fill(0, 0.0f);
    test.Fill(1, 0.6f); // 0.18 is below the lower threshold
    test->Envelope.ADSR.Attack = 0.0;
    test->Envelope.ADSR.Decay = 0.0;
    test->Envelope.ADSR.Rebuild();
    test.PlayFor(96000);
    EXPECT_EQ(test.Play(0), -1.0);

    test.Fill(1, 1.6f);
    test.PlayFor(9600);
    EXPECT_EQ(test.Play(0), 0.0) << "sustains";
    test->Envelope.EnvelopeSource = static_cast<std::int32_t>(MLFOEnvelopeMode::MIDI);
    EXPECT_EQ(test.PlayFor(9600), -1.0) << "no note is held";
    test->OnNote(0, 1.0, true);
    test.Play(64);
    EXPECT_GT(test.Play(0), -1.0) << "what the input counted is forgotten";
}

TEST(MModulatorRandom, WalksFromNodeToNodeWithTheSong)
{
    // The hash of the numbers, worked out elsewhere.
    for (const auto& [k, sixteenBits] : std::initializer_list<std::pair<std::int64_t, int>>{
             {0, 0}, {1, 63007}, {2, 60479}, {3, 57679}, {1000, 48176}, {1LL << 62, 0}})
        EXPECT_DOUBLE_EQ(MModulatorRandom::GetNode(k), sixteenBits / 65535.0) << k;

    ModulatorUnderTest test(MModulatorMode::Random);
    test.time.playing = true;
    const auto y = [&](double quarters)
    {
        test.time.position = quarters;
        return (test.Play(64) + 1.0) / 2.0;
    };
    std::array<double, 400> first{};
    for (std::size_t i = 0; i < first.size(); ++i)
        first[i] = y(static_cast<double>(i) * 0.37);
    for (std::size_t i = first.size(); i-- > 0;)
        EXPECT_EQ(y(static_cast<double>(i) * 0.37), first[i]) << i;

    for (const double smoothness : {0.0, 0.4, 1.0})
        for (const int quarter : {0, 1, 2, 999, 123456789})
        {
            test->Random.Smoothness = smoothness;
            const auto node = [quarter](int i) { return MModulatorRandom::GetNode(quarter + i); };
            EXPECT_NEAR(y(quarter), node(1), 1e-12) << quarter;
            const double straight = (node(1) + node(2)) / 2.0;
            const double curved = (9.0 * (node(1) + node(2)) - node(0) - node(3)) / 16.0;
            EXPECT_NEAR(y(quarter + 0.5),
                        std::clamp(smoothness * curved + (1.0 - smoothness) * straight, 0.0, 1.0),
                        1e-9)
                << quarter << ", " << smoothness;
        }
    test->Random.Speed = 3.0;
    EXPECT_NEAR(y(125.125), MModulatorRandom::GetNode(1002), 1e-12) << "eight nodes a quarter";
    EXPECT_EQ(y(1e300), y(1e200)) << "beyond the last place";

    test->Random.Speed = 0.0;
    test->Random.Smoothness = 0.0;
    test.time = {.position = 5.0}; // stands: runs by itself, a node each half second
    test.PlayFor(3 * 24000);
    EXPECT_NEAR((test.Play(0) + 1.0) / 2.0, MModulatorRandom::GetNode(4), 1e-9);
    test->InitProcessing(96000.0);
    test.PlayFor(24000);
    EXPECT_NEAR((test.Play(0) + 1.0) / 2.0,
                (MModulatorRandom::GetNode(1) + MModulatorRandom::GetNode(2)) / 2.0, 1e-9);
}

/// Answers what it is told to.
struct ToldPitch final : MModulatorPitchDetector
{
    void SetSampleRate(double newRate) override { rate = newRate; }
    void Reset() noexcept override { ++resets; }
    double Process(const float*, int, const Settings& settings) noexcept override
    {
        last = settings;
        return hz;
    }

    double hz = 0.0;
    double rate = 0.0;
    int resets = 0;
    Settings last{};
};

TEST(MModulatorPitch, PlacesTheFrequencyAndHoldsIt)
{
    ModulatorUnderTest test;
    EXPECT_EQ(test->Pitch.Process(test.pointers[0], 64), 0.0) << "nobody tells a pitch";
    ToldPitch told;
    test->Pitch.SetDetector(&told);
    test->InitProcessing(44100.0);
    test->SetMode(MModulatorMode::Pitch);
    const auto place = [&](double hz)
    {
        told.hz = hz;
        return (test.Play(64) + 1.0) / 2.0;
    };
    EXPECT_NEAR(place(200.0), 1.0 / 3.0, 1e-12);
    EXPECT_NEAR(place(19.9), 1.0 / 3.0, 1e-12) << "unpitched: the last one holds";
    EXPECT_NEAR(place(30000.0), 1.0, 1e-12);
    EXPECT_EQ(told.resets, 1) << "as the mode begins";
    EXPECT_EQ(told.rate, 44100.0);
    EXPECT_DOUBLE_EQ(told.last.threshold, 0.01);
    EXPECT_DOUBLE_EQ(told.last.accuracy, 0.999 - 0.299 * 0.04);
    test->Pitch.MinFrequency = 2.0;
    test->Pitch.MaxFrequency = 3.0;
    test->Pitch.ShiftOctaves = 1.0;
    test->Pitch.ShiftSemitones = -6.0;
    test->Pitch.ShiftCents = 50.0;
    EXPECT_NEAR(place(200.0), std::log10(2.0 * std::exp2(6.5 / 12.0)), 1e-12);
    test->Pitch.MaxFrequency = 2.0; // no span: the whole one
    EXPECT_NEAR(place(200.0), std::log10(10.0 * std::exp2(6.5 / 12.0)) / 3.0, 1e-12);
}

TEST(MModulatorProjection, WalksAWindowOfTheShapeAndMixesTheLFO)
{
    // The sine at half of the interval behind the shift; the LFO stands at its top.
    MModulatorProjection projection;
    const MSignalGenerator sine;
    EXPECT_NEAR(projection.Apply(1.5, 1.0, sine), 1.0, 1e-12);
    EXPECT_NEAR(projection.Apply(0.25, 1.0, sine), -0.5, 1e-12);
    projection.LFOModulation = 0.25;
    EXPECT_NEAR(projection.Apply(0.25, 1.0, sine), 0.25 - 0.75 * 0.5, 1e-12);
    projection.Project = true;
    projection.IntervalSize = 0.2;
    EXPECT_NEAR(projection.Apply(0.5, 1.0, sine), 0.25 + 0.75 * std::sin(2.0 * pi * 0.85), 1e-6);
}

} // namespace
