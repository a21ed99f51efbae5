#include "dsp/kernels/RealFFT.h"

#include "foundation/threads/MException.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cmath>
#include <numbers>
#include <utility>

namespace
{

using namespace kernels;

class RealFFTs : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(RealFFTs);

constexpr double TwoPi = 2.0 * std::numbers::pi;

std::vector<Complex> Forward(RealFFT& fft, const std::vector<float>& time)
{
    std::vector<Complex> spectrum(time.size() / 2 + 1);
    fft.Forward(time.data(), spectrum.data());
    return spectrum;
}

std::vector<float> Inverse(RealFFT& fft, const std::vector<Complex>& spectrum)
{
    std::vector<float> time(2 * (spectrum.size() - 1));
    fft.Inverse(spectrum.data(), time.data());
    return time;
}

/// The largest distance between @p spectrum and @p expected(k), in shares of the root of the size,
/// which is how large the numbers of noise are.
template <class Expected>
double WorstDifference(const std::vector<Complex>& spectrum, Expected expected)
{
    double worst = 0.0;
    for (std::size_t k = 0; k < spectrum.size(); ++k)
        worst = std::max(worst, std::abs(std::complex<double>(spectrum[k]) - expected(k)));
    return worst / std::sqrt(2.0 * static_cast<double>(spectrum.size() - 1));
}

TEST_P(RealFFTs, AreTheSumOfTheirDefinition)
{
    for (const int size : {16, 32, 64, 256, 1024})
    {
        RealFFT fft(size);
        const std::vector<float> time = Noise(size, 1);
        const auto direct = [&](std::size_t k)
        {
            std::complex<double> sum;
            for (std::size_t i = 0; i < time.size(); ++i)
                sum += std::polar<double>(time[i], -TwoPi * static_cast<double>(i * k) / size);
            return sum;
        };
        EXPECT_LT(WorstDifference(Forward(fft, time), direct), 1e-6) << size;
    }
}

TEST_P(RealFFTs, KeepEnergyAndComeBackAtAllSizes)
{
    for (int size = RealFFT::MinSize; size <= RealFFT::MaxSize; size *= 2)
    {
        RealFFT fft(size);
        EXPECT_EQ(fft.GetSize(), size);
        const std::vector<float> time = Noise(size, 1);
        const std::vector<Complex> spectrum = Forward(fft, time);

        double energy = 0.0;
        for (const float sample : time)
            energy += static_cast<double>(sample) * sample;
        // All numbers but the first and the last stand for themselves and their conjugate.
        double spectralEnergy = 0.0;
        for (std::size_t k = 0; k < spectrum.size(); ++k)
            spectralEnergy += (k == 0 || k == spectrum.size() - 1 ? 1.0 : 2.0) *
                              std::norm(std::complex<double>(spectrum[k]));
        EXPECT_NEAR(spectralEnergy / size / energy, 1.0, 1e-5) << size;

        const std::vector<float> back = Inverse(fft, spectrum);
        double worst = 0.0;
        for (std::size_t i = 0; i < time.size(); ++i)
            worst = std::max<double>(worst, std::abs(back[i] - time[i]));
        EXPECT_LT(worst, 2e-6) << size;
    }
}

TEST_P(RealFFTs, TurnADelayIntoAPhase)
{
    for (int size = RealFFT::MinSize; size <= RealFFT::MaxSize; size *= 8)
        for (const int delay : {0, 1, size / 4, size - 3})
        {
            RealFFT fft(size);
            std::vector<float> time(static_cast<std::size_t>(size));
            time[static_cast<std::size_t>(delay)] = 1.0f;
            const auto phase = [&](std::size_t k)
            { return std::polar(1.0, -TwoPi * delay * static_cast<double>(k) / size); };
            EXPECT_LT(WorstDifference(Forward(fft, time), phase), 1e-6) << delay << " of " << size;
        }
}

TEST_P(RealFFTs, WriteWhatTheySayAndNothingElse)
{
    constexpr int Size = 64;
    RealFFT fft(Size);
    GuardedBlockT<float> time(Size, 1, 1);
    GuardedBlockT<float> spectrum(Size + 2, 1, 2);
    auto* numbers = reinterpret_cast<Complex*>(spectrum.Data());
    fft.Forward(time.Data(), numbers);
    EXPECT_TRUE(spectrum.GuardsAreIntact());
    fft.Inverse(numbers, time.Data());
    EXPECT_TRUE(time.GuardsAreIntact());

    const std::vector<float> before(time.Data(), time.Data() + Size);
    numbers[0].imag(5.0f);
    numbers[Size / 2].imag(-5.0f);
    fft.Inverse(numbers, time.Data());
    EXPECT_EQ(std::vector<float>(time.Data(), time.Data() + Size), before)
        << "no real block has such imaginary parts";

    fft.Forward(nullptr, numbers);
    fft.Forward(time.Data(), nullptr);
    fft.Inverse(nullptr, time.Data());
    fft.Inverse(numbers, nullptr);
    EXPECT_EQ(std::vector<float>(time.Data(), time.Data() + Size), before);
    EXPECT_EQ(numbers[0].imag(), 5.0f);
}

TEST(RealFFT, HasTheSameBitsOnAllProcessors)
{
    for (const int size : {16, 32, 1024, 2048})
    {
        RealFFT fft(size);
        std::vector<Complex> expected;
        std::vector<float> expectedTime;
        for (const std::int64_t target : hwy::SupportedAndGeneratedTargets())
        {
            hwy::SetSupportedTargetsForTest(target);
            const std::vector<Complex> spectrum = Forward(fft, Noise(size, 1));
            const std::vector<float> time = Inverse(fft, spectrum);
            hwy::SetSupportedTargetsForTest(0);
            if (expected.empty())
            {
                expected = spectrum;
                expectedTime = time;
            }
            EXPECT_EQ(spectrum, expected) << hwy::TargetName(target) << ", size " << size;
            EXPECT_EQ(time, expectedTime) << hwy::TargetName(target) << ", size " << size;
        }
    }
}

TEST(RealFFT, WorksOnAfterAMove)
{
    RealFFT first(16);
    RealFFT second(32);
    second = std::move(first);
    EXPECT_EQ(second.GetSize(), 16);
    const std::vector<float> time = Noise(16, 1);
    EXPECT_NEAR(Inverse(second, Forward(second, time))[5], time[5], 1e-6);
}

TEST(RealFFT, RefusesOtherSizes)
{
    for (const int size : {INT_MIN, -16, 0, 1, 8, 15, 17, 24, 96, 65535, 131072, INT_MAX})
        try
        {
            const RealFFT fft(size);
            ADD_FAILURE() << size;
        }
        catch (const MException& exception)
        {
            EXPECT_EQ(exception.text, "Invalid transform size.");
            EXPECT_EQ(exception.code, 2);
        }
}

} // namespace
