#include "dsp/kernels/Polyphase.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

namespace
{

using namespace kernels;

class Polyphase : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Polyphase);

constexpr int TapCounts[] = {1, 2, 14, 16, 17, 40, 63, 64};

struct FilterUnderTest : PolyphaseFilter
{
    FilterUnderTest(int newTapCount, int phaseCount, bool passing)
        : all(Noise(newTapCount * phaseCount, 2))
    {
        PolyphaseFilter::taps = all.data();
        tapCount = newTapCount;
        phases = phaseCount;
        isPassing = passing && newTapCount > 1;
    }

    int SourceLength(int n) const { return n > 0 ? n + tapCount - 1 : 0; }

    std::vector<float> all;
};

TEST_P(Polyphase, GivesTheBitsOfTheReference)
{
    for (const int phases : {1, 2, 3, 4, 5, 7, 8, 16})
        for (const int tapCount : TapCounts)
            for (const int n : {-1, 0, 1, 3, 4, 16, 17, 31, 63, 64, 127, 129, 260})
            {
                const FilterUnderTest filter(tapCount, phases, (n + tapCount) % 2 == 0);
                const int frames = filter.SourceLength(n);
                const std::vector<float> src = Noise(frames * phases, 1);
                const std::vector<float> low(src.begin(), src.begin() + frames);
                GuardedBlockT<float> stretched(n * phases, 1, 3);
                GuardedBlockT<float> squeezed(n, 1, 3);
                GuardedBlockT<float> expectedStretched(n * phases, 1, 3);
                GuardedBlockT<float> expectedSqueezed(n, 1, 3);
                StretchFIR(stretched.Data(), low.data(), filter, n);
                SqueezeFIR(squeezed.Data(), src.data(), filter, n);
                reference::StretchFIR(expectedStretched.Data(), low.data(), filter, n);
                reference::SqueezeFIR(expectedSqueezed.Data(), src.data(), filter, n);
                EXPECT_TRUE(stretched.HasBitsOf(expectedStretched) &&
                            squeezed.HasBitsOf(expectedSqueezed) && stretched.GuardsAreIntact() &&
                            squeezed.GuardsAreIntact())
                    << phases << " phases, " << tapCount << " taps, length " << n;
            }
}

TEST_P(Polyphase, AddsUpWholeNumbersExactly)
{
    // Whole numbers have no rounding, so the definition may be written in its shortest form.
    constexpr int Length = 131;
    const auto sample = [](int i) { return static_cast<float>(i * 7 % 23 - 11); };
    for (const int phases : {1, 2, 3, 6, 16})
    {
        FilterUnderTest filter(37, phases, false);
        for (std::size_t k = 0; k < filter.all.size(); ++k)
            filter.all[k] = static_cast<float>(static_cast<int>(k) * 5 % 19 - 9);
        std::vector<float> src(static_cast<std::size_t>(filter.SourceLength(Length) * phases));
        for (std::size_t i = 0; i < src.size(); ++i)
            src[i] = sample(static_cast<int>(i));
        std::vector<float> stretched(static_cast<std::size_t>(Length * phases));
        std::vector<float> squeezed(Length);
        StretchFIR(stretched.data(), src.data(), filter, Length);
        SqueezeFIR(squeezed.data(), src.data(), filter, Length);
        for (int i = 0; i < Length; ++i)
        {
            float all = 0.0f;
            for (int p = 0; p < phases; ++p)
            {
                float one = 0.0f;
                for (int j = 0; j < filter.tapCount; ++j)
                {
                    const float tap = filter.taps[p * filter.tapCount + j];
                    one += sample(i + j) * tap;
                    all += sample((i + j + 1) * phases - 1 - p) * tap;
                }
                EXPECT_EQ(stretched[static_cast<std::size_t>(i * phases + p)], one) << i;
            }
            EXPECT_EQ(squeezed[static_cast<std::size_t>(i)], all) << i << ", " << phases;
        }
    }
}

TEST_P(Polyphase, LeavesAllAsItIsWithoutAFilter)
{
    const std::vector<float> src(2000, 1.0f);
    std::vector<float> dst(1000, 0.5f);
    for (const PolyphaseFilter& filter :
         {PolyphaseFilter{nullptr, 4, 2, false}, PolyphaseFilter{src.data(), 0, 2, false},
          PolyphaseFilter{src.data(), 65, 2, false}, PolyphaseFilter{src.data(), 4, 0, false},
          PolyphaseFilter{src.data(), 4, 17, false}})
    {
        StretchFIR(dst.data(), src.data(), filter, 20);
        SqueezeFIR(dst.data(), src.data(), filter, 20);
    }
    StretchFIR(dst.data(), nullptr, {src.data(), 4, 2, false}, 20);
    SqueezeFIR(nullptr, src.data(), {src.data(), 4, 2, false}, 20);
    EXPECT_EQ(dst, std::vector<float>(1000, 0.5f));
}

} // namespace
