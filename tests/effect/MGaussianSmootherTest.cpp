#include "effect/MGaussianSmoother.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>
#include <random>

#include <gtest/gtest.h>

namespace
{

constexpr int Length = MGaussianSmoother::CycleLength;
using Cycle = std::array<float, Length>;

Cycle Noise()
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> level(-1.0f, 1.0f);
    Cycle cycle{};
    std::ranges::generate(cycle, [&] { return level(random); });
    return cycle;
}

Cycle Cosine(int harmonic)
{
    Cycle cycle{};
    for (int i = 0; i < Length; ++i)
        cycle[static_cast<std::size_t>(i)] =
            static_cast<float>(std::cos(2.0 * std::numbers::pi * harmonic * i / Length));
    return cycle;
}

/// The weight of the sample @p k samples away, against 1 for the centre.
double Weight(int k, double request)
{
    return k == 0 ? 1.0 : std::exp(-std::pow(k * 2.0 / request, 2.0));
}

/// Of the samples @p k from -halfWidth to halfWidth, @p value(k) weighted.
template <class Value>
double WeightedMean(int halfWidth, double request, Value value)
{
    double sum = 0.0;
    double weights = 0.0;
    for (int k = -halfWidth; k <= halfWidth; ++k)
    {
        sum += Weight(k, request) * value(k);
        weights += Weight(k, request);
    }
    return sum / weights;
}

template <class Expected>
double WorstDifference(const Cycle& actual, Expected expected)
{
    double worst = 0.0;
    for (int i = 0; i < Length; ++i)
        worst =
            std::max<double>(worst, std::abs(actual[static_cast<std::size_t>(i)] - expected(i)));
    return worst;
}

struct SmoothingCase
{
    const char* what;
    double request;
    int halfWidth;
};

constexpr SmoothingCase Cases[] = {
    {"full", 256.0, 256},
    {"first kernel through the FFT", 30.5, 31},
    {"last direct kernel", 30.0, 30},
    {"just behind the last direct kernel", 30.0 + 1e-9, 31},
    {"odd", 99.3, 100},
    {"a fraction of a sample rounds up", 0.9, 1},
    {"none", 0.0, 0},
    {"so narrow that the neighbours vanish", 1e-300, 1},
};

TEST(MGaussianSmoother, ConvolvesAroundTheCycle)
{
    MGaussianSmoother smoother; // one for all rows, so that a stale kernel shows
    const Cycle noise = Noise();
    for (const SmoothingCase& row : Cases)
    {
        smoother.SetHalfWidth(row.request);
        EXPECT_EQ(smoother.GetHalfWidth(), row.halfWidth) << row.what;
        for (const char* turn : {"first", "second"}) // with the spectrum of the kernel at hand
        {
            Cycle cycle = noise;
            smoother.Process(cycle);
            const auto expected = [&](int i)
            {
                return WeightedMean(row.halfWidth, row.request,
                                    [&](int k)
                                    { return noise[static_cast<std::size_t>(i + k) % Length]; });
            };
            EXPECT_LT(WorstDifference(cycle, expected), 2e-6) << row.what << ", " << turn;
        }
    }
}

TEST(MGaussianSmoother, ScalesEachHarmonicByTheGainOfTheKernel)
{
    MGaussianSmoother smoother;
    for (const SmoothingCase& row : Cases)
    {
        smoother.SetHalfWidth(row.request);
        for (const int harmonic : {0, 1, 7, 64, Length / 2})
        {
            const double angle = 2.0 * std::numbers::pi * harmonic / Length;
            const double gain = WeightedMean(row.halfWidth, row.request,
                                             [=](int k) { return std::cos(angle * k); });
            Cycle cycle = Cosine(harmonic);
            smoother.Process(cycle);
            EXPECT_LT(WorstDifference(cycle, [=](int i) { return gain * std::cos(angle * i); }),
                      2e-6)
                << row.what << ", harmonic " << harmonic;
        }
    }
}

TEST(MGaussianSmoother, KeepsTheKernelWhileTheWidthIsTheSame)
{
    struct Case
    {
        const char* what;
        double first;
        double second;
        double effective;
    };
    constexpr Case Requests[] = {
        {"narrow", 2.2, 3.0, 2.2},
        {"wide", 40.9, 40.1, 40.9},
        {"as constructed", 0.6, 0.4, 1.0},
        {"another width", 2.2, 3.1, 3.1},
    };
    for (const Case& row : Requests)
    {
        MGaussianSmoother smoother;
        Cycle impulse{};
        smoother.SetHalfWidth(row.first);
        smoother.SetHalfWidth(row.second);
        impulse[0] = 1.0f;
        smoother.Process(impulse);
        EXPECT_NEAR(impulse[1] / impulse[0], Weight(1, row.effective), 1e-5) << row.what;
        EXPECT_EQ(impulse[1], impulse[Length - 1]) << row.what;
    }
}

TEST(MGaussianSmoother, BringsRequestsIntoItsRange)
{
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    for (const auto& [request, halfWidth] : {std::pair(256.1, 256),
                                             {1e300, 256},
                                             {Infinity, 256},
                                             {-0.5, 0},
                                             {-Infinity, 0},
                                             {std::numeric_limits<double>::quiet_NaN(), 0},
                                             {5e-324, 1}})
    {
        MGaussianSmoother smoother;
        EXPECT_EQ(smoother.GetHalfWidth(), 1);
        smoother.SetHalfWidth(request);
        EXPECT_EQ(smoother.GetHalfWidth(), halfWidth) << request;
        Cycle constant{};
        constant.fill(0.7f);
        smoother.Process(constant);
        EXPECT_LT(WorstDifference(constant, [](int) { return 0.7f; }), 1e-6) << request;
    }
}

} // namespace
