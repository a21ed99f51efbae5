#include "shell/MUpsampler.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <cstddef>
#include <limits>
#include <numbers>
#include <random>
#include <vector>

#include <gtest/gtest.h>

namespace
{

constexpr int Rate = 48000; ///< Hz
constexpr double Pi = std::numbers::pi;

MUpsampler Make(int factor, bool isHigh)
{
    MUpsampler upsampler;
    upsampler.Configure(Rate, factor, isHigh, 4096);
    return upsampler;
}

std::vector<float> Impulse(int n)
{
    std::vector<float> samples(static_cast<std::size_t>(n));
    samples.front() = 1.0f;
    return samples;
}

std::vector<float> Noise(int n)
{
    std::mt19937 random(1);
    std::uniform_real_distribution<float> level(-1.0f, 1.0f);
    std::vector<float> samples(static_cast<std::size_t>(n));
    std::ranges::generate(samples, [&] { return level(random); });
    return samples;
}

std::vector<float> Up(MUpsampler& upsampler, const std::vector<float>& input, int factor)
{
    const int n = static_cast<int>(input.size());
    const float* samples = upsampler.Upsample(input.data(), n);
    return {samples, samples + std::ptrdiff_t{n} * factor};
}

/// Up and down in blocks of @p block host samples; what came up goes down.
std::vector<float> UpAndDown(MUpsampler& upsampler, const std::vector<float>& input, int factor,
                             int block)
{
    const int n = static_cast<int>(input.size());
    std::vector<float> output(input.size());
    for (int i = 0; i < n; i += block)
    {
        const int count = std::min(block, n - i);
        const float* samples = upsampler.Upsample(input.data() + i, count);
        std::copy_n(samples, count * factor, upsampler.GetOutput());
        upsampler.Downsample(output.data() + i, count, false);
    }
    return output;
}

/// The impulse response of the way down, at the high rate and back to front: a run for each place
/// that an impulse may have within a host sample.
std::vector<float> DownResponse(int factor, int n)
{
    std::vector<float> response(static_cast<std::size_t>(n * factor));
    for (int place = 0; place < factor; ++place)
    {
        MUpsampler upsampler = Make(factor, true);
        std::vector<float> output(static_cast<std::size_t>(n));
        std::fill_n(upsampler.GetOutput(), n * factor, 0.0f);
        upsampler.GetOutput()[place] = 1.0f;
        upsampler.Downsample(output.data(), n, false);
        for (int i = 0; i < n; ++i)
            response[static_cast<std::size_t>(i * factor + factor - 1 - place)] =
                output[static_cast<std::size_t>(i)];
    }
    response.erase(response.begin(),
                   std::ranges::find_if(response, [](float x) { return x != 0.0f; }));
    return response;
}

/// In dB, at @p frequency as a share of the host's rate.
double GainDb(const std::vector<float>& response, int factor, double frequency)
{
    std::complex<double> sum = 0.0;
    for (std::size_t k = 0; k < response.size(); ++k)
        sum += std::polar(static_cast<double>(response[k]),
                          -2.0 * Pi * frequency * static_cast<double>(k) / factor);
    return 20.0 * std::log10(std::abs(sum));
}

void ExpectLowPass(const std::vector<float>& response, int factor, const char* way)
{
    constexpr double Step = 0.0031; // finer than the ripples, which are 1 / 128 apart
    const double unity = GainDb(response, factor, 0.0);
    double ripple = 0.0;
    for (double f = Step; f <= 0.45; f += Step)
        ripple = std::max(ripple, std::abs(GainDb(response, factor, f) - unity));
    double stop = -999.0;
    for (double f = 0.55; f <= factor / 2.0; f += Step)
        stop = std::max(stop, GainDb(response, factor, f) - unity);
    EXPECT_LT(ripple, 0.001) << way << ' ' << factor;
    EXPECT_LT(stop, -98.0) << way << ' ' << factor;
    EXPECT_NEAR(GainDb(response, factor, 0.5) - unity, -6.02, 0.01) << way << ' ' << factor;
}

TEST(MUpsampler, IsALowPassOnBothWays)
{
    for (const int factor : {2, 3, 4, 6, 9, 13, 15, 16})
    {
        MUpsampler upsampler = Make(factor, true);
        const std::vector<float> up = Up(upsampler, Impulse(100), factor);
        EXPECT_NEAR(GainDb(up, factor, 0.0), 20.0 * std::log10(factor), 1e-5);
        ExpectLowPass(up, factor, "up");
        const int length = MUpsampler::GetLatency(factor, true) + 100;
        const std::vector<float> down = DownResponse(factor, length);
        EXPECT_NEAR(GainDb(down, factor, 0.0), 0.0, 1e-5);
        ExpectLowPass(down, factor, "down");
    }
}

TEST(MUpsampler, BringsATonePlainly)
{
    // The tone itself at the high rate, late by the middle of the impulse response.
    constexpr double Frequency = 0.437;
    for (const int factor : {2, 5, 12, 16})
    {
        MUpsampler upsampler = Make(factor, true);
        const std::vector<float> response = Up(upsampler, Impulse(100), factor);
        const auto delay = std::ranges::max_element(response) - response.begin();
        std::vector<float> tone(1000);
        for (std::size_t i = 0; i < tone.size(); ++i)
            tone[i] = static_cast<float>(std::sin(2.0 * Pi * Frequency * static_cast<double>(i)));
        upsampler.Reset();
        const std::vector<float> out = Up(upsampler, tone, factor);
        double worst = 0.0;
        for (std::size_t k = out.size() / 2; k < out.size(); ++k)
        {
            const double t = (static_cast<double>(k) - static_cast<double>(delay)) / factor;
            worst = std::max(worst, std::abs(out[k] - std::sin(2.0 * Pi * Frequency * t)));
        }
        EXPECT_LT(20.0 * std::log10(worst), -96.0) << factor;
    }
}

TEST(MUpsampler, TakesTheLatencyThatItTells)
{
    EXPECT_EQ(MUpsampler::GetLatency(1, true), 0);
    EXPECT_EQ(MUpsampler::GetLatency(7, true), 877);
    EXPECT_EQ(MUpsampler::GetLatency(16, false), 96);

    MUpsampler upsampler; // one for all, so that what is left of a setting shows
    for (const bool isHigh : {true, false})
        for (int factor = 2; factor <= MUpsampler::MaxFactor; ++factor)
        {
            upsampler.Configure(Rate, factor, isHigh, 64);
            const int latency = MUpsampler::GetLatency(factor, isHigh);
            const std::vector<float> out =
                UpAndDown(upsampler, Impulse(2 * latency + 1), factor, 64);
            const auto middle = static_cast<std::size_t>(latency);
            for (std::size_t i = 1; i <= middle; ++i)
                ASSERT_NEAR(out[middle - i], out[middle + i], 1e-7)
                    << factor << (isHigh ? " high" : " standard") << ", off by " << i;
            // Twice through the filters: the area under their squared response.
            EXPECT_NEAR(out[middle], isHigh ? 0.97 : 1.0, isHigh ? 0.02 : 0.0) << factor;
        }
}

TEST(MUpsampler, DrawsTheCubicInStandardQuality)
{
    const std::vector<float> noise = Noise(50);
    for (const int factor : {2, 3, 7, 16})
    {
        MUpsampler upsampler = Make(factor, false);
        const std::vector<float> out = Up(upsampler, noise, factor);
        upsampler.Reset();
        std::vector<float> ramp(50);
        for (std::size_t i = 0; i < ramp.size(); ++i)
            ramp[i] = static_cast<float>(i);
        const std::vector<float> line = Up(upsampler, ramp, factor);
        for (std::size_t k = 3 * static_cast<std::size_t>(factor); k < out.size(); ++k)
        {
            const std::size_t newest = k / static_cast<std::size_t>(factor);
            const double a = noise[newest - 3];
            const double c = noise[newest - 2];
            const double b = noise[newest - 1];
            const double x = noise[newest];
            const double t = static_cast<double>(k) / factor - static_cast<double>(newest);
            const double expected =
                ((((c - b) * 3 - a + x) * 0.5 * t + (2 * b + a - (5 * c + x) * 0.5)) * t +
                 (b - a) * 0.5) *
                    t +
                c;
            EXPECT_NEAR(out[k], expected, 1e-6) << factor << ", " << k;
            EXPECT_NEAR(line[k], static_cast<double>(k) / factor - 2.0, 1e-5) << factor;
        }
    }
}

TEST(MUpsampler, DoesNotCareForBlocks)
{
    std::vector<float> input = Noise(3000);
    std::fill(input.begin() + 900, input.begin() + 2200, 0.0f); // long enough to come to rest
    for (const bool isHigh : {true, false})
        for (const int factor : {2, 4, 13, 15, 16})
        {
            MUpsampler whole = Make(factor, isHigh);
            const std::vector<float> expected = UpAndDown(whole, input, factor, 3000);
            for (const int block : {1, 3, 4, 64, 1000})
            {
                MUpsampler upsampler = Make(factor, isHigh);
                EXPECT_EQ(UpAndDown(upsampler, input, factor, block), expected)
                    << factor << (isHigh ? " high" : " standard") << ", blocks of " << block;
            }
        }
}

TEST(MUpsampler, AddsToWhatIsThere)
{
    MUpsampler replacing = Make(4, false);
    MUpsampler adding = Make(4, false);
    const std::vector<float> noise = Noise(4 * 1000);
    std::vector<float> expected(1000);
    std::vector<float> actual(1000, 0.25f);
    std::ranges::copy(noise, replacing.GetOutput());
    std::ranges::copy(noise, adding.GetOutput());
    replacing.Downsample(expected.data(), 1000, false);
    adding.Downsample(actual.data(), 1000, true);
    for (std::size_t i = 0; i < 1000; ++i)
        EXPECT_EQ(actual[i], 0.25f + expected[i]);
}

TEST(MUpsampler, ComesToRestInSilenceAndWakesUp)
{
    constexpr float NaN = std::numeric_limits<float>::quiet_NaN();
    const std::vector<float> noise = Noise(200);
    for (const bool isHigh : {true, false})
    {
        MUpsampler fresh = Make(4, isHigh);
        MUpsampler upsampler = Make(4, isHigh);
        const std::vector<float> expected = Up(fresh, noise, 4);
        struct Row
        {
            const char* what;
            std::vector<float> before;
        };
        for (const Row& row : {Row{"noise", noise}, Row{"not a number", std::vector(200, NaN)}})
        {
            Up(upsampler, row.before, 4);
            upsampler.Upsample(nullptr, 100);
            const float* rest = upsampler.Upsample(nullptr, 100);
            EXPECT_TRUE(std::all_of(rest, rest + 400, [](float x) { return x == 0.0f; }))
                << row.what;
            EXPECT_EQ(Up(upsampler, noise, 4), expected) << row.what;
            // As the shell hands silence over: with a constant that keeps denormals away.
            Up(upsampler, std::vector<float>(200, 1e-15f), 4);
            EXPECT_EQ(Up(upsampler, std::vector<float>(200, 1e-15f), 4), std::vector<float>(800));
        }
    }
}

TEST(MUpsampler, ForgetsThePast)
{
    MUpsampler upsampler = Make(6, true);
    UpAndDown(upsampler, Noise(3000), 6, 500);
    upsampler.Configure(Rate, 6, true, 8192); // longer blocks alone change nothing
    std::vector<float> out(1000);
    upsampler.Downsample(out.data(), 1000, false);
    EXPECT_NE(out, std::vector<float>(1000));

    upsampler.Reset();
    EXPECT_EQ(UpAndDown(upsampler, std::vector<float>(2000), 6, 500), std::vector<float>(2000));
}

} // namespace
