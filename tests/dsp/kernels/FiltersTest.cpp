#include "dsp/kernels/Filters.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cstdint>

namespace
{

using namespace kernels;

class Filters : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Filters);

// One, two and a few to a vector, the strides of oversampling, and those beyond them.
constexpr int Strides[] = {1, 2, 3, 8, 16, 17, 40};

/// What the filter reads for @p n outputs and nothing more, so that the address sanitizer sees it.
int SourceLength(int n, int tapCount, int stride)
{
    return n > 0 ? (n - 1) * stride + tapCount : 0;
}

TEST_P(Filters, GiveTheBitsOfTheReference)
{
    for (const int stride : Strides)
        // The last is more than goes along a row at once.
        for (const int tapCount : {1, 2, 5, 16, 31, 128 * stride + 5})
            for (const int n : KernelLengths())
            {
                const int offset = std::max(n, 0) % 4;
                const std::vector<float> src = Noise(SourceLength(n, tapCount, stride), 1);
                const std::vector<float> taps = Noise(tapCount, 2);
                GuardedBlockT<float> actual(n, offset, 3);
                GuardedBlockT<float> expected(n, offset, 3);
                FIR(actual.Data(), src.data(), taps.data(), tapCount, n, stride);
                reference::FIR(expected.Data(), src.data(), taps.data(), tapCount, n, stride);
                EXPECT_TRUE(actual.HasBitsOf(expected))
                    << tapCount << " taps, stride " << stride << ", length " << n;
                EXPECT_TRUE(actual.GuardsAreIntact())
                    << tapCount << " taps, stride " << stride << ", length " << n;
            }
}

TEST_P(Filters, AddUpWholeNumbersExactly)
{
    constexpr int TapCount = 37;
    constexpr int Length = 131; // more than a block
    // Neither pattern repeats with the other or with a vector.
    const auto sample = [](int i) { return i * 7 % 23 - 11; };
    const auto tap = [](int j) { return j * 5 % 19 - 9; };
    for (const int stride : Strides)
    {
        std::vector<float> src(static_cast<std::size_t>(SourceLength(Length, TapCount, stride)));
        std::vector<float> taps(TapCount);
        for (std::size_t i = 0; i < src.size(); ++i)
            src[i] = static_cast<float>(sample(static_cast<int>(i)));
        for (std::size_t j = 0; j < taps.size(); ++j)
            taps[j] = static_cast<float>(tap(static_cast<int>(j)));

        std::vector<float> dst(Length);
        FIR(dst.data(), src.data(), taps.data(), TapCount, Length, stride);
        for (int i = 0; i < Length; ++i)
        {
            int sum = 0;
            for (int j = 0; j < TapCount; ++j)
                sum += sample(i * stride + j) * tap(j);
            EXPECT_EQ(dst[static_cast<std::size_t>(i)], static_cast<float>(sum))
                << i << ", stride " << stride;
        }
    }
}

TEST_P(Filters, WorkInPlace)
{
    constexpr int TapCount = 9;
    constexpr int Length = 300;
    const std::vector<float> taps = Noise(TapCount, 2);
    for (const int stride : Strides)
    {
        std::vector<float> block = Noise(SourceLength(Length, TapCount, stride), 1);
        std::vector<float> expected = block;
        FIR(expected.data(), block.data(), taps.data(), TapCount, Length, stride);
        FIR(block.data(), block.data(), taps.data(), TapCount, Length, stride);
        EXPECT_EQ(block, expected) << stride;
    }
}

TEST_P(Filters, LeaveAllAsItIsWithoutSamplesOrTaps)
{
    const std::vector<float> src(100, 1.0f);
    std::vector<float> dst(20, 0.5f);
    FIR(nullptr, src.data(), src.data(), 3, 20, 1);
    FIR(dst.data(), nullptr, src.data(), 3, 20, 1);
    FIR(dst.data(), src.data(), nullptr, 3, 20, 1);
    for (const int none : {0, -1, INT_MIN})
    {
        FIR(dst.data(), src.data(), src.data(), none, 20, 1);
        FIR(dst.data(), src.data(), src.data(), 3, 20, none);
    }
    EXPECT_EQ(dst, std::vector<float>(20, 0.5f));
}

} // namespace
