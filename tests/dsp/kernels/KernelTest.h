#pragma once

#include <algorithm>
#include <bit>
#include <climits>
#include <cstdint>
#include <random>
#include <span>
#include <vector>

#include <gtest/gtest.h>
#include <hwy/tests/hwy_gtest.h>

/// A test that runs once for every instruction set that is compiled in and that this machine has.
class KernelTest : public hwy::TestWithParamTarget
{
};

#define INSTANTIATE_KERNEL_TEST(suite) HWY_TARGET_INSTANTIATE_TEST_SUITE_P(suite)

/// Every length from none to twice the widest vector, 16 floats, and some long ones; lengths below
/// none as well.
inline std::vector<int> KernelLengths()
{
    std::vector<int> lengths{INT_MIN, -17, -1, 64, 511, 512, 1003};
    for (int n = 0; n <= 33; ++n)
        lengths.push_back(n);
    return lengths;
}

/// Samples between -1 and 1, always the same for a @p seed. Of their own allocation, so that the
/// address sanitizer sees who reads beyond them.
inline std::vector<float> Noise(int n, unsigned seed)
{
    std::mt19937 random(seed);
    std::uniform_real_distribution<float> level(-1.0f, 1.0f);
    std::vector<float> samples(static_cast<std::size_t>(std::max(n, 0)));
    std::ranges::generate(samples, [&] { return level(random); });
    return samples;
}

/// @p n samples that stand @p offset samples off the alignment, with guards on both sides.
template <typename T>
class GuardedBlockT
{
public:
    GuardedBlockT(int n, int offset, unsigned seed)
        : all(GuardLength * 2 + static_cast<std::size_t>(offset + std::max(n, 0)), Guard),
          block(std::span(all).subspan(GuardLength + static_cast<std::size_t>(offset),
                                       static_cast<std::size_t>(std::max(n, 0))))
    {
        std::ranges::copy(Noise(n, seed), block.begin());
    }

    GuardedBlockT(const GuardedBlockT&) = delete;
    GuardedBlockT& operator=(const GuardedBlockT&) = delete;

    T* Data() { return block.data(); }

    bool GuardsAreIntact() const
    {
        const auto isGuard = [](T sample) { return sample == Guard; };
        const auto before = static_cast<std::size_t>(block.data() - all.data());
        return std::ranges::all_of(std::span(all).first(before), isGuard) &&
               std::ranges::all_of(std::span(all).subspan(before + block.size()), isGuard);
    }

    /// Compares bits, as == would take 0 for -0.
    bool HasBitsOf(const GuardedBlockT& other) const
    {
        return std::ranges::equal(std::as_bytes(std::span<const T>(block)),
                                  std::as_bytes(std::span<const T>(other.block)));
    }

private:
    static constexpr std::size_t GuardLength = 40; ///< samples, more than two vectors
    static constexpr T Guard = 12345;

    std::vector<T> all;
    std::span<T> block;
};

/// A kernel and its reference with all but blocks and length filled in.
struct KernelCase
{
    using Call = void (*)(float* dst, const float* a, const float* b, int n);

    const char* what;
    Call kernel;
    Call reference;
};

/// Runs both over all lengths and alignments and expects the same bits.
inline void ExpectBitsOfReference(std::span<const KernelCase> cases)
{
    for (const KernelCase& row : cases)
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 2, 3})
            {
                const std::vector<float> a = Noise(offset + std::max(n, 0), 1);
                const std::vector<float> b = Noise(offset + std::max(n, 0), 2);
                GuardedBlockT<float> actual(n, offset, 3);
                GuardedBlockT<float> expected(n, offset, 3);
                row.kernel(actual.Data(), a.data() + offset, b.data() + offset, n);
                row.reference(expected.Data(), a.data() + offset, b.data() + offset, n);
                EXPECT_TRUE(actual.HasBitsOf(expected))
                    << row.what << ", length " << n << ", offset " << offset;
                EXPECT_TRUE(actual.GuardsAreIntact())
                    << row.what << ", length " << n << ", offset " << offset;
            }
}
