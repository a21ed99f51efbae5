#include "dsp/kernels/Cycles.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cmath>
#include <limits>
#include <numbers>

namespace
{

using namespace kernels;

class Cycles : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Cycles);

/// A table of @p shape at i / CycleLength, with its guard. Of its own allocation, so that the
/// address sanitizer sees who reads beyond it.
template <class Shape>
std::vector<float> Table(Shape shape)
{
    std::vector<float> table(CycleLength + 1);
    for (std::size_t i = 0; i < CycleLength; ++i)
        table[i] = static_cast<float>(shape(static_cast<double>(i) / CycleLength));
    table.back() = table.front();
    return table;
}

double Sine(double phase)
{
    return std::sin(2.0 * std::numbers::pi * phase);
}

/// 1 at the ends of the cycle, -1 in its middle, straight between.
double Triangle(double phase)
{
    return std::abs(4.0 * (phase - std::floor(phase)) - 2.0) - 1.0;
}

/// As steep as a table can be: 0 at even samples, 1 at odd ones.
double Zigzag(double phase)
{
    const double x = phase * CycleLength;
    return 1.0 - std::abs(x - 2.0 * std::floor(x / 2.0) - 1.0);
}

std::vector<float> Read(const std::vector<float>& table, double phase, double step, int n)
{
    std::vector<float> dst(static_cast<std::size_t>(n), -99.0f);
    ReadCycle(dst.data(), table.data(), phase, step, n);
    return dst;
}

struct Motion
{
    const char* what;
    double phase;
    double step;
};

constexpr Motion Motions[] = {
    {"440 Hz at 48 kHz", 0.1, 440.0 / 48000.0},
    {"still", 0.7, 0.0},
    {"slow, over the end of the cycle", 1.0 - 3e-5, 1e-6},
    {"one sample of the table at a time", 0.0, 1.0 / CycleLength},
    {"just below half a cycle", 0.3, 0.499999},
    {"one cycle at a time", 0.3, 1.0},
    {"several cycles at a time", 0.9, 3.7},
    {"a phase of many cycles", 1234.5, 0.01},
};

TEST_P(Cycles, AgreeWithTheReference)
{
    std::vector<float> table = Noise(CycleLength, 7);
    table.push_back(table.front());
    // 1e-9 of a cycle on the steepest line of the table, and the rounding of the result.
    constexpr double Tolerance = 1e-9 * CycleLength * 2.0 + 1e-6;

    for (const Motion& motion : Motions)
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 2, 3})
            {
                GuardedBlockT<float> actual(n, offset, 3);
                std::vector<float> expected(static_cast<std::size_t>(std::max(n, 0)));
                ReadCycle(actual.Data(), table.data(), motion.phase, motion.step, n);
                reference::ReadCycle(expected.data(), table.data(), motion.phase, motion.step, n);
                double worst = 0.0;
                for (int i = 0; i < n; ++i)
                    worst = std::max<double>(
                        worst, std::abs(actual.Data()[i] - expected[static_cast<std::size_t>(i)]));
                EXPECT_LT(worst, Tolerance) << motion.what << ", length " << n;
                EXPECT_TRUE(actual.GuardsAreIntact()) << motion.what << ", length " << n;
            }
}

TEST_P(Cycles, AreExactOnAStraightLine)
{
    // The phases are multiples of 2^-22 and so are representable, as are the levels there.
    const std::vector<float> table = Table(Triangle);
    constexpr double Phase = 0.125 + 0x1p-20;
    constexpr double Step = 0.25 + 0x3p-22;
    constexpr int Length = 1003;
    const std::vector<float> actual = Read(table, Phase, Step, Length);
    std::vector<float> byReference(Length);
    reference::ReadCycle(byReference.data(), table.data(), Phase, Step, Length);
    for (int i = 0; i < Length; ++i)
    {
        const auto expected = static_cast<float>(Triangle(Phase + i * Step));
        EXPECT_EQ(actual[static_cast<std::size_t>(i)], expected) << i;
        EXPECT_EQ(byReference[static_cast<std::size_t>(i)], expected) << i;
    }
}

