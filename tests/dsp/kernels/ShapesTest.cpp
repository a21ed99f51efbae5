#include "dsp/kernels/Shapes.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cmath>
#include <limits>

namespace
{

using namespace kernels;

constexpr double Infinity = std::numeric_limits<double>::infinity();
constexpr double NotANumber = std::numeric_limits<double>::quiet_NaN();

class Shapes : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Shapes);

/// As many positions, whole and broken, over the whole of a cycle and its guard.
std::vector<double> Positions(int n, int mask)
{
    std::vector<double> positions;
    for (const float level : Noise(n, 4))
    {
        const double position = (level + 1.0) * 0.5 * (mask + 1.0);
        positions.push_back(positions.size() % 3 == 0 ? std::round(position) : position);
    }
    return positions;
}

TEST_P(Shapes, LookUpWithTheBitsOfTheReference)
{
    for (const int mask : {0, 1, 7, 8191})
    {
        const std::vector<float> source = Noise(mask + 2, 5);
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 3})
            {
                const std::vector<double> position = Positions(n, mask);
                GuardedBlockT<float> actual(n, offset, 3);
                GuardedBlockT<float> expected(n, offset, 3);
                Lookup(actual.Data(), source.data(), position.data(), n, mask);
                reference::Lookup(expected.Data(), source.data(), position.data(), n, mask);
                EXPECT_TRUE(actual.HasBitsOf(expected)) << "mask " << mask << ", length " << n;
                EXPECT_TRUE(actual.GuardsAreIntact()) << "mask " << mask << ", length " << n;
            }
    }
}

TEST_P(Shapes, LookUpBetweenSamplesWhateverThePosition)
{
    struct Case
    {
        const char* what;
        double position;
        float expected;
    };
    constexpr Case Cases[] = {
        {"a quarter on", 0.25, 12.5f},
        {"half on", 5.5, 65.0f},
        {"the last sample", 7.0, 80.0f},
        {"a quarter from the last to the first", 7.25, 62.5f},
        {"so near the next sample that the fraction is 1", 3.0 - 0x1p-50, 40.0f},
        {"the sample behind the cycle", 8.0, 1000.0f},
        {"beyond", 8.5, 1000.0f},
        {"beyond all integers", 1e300, 1000.0f},
        {"infinitely far", Infinity, 1000.0f},
        {"before", -1.0, 10.0f},
        {"infinitely far before", -Infinity, 10.0f},
        {"not a number", NotANumber, 10.0f},
        {"nearly nothing", 5e-324, 10.0f},
    };
    const std::vector<float> source{10, 20, 30, 40, 50, 60, 70, 80, 1000};
    for (const Case& row : Cases)
        for (const int n : {1, 4, 16, 33})
        {
            const std::vector<double> position(static_cast<std::size_t>(n), row.position);
            std::vector<float> dst(position.size());
            Lookup(dst.data(), source.data(), position.data(), n, 7);
            EXPECT_EQ(dst, std::vector<float>(position.size(), row.expected)) << row.what;
            reference::Lookup(dst.data(), source.data(), position.data(), n, 7);
            EXPECT_EQ(dst.front(), row.expected) << row.what << ", reference";
        }
}

TEST_P(Shapes, AddStridedWithTheBitsOfTheReference)
{
    std::vector<int> lengths = KernelLengths();
    lengths.insert(lengths.end(), {8192, 8192 + 13}); // the cycle several times
    for (const int mask : {0, 1, 7, 8191})
    {
        const std::vector<float> source = Noise(mask + 1, 5);
        for (const int stride : {0, 1, 2, 3, 4, 5, 6, 7, 8, -6, 8192, INT_MIN, INT_MAX})
            for (const int first : {0, 5, 8191, -3, INT_MAX})
                for (const int n : lengths)
                {
                    GuardedBlockT<float> actual(n, n & 3, 3);
                    GuardedBlockT<float> expected(n, n & 3, 3);
                    AddStrided(actual.Data(), source.data(), first, stride, 0.7f, n, mask);
                    reference::AddStrided(expected.Data(), source.data(), first, stride, 0.7f, n,
                                          mask);
                    EXPECT_TRUE(actual.HasBitsOf(expected) && actual.GuardsAreIntact())
                        << "mask " << mask << ", " << n << " from " << first << " by " << stride;
                }
    }
}

TEST_P(Shapes, AddStridedAroundTheCycle)
{
    const std::vector<float> source{10, 20, 30, 40};
    struct Case
    {
        int first;
        int stride;
        std::vector<float> expected;
    };
    const Case cases[] = {
        {2, 3, {61, 41, 21, 81, 61}},
        {1, 2, {41, 81, 41, 81, 41}},
        {-1, -1, {81, 61, 41, 21, 81}},
    };
    for (const Case& row : cases)
        for (const auto add : {AddStrided, reference::AddStrided})
        {
            std::vector<float> dst(5, 1.0f);
            add(dst.data(), source.data(), row.first, row.stride, 2.0f, 5, 3);
            EXPECT_EQ(dst, row.expected) << row.first << " by " << row.stride;
        }
}

/// In the wider type of the processor, but for what f64 does to the base.
long double Power(double base, double exponent)
{
    return std::pow(static_cast<long double>(base), static_cast<long double>(exponent));
}

