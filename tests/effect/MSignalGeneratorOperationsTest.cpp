#include "effect/MSignalGeneratorOperations.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Operations = MSignalGeneratorOperations;
constexpr int Length = Operations::CycleLength;
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

/// The buffers of a generator, full of what must not be heard.
class OperationsRun
{
public:
    std::vector<float> Process(Operations& operations, const std::vector<float>& cycle)
    {
        std::ranges::copy(cycle, buffers->render.begin());
        buffers->source.fill(Sentinel);
        buffers->scratch.fill(Sentinel);
        operations.Process({buffers->render, buffers->source, buffers->scratch});
        return {buffers->render.begin(), buffers->render.end()};
    }

    bool HasCopied() const { return buffers->source[0] != Sentinel; }

private:
    static constexpr float Sentinel = 1e30f;

    struct Storage
    {
        std::array<float, Length> render;
        std::array<float, Length + 1> source;
        std::array<float, Length> scratch;
    };
    std::unique_ptr<Storage> buffers = std::make_unique<Storage>();
};

/// Lopsided, with overtones, and a jump where the cycle ends.
const std::vector<float>& Source()
{
    static const std::vector<float> cycle = []
    {
        std::vector<float> samples(Length);
        for (int i = 0; i < Length; ++i)
        {
            const double angle = 2.0 * std::numbers::pi * i / Length;
            samples[static_cast<std::size_t>(i)] = static_cast<float>(
                0.5 * std::sin(angle) + 0.3 * std::cos(3.0 * angle) + 0.2 * i / Length);
        }
        return samples;
    }();
    return cycle;
}

/// The source at any position from 0 on, @p behind at Length itself unless it is not a number.
double Read(double position, double behind = NotANumber)
{
    if (position == Length && !std::isnan(behind))
        return behind;
    const double whole = std::floor(position);
    const auto index = static_cast<std::size_t>(whole) % Length;
    const double fraction = position - whole;
    return Source()[index] * (1.0 - fraction) + Source()[(index + 1) % Length] * fraction;
}

double SkewPosition(int i, double slope)
{
    const double u = i / 8191.0;
    const double v = 1.0 - u;
    return 8191.0 * (u * u * (3.0 - 2.0 * u) + slope * u * v * (v - u));
}

double HalvesPosition(int i, int middle)
{
    return i < middle ? i * 4095.0 / (middle - 1)
                      : 4096.0 + (i - middle) * 4095.0 / (Length - middle - 1);
}

struct Bend
{
    const char* what;
    void (*set)(Operations&);
    double (*position)(int i); ///< of the source that sample i has
    double behind = NotANumber;
};

constexpr Bend Bends[] = {
    {"skew", [](Operations& o) { o.Skew = 1.0; }, [](int i) { return SkewPosition(i, 3.0); }},
    {"negative skew", [](Operations& o) { o.Skew = -1.0; },
     [](int i) { return SkewPosition(i, 1.0 / 3.0); }},
    {"skew beyond the ends", [](Operations& o) { o.Skew = 3.0; },
     [](int i) { return std::clamp(SkewPosition(i, 27.0), 0.0, 8191.0); }},
    {"skew too small to be heard", [](Operations& o) { o.Skew = 1e-40; },
     [](int i) { return double(i); }},
    {"full skew", [](Operations& o) { o.FullSkew = 1.0; },
     [](int i) { return 8191.0 * std::pow(i / 8191.0, 10.0); }},
    {"half of a full skew", [](Operations& o) { o.FullSkew = 0.5; },
     [](int i) { return 8191.0 * std::pow(i / 8191.0, std::sqrt(10.0)); }},
    {"negative full skew", [](Operations& o) { o.FullSkew = -1.0; },
     [](int i) { return 8191.0 - 8191.0 * std::pow(1.0 - i / 8191.0, 10.0); }},
    {"least first half", [](Operations& o) { o.Halve = -1.0; },
     [](int i) { return HalvesPosition(i, 2); }},
    {"least second half", [](Operations& o) { o.Halve = 1.0; },
     [](int i) { return HalvesPosition(i, 8190); }},
    {"first half beyond the least", [](Operations& o) { o.Halve = -1e9; },
     [](int i) { return HalvesPosition(i, 2); }},
    {"longer first half", [](Operations& o) { o.Halve = 0.3; }, // 1228.2 samples
     [](int i) { return HalvesPosition(i, 5324); }},
    {"shorter first half", [](Operations& o) { o.Halve = -0.3; },
     [](int i) { return HalvesPosition(i, 2868); }},
    {"halves moved by no whole sample", [](Operations& o) { o.Halve = 0.0001; },
     [](int i) { return double(i); }},
    {"default transform, whose end reads its start",
     [](Operations& o) { o.TransformEnable = true; }, [](int i) { return i / 8191.0 * 8192.0; },
     0.0},
    {"reversed transform",
     [](Operations& o)
     {
         o.TransformEnable = true;
         o.Transform.Clear();
         o.Transform.AddEndPoints(1.0, 0.0);
     },
     [](int i) { return (8191 - i) / 8191.0 * 8192.0; }, 1.0},
    {"transform beyond the cycle",
     [](Operations& o)
     {
         o.TransformEnable = true;
         o.Transform.Clear();
         o.Transform.AddEndPoints(-0.5, 3.0);
     },
     [](int i) { return std::clamp((i / 8191.0 * 3.5 - 0.5) * 8192.0, 0.0, 8192.0); }, -0.5},
};

