#include "dsp/kernels/Polynomials.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <array>
#include <cmath>

namespace
{

using namespace kernels;

class Polynomials : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Polynomials);

// None of them has few bits, so that a fused multiply and add would show.
constexpr std::array Coefficients{0.1, -0.7, 1.3, 0.45, -2.1, 0.9, -0.33};
constexpr int MaxOrder = static_cast<int>(Coefficients.size()) - 1;
constexpr double X = 0.21;
constexpr double DX = 1.0 / 8191.0;

template <typename T>
void ExpectBitsOfReferenceIn()
{
    for (int order = 0; order <= MaxOrder; ++order)
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 3})
            {
                GuardedBlockT<T> actual(n, offset, 3);
                GuardedBlockT<T> expected(n, offset, 3);
                Polynomial(actual.Data(), Coefficients.data(), order, X, DX, n);
                reference::Polynomial(expected.Data(), Coefficients.data(), order, X, DX, n);
                EXPECT_TRUE(actual.HasBitsOf(expected)) << "order " << order << ", length " << n;
                EXPECT_TRUE(actual.GuardsAreIntact()) << "order " << order << ", length " << n;
            }
}

TEST_P(Polynomials, GiveTheBitsOfTheReference)
{
    ExpectBitsOfReferenceIn<float>();
    ExpectBitsOfReferenceIn<double>();
}

TEST_P(Polynomials, AgreeWithTheSumOfPowers)
{
    constexpr int Length = 8192;
    std::vector<double> values(Length);
    std::vector<float> rounded(Length);
    for (const auto [x, dx] : {std::array{0.0, DX}, {-1.0, 3.0 * DX}, {5.0, -DX}, {0.3, 0.0}})
        for (int order = 0; order <= MaxOrder; ++order)
        {
            Polynomial(values.data(), Coefficients.data(), order, x, dx, Length);
            Polynomial(rounded.data(), Coefficients.data(), order, x, dx, Length);
            double worst = 0.0; // in shares of what rounding may do
            for (std::size_t i = 0; i < Length; ++i)
            {
                const long double u = static_cast<long double>(x) +
                                      static_cast<long double>(i) * static_cast<long double>(dx);
                long double sum = 0.0L;
                long double size = 0.0L;
                for (int power = 0; power <= order; ++power)
                {
                    const long double term = Coefficients[static_cast<std::size_t>(power)] *
                                             std::pow(u, static_cast<long double>(power));
                    sum += term;
                    size += std::abs(term);
                }
                // Two roundings for each power, and as many again for what u itself is off by.
                const long double allowed = (4.0L * order + 1.0L) * 0x1p-52L * size;
                worst = std::max(worst, static_cast<double>(std::abs(values[i] - sum) / allowed));
                EXPECT_EQ(rounded[i], static_cast<float>(values[i])) << order << ", " << i;
            }
            EXPECT_LE(worst, 1.0) << "order " << order << " from " << x << " by " << dx;
        }
}

TEST_P(Polynomials, CountPowersUpwards)
{
    constexpr std::array Ascending{1.0, 10.0, 100.0};
    std::array<double, 3> values{};
    Polynomial(values.data(), Ascending.data(), 2, 2.0, 1.0, 3);
    EXPECT_EQ(values, (std::array{421.0, 931.0, 1641.0}));
    reference::Polynomial(values.data(), Ascending.data(), 1, 2.0, -1.0, 3);
    EXPECT_EQ(values, (std::array{21.0, 11.0, 1.0}));
}

TEST_P(Polynomials, LeaveAllAsItIsWithoutCoefficients)
{
    std::vector<float> block(20, 0.5f);
    std::vector<double> wide(20, 0.5);
    Polynomial(static_cast<float*>(nullptr), Coefficients.data(), 2, X, DX, 20);
    Polynomial(static_cast<double*>(nullptr), Coefficients.data(), 2, X, DX, 20);
    Polynomial(block.data(), nullptr, 2, X, DX, 20);
    Polynomial(wide.data(), nullptr, 2, X, DX, 20);
    for (const int order : {-1, INT_MIN})
    {
        Polynomial(block.data(), Coefficients.data(), order, X, DX, 20);
        Polynomial(wide.data(), Coefficients.data(), order, X, DX, 20);
    }
    EXPECT_EQ(block, std::vector<float>(20, 0.5f));
    EXPECT_EQ(wide, std::vector<double>(20, 0.5));
}

} // namespace