TEST_P(Cycles, PlayASine)
{
    const std::vector<float> table = Table(Sine);
    constexpr double Step = 440.0 / 48000.0;
    const std::vector<float> actual = Read(table, 0.1, Step, 48000);
    double worst = 0.0;
    for (int i = 0; i < 48000; ++i)
        worst =
            std::max(worst, std::abs(actual[static_cast<std::size_t>(i)] - Sine(0.1 + i * Step)));
    // A chord is below its arc by up to (2 pi / 8192)^2 / 8, and the floats round.
    EXPECT_LT(worst, 7.4e-8 + 1.2e-7);
}

TEST_P(Cycles, KeepTheirPhaseOverALongBlock)
{
    // On so steep a table an error of the phase is 8192 times as large in the level.
    const std::vector<float> table = Table(Zigzag);
    constexpr int Length = 1 << 20;
    for (const double step : {440.0 / 48000.0, 0.4871, 2.0 / 3.0})
    {
        const std::vector<float> actual = Read(table, 0.1, step, Length);
        double worst = 0.0;
        for (int i = 0; i < Length; ++i)
            worst = std::max(
                worst, std::abs(actual[static_cast<std::size_t>(i)] - Zigzag(0.1 + i * step)));
        EXPECT_LT(worst, 0x1p-33 * CycleLength + 2e-7) << step;
    }
}

TEST(CyclesOnAllProcessors, HaveTheSameBits)
{
    std::vector<float> table = Noise(CycleLength, 7);
    table.push_back(table.front());
    for (const Motion& motion : Motions)
        for (const int n : {1, 7, 16, 31, 512, 1003})
        {
            std::vector<float> expected;
            for (const std::int64_t target : hwy::SupportedAndGeneratedTargets())
            {
                hwy::SetSupportedTargetsForTest(target);
                const std::vector<float> actual = Read(table, motion.phase, motion.step, n);
                hwy::SetSupportedTargetsForTest(0);
                if (expected.empty())
                    expected = actual;
                EXPECT_EQ(actual, expected)
                    << hwy::TargetName(target) << ", " << motion.what << ", length " << n;
            }
        }
}

TEST_P(Cycles, StayInTheTableWhateverThePhase)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double Hostile[] = {
        0.0,
        -0.0,
        -1e-20,
        1.0 - 0x1p-53,
        5e-324,
        -0.3,
        -1e6,
        0x1p31,
        0x1p49,
        0x1p62,
        0x1p63,
        1e300,
        -1e300,
        Infinity,
        -Infinity,
        NotANumber,
        std::numeric_limits<double>::max(),
    };
    const std::vector<float> table = Table(Sine);
    for (const double phase : Hostile)
        for (const double step : Hostile)
            for (const float sample : Read(table, phase, step, 37))
                EXPECT_LE(std::abs(sample), 1.0f) << phase << " and " << step;
}

TEST_P(Cycles, TakeAPhaseOrStepThatIsNotFiniteForNone)
{
    const std::vector<float> table = Table(Triangle);
    for (const double bad :
         {std::numeric_limits<double>::infinity(), std::numeric_limits<double>::quiet_NaN()})
    {
        EXPECT_EQ(Read(table, bad, 0.03, 37), Read(table, 0.0, 0.03, 37));
        EXPECT_EQ(Read(table, 0.3, bad, 37), Read(table, 0.3, 0.0, 37));
    }
}

