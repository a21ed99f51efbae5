#include "dsp/kernels/Levels.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cmath>
#include <limits>
#include <numeric>

namespace
{

using namespace kernels;

constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
constexpr float Infinity = std::numeric_limits<float>::infinity();

class Levels : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Levels);

TEST_P(Levels, AgreeWithTheReference)
{
    for (const int n : KernelLengths())
        for (const int offset : {0, 1, 2, 3})
        {
            const std::vector<float> all = Noise(offset + std::max(n, 0), 5);
            const float* block = all.data() + offset;
            EXPECT_EQ(PeakAbs(block, n), reference::PeakAbs(block, n)) << n;
            const double sum = reference::SumSquares(block, n);
            EXPECT_NEAR(SumSquares(block, n), sum, 1e-12 * sum) << n;
        }
}

TEST_P(Levels, FindThePeakWhereverItStands)
{
    for (const int n : {1, 2, 7, 16, 33, 100})
        for (int at = 0; at < n; ++at)
        {
            std::vector<float> block(static_cast<std::size_t>(n), 0.25f);
            block[static_cast<std::size_t>(at)] = -0.75f;
            EXPECT_EQ(PeakAbs(block.data(), n), 0.75f) << at << " of " << n;
            block[static_cast<std::size_t>(at)] = -Infinity;
            EXPECT_EQ(PeakAbs(block.data(), n), Infinity) << at << " of " << n;
        }
}

TEST_P(Levels, CountWhatIsNotANumberAsSilence)
{
    for (const int n : {1, 2, 7, 16, 33, 100})
    {
        std::vector<float> block(static_cast<std::size_t>(n), NotANumber);
        EXPECT_EQ(PeakAbs(block.data(), n), 0.0f) << n;
        // A loud sample must survive whether the bad ones come before it or after it.
        for (int at = 0; at < n; ++at)
        {
            block[static_cast<std::size_t>(at)] = -0.5f;
            EXPECT_EQ(PeakAbs(block.data(), n), 0.5f) << at << " of " << n;
            block[static_cast<std::size_t>(at)] = -NotANumber;
        }
    }
}

TEST_P(Levels, SumSquaresBeyondTheRangeOfFloat)
{
    const std::vector<float> loud(35, 1e30f);
    const double square = static_cast<double>(1e30f) * static_cast<double>(1e30f);
    EXPECT_NEAR(SumSquares(loud.data(), 35) / square, 35.0, 35.0 * 1e-12);
}

TEST_P(Levels, SumTheSquaresOfWholeNumbersExactly)
{
    for (const int n : {1, 5, 16, 31, 1000})
    {
        std::vector<float> numbers(static_cast<std::size_t>(n));
        std::iota(numbers.begin(), numbers.end(), 1.0f);
        EXPECT_EQ(SumSquares(numbers.data(), n), n * (n + 1.0) * (2.0 * n + 1.0) / 6.0) << n;
    }
}

TEST_P(Levels, AreZeroOfNothing)
{
    const float sample = 1.0f;
    EXPECT_EQ(PeakAbs(nullptr, 20), 0.0f);
    EXPECT_EQ(SumSquares(nullptr, 20), 0.0);
    for (const int n : {0, -1, INT_MIN})
    {
        EXPECT_EQ(PeakAbs(&sample, n), 0.0f);
        EXPECT_EQ(SumSquares(&sample, n), 0.0);
    }
}

} // namespace
