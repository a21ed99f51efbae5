#include "dsp/kernels/Spectra.h"

#include "dsp/kernels/RealFFT.h"
#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cmath>

namespace
{

using namespace kernels;

class Spectra : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Spectra);

/// @p n complex numbers with guards on both sides.
class GuardedSpectrum
{
public:
    GuardedSpectrum(int n, int offset, unsigned seed) : parts(2 * std::max(n, 0), offset, seed) {}

    Complex* Data() { return reinterpret_cast<Complex*>(parts.Data()); }

    void ExpectBitsOf(const GuardedSpectrum& expected, const char* what, int n) const
    {
        EXPECT_TRUE(parts.HasBitsOf(expected.parts)) << what << ", length " << n;
        EXPECT_TRUE(parts.GuardsAreIntact()) << what << ", length " << n;
    }

private:
    GuardedBlockT<float> parts;
};

TEST_P(Spectra, HaveTheBitsOfTheReference)
{
    for (const int n : KernelLengths())
        for (const int offset : {0, 1, 2, 3})
        {
            GuardedSpectrum a(n, offset, 1);
            GuardedSpectrum b(n, 0, 2);
            GuardedSpectrum actual(n, offset, 3);
            GuardedSpectrum expected(n, offset, 3);
            MultiplySpectra(actual.Data(), a.Data(), b.Data(), n);
            reference::MultiplySpectra(expected.Data(), a.Data(), b.Data(), n);
            actual.ExpectBitsOf(expected, "MultiplySpectra", n);

            MultiplySpectra(a.Data(), a.Data(), b.Data(), n);
            a.ExpectBitsOf(expected, "MultiplySpectra into the first", n);

            PowerSpectrum(actual.Data(), n);
            reference::PowerSpectrum(expected.Data(), n);
            actual.ExpectBitsOf(expected, "PowerSpectrum", n);
        }
}

TEST_P(Spectra, MultiplyToACircularConvolution)
{
    constexpr int Size = 128;
    RealFFT fft(Size);
    const std::vector<float> a = Noise(Size, 1);
    const std::vector<float> b = Noise(Size, 2);
    std::vector<Complex> spectrumA(Size / 2 + 1);
    std::vector<Complex> spectrumB(Size / 2 + 1);
    fft.Forward(a.data(), spectrumA.data());
    fft.Forward(b.data(), spectrumB.data());
    MultiplySpectra(spectrumB.data(), spectrumA.data(), spectrumB.data(), Size / 2 + 1);
    std::vector<float> product(Size);
    fft.Inverse(spectrumB.data(), product.data());

    // A block with itself backwards: its power spectrum.
    PowerSpectrum(spectrumA.data(), Size / 2 + 1);
    std::vector<float> correlation(Size);
    fft.Inverse(spectrumA.data(), correlation.data());

    for (std::size_t i = 0; i < Size; ++i)
    {
        double expectedProduct = 0.0;
        double expectedCorrelation = 0.0;
        for (std::size_t j = 0; j < Size; ++j)
        {
            expectedProduct += static_cast<double>(a[j]) * b[(i + Size - j) % Size];
            expectedCorrelation += static_cast<double>(a[j]) * a[(i + j) % Size];
        }
        EXPECT_NEAR(product[i], expectedProduct, 1e-5) << i;
        EXPECT_NEAR(correlation[i], expectedCorrelation, 1e-5) << i;
    }
}

TEST_P(Spectra, IgnoreNullPointers)
{
    std::vector<Complex> block(20, Complex(0.5f, 0.25f));
    MultiplySpectra(nullptr, block.data(), block.data(), 20);
    MultiplySpectra(block.data(), nullptr, block.data(), 20);
    MultiplySpectra(block.data(), block.data(), nullptr, 20);
    PowerSpectrum(nullptr, 20);
    EXPECT_EQ(block, std::vector<Complex>(20, Complex(0.5f, 0.25f)));
}

} // namespace