TEST_P(Cycles, CountWholeCyclesInTheReturnedPhase)
{
    const std::vector<float> table = Table(Sine);
    std::vector<float> dst(1000);
    EXPECT_EQ(ReadCycle(dst.data(), table.data(), 0.25, 0.5, 1000), 500.25);
    EXPECT_EQ(ReadCycle(dst.data(), table.data(), 0.25, 1.5, 3), 4.75);
    EXPECT_EQ(reference::ReadCycle(dst.data(), table.data(), 0.25, 1.5, 3), 4.75);
}

TEST_P(Cycles, LeaveAllAsItIsWithoutSamplesOrTable)
{
    const std::vector<float> table = Table(Sine);
    std::vector<float> dst(37, 0.5f);
    EXPECT_EQ(ReadCycle(nullptr, table.data(), 0.25, 0.5, 37), 0.25);
    EXPECT_EQ(ReadCycle(dst.data(), nullptr, 0.25, 0.5, 37), 0.25);
    for (const int n : {0, -1, INT_MIN})
        EXPECT_EQ(ReadCycle(dst.data(), table.data(), 0.25, 0.5, n), 0.25);
    EXPECT_EQ(dst, std::vector<float>(37, 0.5f));
}

/// As many positions, whole and broken, over the whole of a cycle and its guard.
std::vector<float> Positions(int n, int mask)
{
    std::vector<float> positions = Noise(n, 4);
    for (std::size_t i = 0; i < positions.size(); ++i)
    {
        const float position = (positions[i] + 1.0f) * 0.5f * static_cast<float>(mask + 1);
        positions[i] = i % 3 == 0 ? std::round(position) : position;
    }
    return positions;
}

TEST_P(Cycles, LookUpWithTheBitsOfTheReference)
{
    for (const int mask : {0, 1, 7, 255, 8191})
    {
        const std::vector<float> source = Noise(mask + 2, 5);
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 3})
            {
                const std::vector<float> position = Positions(std::max(n, 0), mask);
                GuardedBlockT<float> actual(n, offset, 3);
                GuardedBlockT<float> expected(n, offset, 3);
                Lookup(actual.Data(), source.data(), position.data(), n, mask);
                reference::Lookup(expected.Data(), source.data(), position.data(), n, mask);
                EXPECT_TRUE(actual.HasBitsOf(expected)) << "mask " << mask << ", length " << n;
                EXPECT_TRUE(actual.GuardsAreIntact()) << "mask " << mask << ", length " << n;

                std::vector<float> inPlace = position;
                Lookup(inPlace.data(), source.data(), inPlace.data(), n, mask);
                EXPECT_TRUE(std::ranges::equal(inPlace, std::span(expected.Data(), inPlace.size())))
                    << "mask " << mask << ", length " << n << ", in place";
            }
    }
}

TEST_P(Cycles, LookUpBetweenSamplesAndOverTheEndOfTheCycle)
{
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    struct Case
    {
        const char* what;
        float position;
        float expected;
    };
    constexpr Case Cases[] = {
        {"the first sample", 0.0f, 10.0f},
        {"a quarter on", 0.25f, 12.5f},
        {"a sample", 3.0f, 40.0f},
        {"half on", 5.5f, 65.0f},
        {"the last sample", 7.0f, 80.0f},
        {"a quarter from the last to the first", 7.25f, 62.5f},
        {"the sample behind the cycle", 8.0f, 1000.0f},
        {"beyond", 8.5f, 1000.0f},
        {"far beyond", 1e30f, 1000.0f},
        {"infinitely far", Infinity, 1000.0f},
        {"before", -0.5f, 10.0f},
        {"infinitely far before", -Infinity, 10.0f},
        {"not a number", std::numeric_limits<float>::quiet_NaN(), 10.0f},
    };
    const std::vector<float> source{10, 20, 30, 40, 50, 60, 70, 80, 1000};
    for (const Case& row : Cases)
        for (const int n : {1, 4, 16, 33})
        {
            const std::vector<float> position(static_cast<std::size_t>(n), row.position);
            std::vector<float> dst(position.size());
            Lookup(dst.data(), source.data(), position.data(), n, 7);
            EXPECT_EQ(dst, std::vector<float>(position.size(), row.expected)) << row.what;
            reference::Lookup(dst.data(), source.data(), position.data(), n, 7);
            EXPECT_EQ(dst.front(), row.expected) << row.what << ", reference";
        }
}