TEST(MSignalGeneratorOperations, BendsReadTheSourceAtTheirPositions)
{
    OperationsRun run;
    for (const Bend& row : Bends)
    {
        Operations operations;
        row.set(operations);
        const std::vector<float> result = run.Process(operations, Source());
        for (int i = 0; i < Length; ++i)
            ASSERT_NEAR(result[static_cast<std::size_t>(i)], Read(row.position(i), row.behind),
                        2e-6)
                << row.what << ", sample " << i;
    }
}

TEST(MSignalGeneratorOperations, HarmonicsAddFasterCopies)
{
    struct Case
    {
        double phase, sameAs;
    };
    constexpr Case Cases[] = {{0.0, 0.0},    {1.0, 0.0},   {0.25, 0.25},      {1.25, 0.25},
                              {-0.25, 0.75}, {0.37, 0.37}, {0.99999, 0.99999}};
    OperationsRun run;
    for (const Case& row : Cases)
    {
        Operations operations;
        operations.Harmonic = {0.5, -1.0, 0.25, 0.0, 0.75, -0.5, 1.0};
        operations.HarmonicPhase.fill(row.phase);
        operations.HarmonicPhase[1] = 0.625;
        const std::vector<float> result = run.Process(operations, Source());
        for (int i = 0; i < Length; ++i)
        {
            double sum = Source()[static_cast<std::size_t>(i)];
            for (std::size_t k = 0; k < operations.Harmonic.size(); ++k)
                sum += operations.Harmonic[k] * Read(i * static_cast<double>(k + 2) +
                                                     (k == 1 ? 0.625 : row.sameAs) * Length);
            ASSERT_NEAR(result[static_cast<std::size_t>(i)], sum, 2e-6) << row.phase << ", " << i;
        }
    }
}

TEST(MSignalGeneratorOperations, AnOctaveInPhaseIsExact)
{
    Operations operations;
    operations.Harmonic[0] = 1.0;
    OperationsRun run;
    const std::vector<float> result = run.Process(operations, Source());
    for (std::size_t i = 0; i < Length; ++i)
        ASSERT_EQ(result[i], Source()[i] + Source()[2 * i % Length]);
}

TEST(MSignalGeneratorOperations, StagesFollowEachOther)
{
    constexpr void (*Stages[])(Operations&) = {
        [](Operations& o) { o.Skew = 0.7; },
        [](Operations& o) { o.FullSkew = -0.2; },
        [](Operations& o) { o.Halve = 0.4; },
        [](Operations& o) { o.Harmonic[1] = o.HarmonicPhase[1] = 0.3; },
        [](Operations& o)
        {
            o.TransformEnable = true;
            o.Transform.Insert(1, MEnvelopePoint{.X = 0.5, .Y = 0.9});
        },
    };
    OperationsRun run;
    Operations atOnce;
    std::vector<float> expected = Source();
    for (const auto& set : Stages)
    {
        set(atOnce);
        Operations single;
        set(single);
        expected = run.Process(single, expected);
    }
    EXPECT_EQ(run.Process(atOnce, Source()), expected);
}

TEST(MSignalGeneratorOperations, AmountsOfNothingCostNoCopy)
{
    for (const double amount : {0.0, 9e-51, -9e-51, NotANumber})
    {
        Operations operations;
        operations.Skew = operations.FullSkew = operations.Halve = amount;
        operations.Harmonic.fill(amount);
        operations.HarmonicPhase.fill(0.5);
        OperationsRun run;
        EXPECT_EQ(run.Process(operations, Source()), Source());
        EXPECT_FALSE(run.HasCopied());
    }
}

/// Whatever the amount, a bend finds nothing that the source does not have.
TEST(MSignalGeneratorOperations, WildBendsStayInTheCycle)
{
    const float least = *std::ranges::min_element(Source());
    const float greatest = *std::ranges::max_element(Source());
    OperationsRun run;
    for (double Operations::*field : {&Operations::Skew, &Operations::FullSkew, &Operations::Halve})
        for (const double amount : {5.0, -5.0, 1e9, -1e9, 1e300, -1e300})
        {
            Operations operations;
            operations.*field = amount;
            for (const float sample : run.Process(operations, Source()))
                ASSERT_TRUE(sample >= least - 1e-6f && sample <= greatest + 1e-6f) << amount;
        }
}

TEST(MSignalGeneratorOperations, AmplitudesRunThroughTheirCurve)
{
    Operations operations;
    operations.AmplitudeTransform.Clear();
    operations.AmplitudeTransform.AddEndPoints(1.0, 0.5);
    operations.AmplitudeTransform.Insert(1, MEnvelopePoint{.X = 0.25, .Y = -1.0});
    auto cycle = std::make_unique<std::array<float, Length>>();
    std::ranges::copy(Source(), cycle->begin());
    operations.ProcessAmplitude(*cycle);
    for (std::size_t i = 0; i < Length; ++i)
    {
        const double x = Source()[i];
        ASSERT_NEAR((*cycle)[i], x < 0.25 ? -1.6 * x - 0.6 : 2.0 * x - 1.5, 1e-6) << i;
    }
}

} // namespace
