#include "dsp/kernels/Ramps.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <array>

namespace
{

using namespace kernels;

class Ramps : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Ramps);

// No step is representable, so every addition rounds and its order shows.
constexpr float Wet = 0.1f;
constexpr float WetStep = 0.0017f;
constexpr float Dry = 0.9f;
constexpr float DryStep = -0.0013f;

constexpr KernelCase Cases[] = {
    {"RampScale",
     [](float* dst, const float*, const float*, int n) { RampScale(dst, Wet, WetStep, n); },
     [](float* dst, const float*, const float*, int n)
     { reference::RampScale(dst, Wet, WetStep, n); }},
    {"RampScaleAdd",
     [](float* dst, const float* a, const float*, int n) { RampScaleAdd(dst, a, Dry, DryStep, n); },
     [](float* dst, const float* a, const float*, int n)
     { reference::RampScaleAdd(dst, a, Dry, DryStep, n); }},
    {"RampScaleAdd to itself",
     [](float* dst, const float*, const float*, int n) { RampScaleAdd(dst, dst, Dry, DryStep, n); },
     [](float* dst, const float*, const float*, int n)
     { reference::RampScaleAdd(dst, dst, Dry, DryStep, n); }},
    {"RampMix",
     [](float* dst, const float* a, const float*, int n)
     { RampMix(dst, a, Wet, WetStep, Dry, DryStep, n); },
     [](float* dst, const float* a, const float*, int n)
     { reference::RampMix(dst, a, Wet, WetStep, Dry, DryStep, n); }},
    {"RampMix with itself",
     [](float* dst, const float*, const float*, int n)
     { RampMix(dst, dst, Wet, WetStep, Dry, DryStep, n); },
     [](float* dst, const float*, const float*, int n)
     { reference::RampMix(dst, dst, Wet, WetStep, Dry, DryStep, n); }},
    {"RampMix as two passes",
     [](float* dst, const float* a, const float*, int n)
     { RampMix(dst, a, Wet, WetStep, Dry, DryStep, n); },
     [](float* dst, const float* a, const float*, int n)
     {
         RampScale(dst, Wet, WetStep, n);
         RampScaleAdd(dst, a, Dry, DryStep, n);
     }},
};

TEST_P(Ramps, GiveTheBitsOfTheReference)
{
    ExpectBitsOfReference(Cases);
}

TEST_P(Ramps, AreStraightLines)
{
    // All gains are representable, so the line is exact however its sums are ordered.
    constexpr float Start = 0.25f;
    constexpr float Step = 1.0f / 64.0f;
    for (const int n : {1, 3, 4, 5, 16, 19, 127})
    {
        std::vector<float> scaled(static_cast<std::size_t>(n), 2.0f);
        std::vector<float> mixed = scaled;
        std::vector<float> byReference = scaled;
        const std::vector<float> dry(static_cast<std::size_t>(n), 4.0f);
        RampScale(scaled.data(), Start, Step, n);
        reference::RampScale(byReference.data(), Start, Step, n);
        RampMix(mixed.data(), dry.data(), Start, Step, 1.0f, -Step, n);
        for (int i = 0; i < n; ++i)
        {
            const auto at = static_cast<std::size_t>(i);
            const float line = Start + static_cast<float>(i) * Step;
            EXPECT_EQ(scaled[at], 2.0f * line) << i << " of " << n;
            EXPECT_EQ(byReference[at], 2.0f * line) << i << " of " << n;
            EXPECT_EQ(mixed[at], 2.0f * line + 4.0f * (1.25f - line)) << i << " of " << n;
        }
    }
}

TEST_P(Ramps, GoOnSinglyFromTheFirstOfFour)
{
    constexpr float Start = 0.7f;
    constexpr float Step = 0.07f;
    static_assert(Start + 4.0f * Step + 4.0f * Step + Step !=
                      Start + Step + 4.0f * Step + 4.0f * Step,
                  "the sums have to tell the orders apart");
    std::array<float, 11> block{};
    block.fill(1.0f);
    RampScale(block.data(), Start, Step, 11);

    // Two rounds, then three single samples.
    std::array<float, 11> expected{Start, Start + Step, Start + 2.0f * Step, Start + 3.0f * Step};
    for (std::size_t i = 4; i < 8; ++i)
        expected[i] = expected[i - 4] + 4.0f * Step;
    expected[8] = expected[4] + 4.0f * Step;
    expected[9] = expected[8] + Step;
    expected[10] = expected[9] + Step;
    EXPECT_EQ(block, expected);
}

TEST_P(Ramps, IgnoreNullPointers)
{
    std::array<float, 20> block{};
    block.fill(0.5f);
    RampScale(nullptr, 2.0f, 1.0f, 20);
    RampScaleAdd(nullptr, block.data(), 2.0f, 1.0f, 20);
    RampScaleAdd(block.data(), nullptr, 2.0f, 1.0f, 20);
    RampMix(nullptr, block.data(), 2.0f, 1.0f, 2.0f, 1.0f, 20);
    RampMix(block.data(), nullptr, 2.0f, 1.0f, 2.0f, 1.0f, 20);
    for (const float sample : block)
        EXPECT_EQ(sample, 0.5f);
}

} // namespace
