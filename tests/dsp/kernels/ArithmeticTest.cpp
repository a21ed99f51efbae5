#include "dsp/kernels/Arithmetic.h"

#include "dsp/kernels/Reference.h"
#include "foundation/threads/MGuard.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <array>
#include <limits>
#include <string>
#include <utility>

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
    {"Zero", [](float* dst, const float*, const float*, int n) { Zero(dst, n); },
     [](float* dst, const float*, const float*, int n) { reference::Zero(dst, n); }},
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
    {"AddConstant", [](float* dst, const float*, const float*, int n) { AddConstant(dst, K, n); },
     [](float* dst, const float*, const float*, int n) { reference::AddConstant(dst, K, n); }},
    {"Clamp", [](float* dst, const float*, const float*, int n) { Clamp(dst, 0.4f, n); },
     [](float* dst, const float*, const float*, int n) { reference::Clamp(dst, 0.4f, n); }},
};

/// A kernel that changes two blocks, and its reference.
struct PairCase
{
    using Call = void (*)(float* a, float* b, int n) noexcept;

    const char* what;
    Call kernel;
    Call reference;
};

constexpr PairCase PairCases[] = {
    {"MidSide", MidSide, reference::MidSide},
    {"SumDifference", SumDifference, reference::SumDifference},
};

TEST_P(Arithmetic, GivesTheBitsOfTheReference)
{
    ExpectBitsOfReference(Cases);
}

TEST_P(Arithmetic, GivesTheBitsOfTheReferenceInPairs)
{
    for (const PairCase& row : PairCases)
        for (const int n : KernelLengths())
            for (const int offset : {0, 1, 3})
            {
                GuardedBlockT<float> a(n, offset, 1);
                GuardedBlockT<float> b(n, 2, 2);
                GuardedBlockT<float> expectedA(n, offset, 1);
                GuardedBlockT<float> expectedB(n, 2, 2);
                row.kernel(a.Data(), b.Data(), n);
                row.reference(expectedA.Data(), expectedB.Data(), n);
                EXPECT_TRUE(a.HasBitsOf(expectedA)) << row.what << ", length " << n;
                EXPECT_TRUE(b.HasBitsOf(expectedB)) << row.what << ", length " << n;
                EXPECT_TRUE(a.GuardsAreIntact() && b.GuardsAreIntact())
                    << row.what << ", length " << n;
            }
}

TEST_P(Arithmetic, FindsBothChannelsAgainInMiddleAndSide)
{
    for (const int n : {1, 15, 16, 100})
    {
        std::vector<float> l(static_cast<std::size_t>(n));
        std::vector<float> r(static_cast<std::size_t>(n));
        for (std::size_t i = 0; i < l.size(); ++i)
        {
            l[i] = static_cast<float>(i);
            r[i] = 3.0f - static_cast<float>(i * i);
        }
        const auto [oldL, oldR] = std::pair(l, r);
        MidSide(l.data(), r.data(), n);
        EXPECT_EQ(l[0], 1.5f);
        EXPECT_EQ(r[0], -1.5f);
        SumDifference(l.data(), r.data(), n);
        EXPECT_EQ(l, oldL);
        EXPECT_EQ(r, oldR);
    }
}

TEST_P(Arithmetic, ClampsWhateverASampleIs)
{
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float Tiny = std::numeric_limits<float>::denorm_min();
    const std::array<float, 11> samples{NotANumber, -NotANumber, Infinity, -Infinity, 0.5f, -0.5f,
                                        0.7f,       -0.7f,       Tiny,     0.0f,      -0.0f};
    struct Case
    {
        float limit;
        std::array<float, 11> expected;
    };
    const Case cases[] = {
        {0.6f, {0.0f, 0.0f, 0.6f, -0.6f, 0.5f, -0.5f, 0.6f, -0.6f, Tiny, 0.0f, -0.0f}},
        {0.0f, {0.0f, 0.0f, 0.0f, -0.0f, 0.0f, -0.0f, 0.0f, -0.0f, 0.0f, 0.0f, -0.0f}},
        {-0.0f, {0.0f, 0.0f, 0.0f, -0.0f, 0.0f, -0.0f, 0.0f, -0.0f, 0.0f, 0.0f, -0.0f}},
        {Infinity, {0.0f, 0.0f, Infinity, -Infinity, 0.5f, -0.5f, 0.7f, -0.7f, Tiny, 0.0f, -0.0f}},
        {-0.1f, samples},
        {NotANumber, samples},
    };
    const auto bitsOf = [](float sample) { return std::bit_cast<std::uint32_t>(sample); };
    for (const Case& row : cases)
        for (std::size_t shift = 0; shift < 32; ++shift) // so that each meets vectors and remainder
        {
            std::vector<float> block(33, 0.25f);
            for (std::size_t i = 0; i < samples.size(); ++i)
                block[(shift + i) % block.size()] = samples[i];
            Clamp(block.data(), row.limit, 33);
            for (std::size_t i = 0; i < samples.size(); ++i)
                EXPECT_EQ(bitsOf(block[(shift + i) % block.size()]), bitsOf(row.expected[i]))
                    << samples[i] << " at limit " << row.limit << ", place " << shift + i;
        }
}