TEST_P(Cycles, LookUpNothingWithoutBlocksOrMask)
{
    const std::vector<float> source(10, 1.0f);
    std::vector<float> dst(20, 0.5f);
    Lookup(nullptr, source.data(), dst.data(), 20, 7);
    Lookup(dst.data(), nullptr, dst.data(), 20, 7);
    Lookup(dst.data(), source.data(), nullptr, 20, 7);
    for (const int mask : {-1, INT_MIN, MaxLookupMask + 1, INT_MAX})
        Lookup(dst.data(), source.data(), dst.data(), 20, mask);
    EXPECT_EQ(dst, std::vector<float>(20, 0.5f));
}

std::vector<float> Resampled(const std::vector<float>& source, int n)
{
    GuardedBlockT<float> dst(n, 1, 3);
    Resample(dst.Data(), n, source.data(), static_cast<int>(source.size()));
    EXPECT_TRUE(dst.GuardsAreIntact()) << n << " of " << source.size();
    return {dst.Data(), dst.Data() + std::max(n, 0)};
}

TEST(CyclesResample, ReadsAtEvenDistances)
{
    struct Case
    {
        const char* what;
        std::vector<float> source;
        std::vector<float> expected;
    };
    const Case cases[] = {
        {"twice as fine", {2, 4, 8}, {2, 3, 4, 6, 8}},
        {"half as fine", {2, 3, 4, 6, 8}, {2, 4, 8}},
        {"only the ends", {1, 9, 9, 3}, {1, 3}},
        {"the ends for the middle", {1, 9, 9, 3}, {1, 9, 3}},
        {"a copy", {1, 9, 2}, {1, 9, 2}},
        {"a single sample of many", {5, 9, 2}, {5}},
        {"many of a single sample", {5}, {5, 5, 5}},
    };
    for (const Case& row : cases)
        EXPECT_EQ(Resampled(row.source, static_cast<int>(row.expected.size())), row.expected)
            << row.what;
}

TEST(CyclesResample, FollowsALineAtAnyLength)
{
    for (const int k : {2, 3, 100, 4096})
    {
        // From -1 to 1, so the expected line does not depend on the lengths.
        std::vector<float> source(static_cast<std::size_t>(k));
        for (int i = 0; i < k; ++i)
            source[static_cast<std::size_t>(i)] = static_cast<float>(2.0 * i / (k - 1) - 1.0);
        for (const int n : {2, 3, 5, 4095, 8190, 1'000'003})
        {
            const std::vector<float> line = Resampled(source, n);
            double worst = 0.0;
            for (int i = 0; i < n; ++i)
                worst = std::max(
                    worst, std::abs(line[static_cast<std::size_t>(i)] - (2.0 * i / (n - 1) - 1.0)));
            EXPECT_LT(worst, 2e-7) << n << " of " << k;
            EXPECT_EQ(line.front(), -1.0f);
            EXPECT_EQ(line.back(), 1.0f);
        }
    }
}

TEST(CyclesResample, LeavesAllAsItIsWithoutSamples)
{
    const std::vector<float> source(20, 1.0f);
    std::vector<float> dst(20, 0.5f);
    Resample(nullptr, 20, source.data(), 20);
    Resample(dst.data(), 20, nullptr, 20);
    for (const int none : {0, -1, INT_MIN})
    {
        Resample(dst.data(), none, source.data(), 20);
        Resample(dst.data(), none, source.data(), 1);
        Resample(dst.data(), 20, source.data(), none);
    }
    EXPECT_EQ(dst, std::vector<float>(20, 0.5f));
}

} // namespace
