#include "dsp/kernels/Arithmetic.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <array>

namespace
{

using namespace kernels;

class Arithmetic : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(Arithmetic);

// Neither gain is a power of two, so that a fused multiply and add would show in the last bit.
constexpr float K = 0.7f;
constexpr float L = -1.3f;

constexpr KernelCase Cases[] = {
    {"Fill", [](float* dst, const float*, const float*, int n) { Fill(dst, K, n); },
     [](float* dst, const float*, const float*, int n) { reference::Fill(dst, K, n); }},
    {"Scale", [](float* dst, const float* a, const float*, int n) { Scale(dst, a, K, n); },
     [](float* dst, const float* a, const float*, int n) { reference::Scale(dst, a, K, n); }},
    {"Scale in place", [](float* dst, const float*, const float*, int n) { Scale(dst, dst, K, n); },
     [](float* dst, const float*, const float*, int n) { reference::Scale(dst, dst, K, n); }},
    {"Add", [](float* dst, const float* a, const float*, int n) { Add(dst, a, n); },
     [](float* dst, const float* a, const float*, int n) { reference::Add(dst, a, n); }},
    {"Add to itself", [](float* dst, const float*, const float*, int n) { Add(dst, dst, n); },
     [](float* dst, const float*, const float*, int n) { reference::Add(dst, dst, n); }},
    {"ScaleAdd", [](float* dst, const float* a, const float*, int n) { ScaleAdd(dst, a, K, n); },
     [](float* dst, const float* a, const float*, int n) { reference::ScaleAdd(dst, a, K, n); }},
    {"ScaleAdd to itself",
     [](float* dst, const float*, const float*, int n) { ScaleAdd(dst, dst, K, n); },
     [](float* dst, const float*, const float*, int n) { reference::ScaleAdd(dst, dst, K, n); }},
    {"Mix", [](float* dst, const float* a, const float* b, int n) { Mix(dst, a, K, b, L, n); },
     [](float* dst, const float* a, const float* b, int n) { reference::Mix(dst, a, K, b, L, n); }},
    {"Mix into the first",
     [](float* dst, const float*, const float* b, int n) { Mix(dst, dst, K, b, L, n); },
     [](float* dst, const float*, const float* b, int n) { reference::Mix(dst, dst, K, b, L, n); }},
    {"Mix into the second",
     [](float* dst, const float* a, const float*, int n) { Mix(dst, a, K, dst, L, n); },
     [](float* dst, const float* a, const float*, int n) { reference::Mix(dst, a, K, dst, L, n); }},
};

TEST_P(Arithmetic, GivesTheBitsOfTheReference)
{
    ExpectBitsOfReference(Cases);
}

TEST_P(Arithmetic, FillsDoubles)
{
    for (const int n : KernelLengths())
        for (const int offset : {0, 1})
        {
            GuardedBlockT<double> actual(n, offset, 3);
            GuardedBlockT<double> expected(n, offset, 3);
            FillDouble(actual.Data(), 0.1, n);
            reference::FillDouble(expected.Data(), 0.1, n);
            EXPECT_TRUE(actual.HasBitsOf(expected)) << n;
            EXPECT_TRUE(actual.GuardsAreIntact()) << n;
        }
}

TEST_P(Arithmetic, IgnoresNullPointers)
{
    std::array<float, 20> block{};
    block.fill(0.5f);
    Fill(nullptr, 1.0f, 20);
    FillDouble(nullptr, 1.0, 20);
    Scale(nullptr, block.data(), 2.0f, 20);
    Scale(block.data(), nullptr, 2.0f, 20);
    Add(nullptr, block.data(), 20);
    Add(block.data(), nullptr, 20);
    ScaleAdd(nullptr, block.data(), 2.0f, 20);
    ScaleAdd(block.data(), nullptr, 2.0f, 20);
    Mix(nullptr, block.data(), 2.0f, block.data(), 2.0f, 20);
    Mix(block.data(), nullptr, 2.0f, block.data(), 2.0f, 20);
    Mix(block.data(), block.data(), 2.0f, nullptr, 2.0f, 20);
    for (const float sample : block)
        EXPECT_EQ(sample, 0.5f);
}

TEST(ArithmeticReference, FollowsTheFormulas)
{
    const std::array<float, 3> a{1.0f, 2.0f, 4.0f};
    const std::array<float, 3> b{8.0f, 16.0f, 32.0f};
    std::array<float, 3> dst{};
    const auto expect = [&dst](std::array<float, 3> expected) { EXPECT_EQ(dst, expected); };

    reference::Fill(dst.data(), 3.0f, 3);
    expect({3.0f, 3.0f, 3.0f});
    reference::Add(dst.data(), a.data(), 3);
    expect({4.0f, 5.0f, 7.0f});
    reference::ScaleAdd(dst.data(), b.data(), 0.5f, 3);
    expect({8.0f, 13.0f, 23.0f});
    reference::Scale(dst.data(), a.data(), -2.0f, 3);
    expect({-2.0f, -4.0f, -8.0f});
    reference::Mix(dst.data(), a.data(), 3.0f, b.data(), 0.25f, 3);
    expect({5.0f, 10.0f, 20.0f});
}

} // namespace