TEST_P(Arithmetic, TakesTheSamplesThatAreNotFiniteForSilence)
{
    constexpr float Infinity = std::numeric_limits<float>::infinity();
    constexpr float NotANumber = std::numeric_limits<float>::quiet_NaN();
    constexpr float Largest = std::numeric_limits<float>::max();
    constexpr float Tiny = std::numeric_limits<float>::denorm_min();
    const std::vector<float> samples{NotANumber, 0.5f,      Infinity, -Largest, -NotANumber,
                                     -0.0f,      -Infinity, -Tiny,    Largest,  1.0f};
    const std::vector<float> expected{0.0f,  0.5f, 0.0f,  -Largest, 0.0f,
                                      -0.0f, 0.0f, -Tiny, Largest,  1.0f};
    for (const int n : KernelLengths())
    {
        GuardedBlockT<float> actual(n, 1, 3);
        GuardedBlockT<float> wanted(n, 1, 3);
        GuardedBlockT<float> byReference(n, 1, 3);
        for (int i = 0; i < n; ++i)
        {
            const auto at = static_cast<std::size_t>(i) % samples.size();
            actual.Data()[i] = byReference.Data()[i] = samples[at];
            wanted.Data()[i] = expected[at];
        }
        ZeroNonFinite(actual.Data(), n);
        reference::ZeroNonFinite(byReference.Data(), n);
        EXPECT_TRUE(actual.HasBitsOf(wanted)) << n;
        EXPECT_TRUE(actual.GuardsAreIntact()) << n;
        EXPECT_TRUE(byReference.HasBitsOf(wanted)) << n << ", reference";
    }
}

TEST_P(Arithmetic, FillsPixels)
{
    for (const int n : KernelLengths())
        for (const std::ptrdiff_t offset : {0, 1, 3})
        {
            const auto length = static_cast<std::size_t>(std::max(n, 0));
            std::vector<std::uint32_t> actual(length + 20, 7);
            std::vector<std::uint32_t> expected = actual;
            std::fill_n(expected.begin() + offset, length, 0xFF80A001);
            FillPixels(actual.data() + offset, 0xFF80A001, n);
            EXPECT_EQ(actual, expected) << n;
        }
}

TEST(ArithmeticCopy, TakesBlocksThatOverlap)
{
    constexpr int Places = 64;
    const std::vector<float> noise = Noise(3 * Places, 1);
    for (const int n : {-1, 0, 1, 2, 15, 16, 17, Places})
        for (int distance = -Places; distance <= Places; ++distance)
        {
            std::vector<float> expected = noise;
            std::copy_n(noise.begin() + Places, n, expected.begin() + Places + distance);
            std::vector<float> actual = noise;
            Copy(actual.data() + Places + distance, actual.data() + Places, n);
            EXPECT_EQ(actual, expected) << n << " by " << distance;
            actual = noise;
            reference::Copy(actual.data() + Places + distance, actual.data() + Places, n);
            EXPECT_EQ(actual, expected) << n << " by " << distance << ", reference";
        }
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
    Zero(nullptr, 20);
    Fill(nullptr, 1.0f, 20);
    FillPixels(nullptr, 1, 20);
    Copy(nullptr, block.data(), 20);
    Copy(block.data(), nullptr, 20);
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
    AddConstant(nullptr, 2.0f, 20);
    Clamp(nullptr, 0.1f, 20);
    ZeroNonFinite(nullptr, 20);
    for (const PairCase& row : PairCases)
    {
        row.kernel(nullptr, block.data(), 20);
        row.kernel(block.data(), nullptr, 20);
    }
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
    reference::AddConstant(dst.data(), -12.0f, 3);
    expect({-7.0f, -2.0f, 8.0f});
}

TEST(NullPointerTrace, TellsOfNullPointersInDebugBuilds)
{
    static std::string traced;
    const MTraceFunction before = SetTraceFunction([](const char* message) { traced += message; });
    std::array<float, 4> block{};
    Add(block.data(), nullptr, 4);
    Zero(block.data(), 4);
    SetTraceFunction(before);
#ifdef NDEBUG
    EXPECT_EQ(traced, "");
#else
    EXPECT_EQ(traced, "kernels::Add: null pointer");
#endif
}

} // namespace