TEST_P(Shapes, RampWithinTheirPromise)
{
    for (const double step : {1.0 / 8191, 1.0 / 8192, 0.1, 7.0, 1e30})
        for (const double exponent : {1e-3, 1.0, 1.5, 2.0, std::sqrt(10.0), 10.0, 100.0})
            for (const int first : {0, 8100, 8191, INT_MAX})
                for (const int n : KernelLengths())
                {
                    GuardedBlockT<double> ramp(n, 1, 3);
                    PowerRamp(ramp.Data(), step, exponent, first, n);
                    long double worst = 0.0; // against what is promised
                    for (int i = 0; i < n; ++i)
                    {
                        const double base = (static_cast<double>(first) + i) * step;
                        const long double expected = Power(base, exponent);
                        if (expected >= std::numeric_limits<double>::max())
                            EXPECT_EQ(ramp.Data()[i], Infinity);
                        else
                            worst = std::max(worst,
                                             std::abs(ramp.Data()[i] - expected) /
                                                 (expected <= 1.0L ? 1e-15L : 3e-13L * expected));
                    }
                    EXPECT_LT(worst, 1.0L)
                        << step << "^" << exponent << ", " << n << " from " << first;
                    EXPECT_TRUE(ramp.GuardsAreIntact()) << n;
                }
}

TEST_P(Shapes, RampSoundlyAtHostileSteps)
{
    constexpr double Smallest = 5e-324;
    struct Case
    {
        const char* what;
        double step;
        double exponent;
        std::vector<double> expected; ///< from i = 0 on
    };
    const Case cases[] = {
        {"steep", 0.25, 1e300, {0, 0, 0, 0, 1, Infinity}},
        {"infinitely steep", 0.25, Infinity, {0, 0, 0, 0, 1, Infinity}},
        {"just below 1", 1.0 - 0x1p-53, 1e300, {0, 0, Infinity}},
        {"flat", 0.25, 1e-300, {0, 1, 1, 1, 1, 1}},
        {"the flattest", 1e300, Smallest, {0, 1, 1}},
        {"into infinity", 1e308, 1.0, {0, 1e308, Infinity, Infinity}},
        {"out of nothing", Smallest, 1.0, {0, Smallest, 2 * Smallest}},
        {"into nothing", 1e-200, 10.0, {0, 0, 0, 0, 0}},
        {"infinite", Infinity, 1.0, {0, Infinity, Infinity}},
    };
    for (const Case& row : cases)
    {
        // The rest of a long ramp has to be sound as well, and whole vectors as good as single
        // ones.
        std::vector<double> ramp(64, -1.0);
        PowerRamp(ramp.data(), row.step, row.exponent, 0, 64);
        for (std::size_t i = 0; i < row.expected.size(); ++i)
        {
            EXPECT_DOUBLE_EQ(ramp[i], row.expected[i]) << row.what << " at " << i;
            double single = -1.0;
            PowerRamp(&single, row.step, row.exponent, static_cast<int>(i), 1);
            EXPECT_DOUBLE_EQ(single, row.expected[i]) << row.what << " at " << i << " alone";
        }
        for (std::size_t i = 1; i < ramp.size(); ++i)
            EXPECT_GE(ramp[i], ramp[i - 1]) << row.what << " at " << i;
    }
}

TEST(ShapesOnAllProcessors, RampWithTheSameBits)
{
    std::vector<double> expected;
    for (const std::int64_t target : hwy::SupportedAndGeneratedTargets())
    {
        std::vector<double> ramp(1003);
        hwy::SetSupportedTargetsForTest(target);
        PowerRamp(ramp.data(), 1.0 / 700, 2.7, 0, 1003);
        hwy::SetSupportedTargetsForTest(0);
        if (expected.empty())
            expected = ramp;
        EXPECT_EQ(ramp, expected) << hwy::TargetName(target);
    }
}

TEST_P(Shapes, LeaveAllAsItIsWithoutBlocksOrSense)
{
    const std::vector<float> source(10, 1.0f);
    std::vector<float> dst(20, 0.5f);
    std::vector<double> wide(20, 0.5);
    Lookup(nullptr, source.data(), wide.data(), 20, 7);
    Lookup(dst.data(), nullptr, wide.data(), 20, 7);
    Lookup(dst.data(), source.data(), nullptr, 20, 7);
    AddStrided(nullptr, source.data(), 0, 1, 1.0f, 20, 7);
    AddStrided(dst.data(), nullptr, 0, 1, 1.0f, 20, 7);
    PowerRamp(nullptr, 1.0, 1.0, 0, 20);
    for (const int mask : {-1, INT_MIN})
    {
        Lookup(dst.data(), source.data(), wide.data(), 20, mask);
        AddStrided(dst.data(), source.data(), 0, 1, 1.0f, 20, mask);
    }
    Lookup(dst.data(), source.data(), wide.data(), 20, INT_MAX);
    for (const double bad : {0.0, -1.0, -Infinity, NotANumber})
    {
        PowerRamp(wide.data(), bad, 1.0, 0, 20);
        PowerRamp(wide.data(), 1.0, bad, 0, 20);
    }
    PowerRamp(wide.data(), 1.0, 1.0, -1, 20);
    EXPECT_EQ(dst, std::vector<float>(20, 0.5f));
    EXPECT_EQ(wide, std::vector<double>(20, 0.5));
}

} // namespace
