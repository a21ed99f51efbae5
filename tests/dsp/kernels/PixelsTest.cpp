#include "dsp/kernels/Pixels.h"

#include "dsp/kernels/Reference.h"
#include "tests/dsp/kernels/KernelTest.h"

#include <cstdint>
#include <random>
#include <vector>

namespace
{

using namespace kernels;
using Pixels = std::vector<std::uint32_t>;

class PixelsTest : public KernelTest
{
};
INSTANTIATE_KERNEL_TEST(PixelsTest);

/// Of bytes that are any, and often at either end.
Pixels AnyPixels(std::size_t count, unsigned seed)
{
    std::mt19937 random(seed);
    Pixels pixels(count);
    for (std::uint32_t& pixel : pixels)
        for (unsigned shift = 0; shift < 32; shift += 8)
        {
            const auto choice = static_cast<std::uint32_t>(random());
            const std::uint32_t byte = choice % 4 == 0 ? 0 : choice % 4 == 1 ? 255 : choice >> 24U;
            pixel |= byte << shift;
        }
    return pixels;
}

constexpr std::size_t Guard = 40; ///< pixels before and behind the row

struct PixelCase
{
    const char* what;
    void (*run)(std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int level,
                int n, bool isReference);
};

/// Neighbours from all over the source, as much as the lengths need.
struct Places
{
    std::vector<std::int32_t> places;
    std::vector<std::uint32_t> weights;

    Places()
    {
        for (std::size_t i = 0; i < 1100; ++i)
        {
            places.push_back(static_cast<std::int32_t>(i * 7 % 29));
            weights.push_back(static_cast<std::uint32_t>(i * 31 % 256));
        }
    }
};
const Places NeighbourPlaces;

constexpr PixelCase Cases[] = {
    {"BlendPixels", [](std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t*, int level,
                       int n, bool isReference)
     { (isReference ? reference::BlendPixels : BlendPixels)(dst, a[0], level, n); }},
    {"BlitPixels", [](std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t*, int level,
                      int n, bool isReference)
     { (isReference ? reference::BlitPixels : BlitPixels)(dst, a, level, n); }},
    {"MixPixels", [](std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t* b, int level,
                     int n, bool isReference)
     { (isReference ? reference::MixPixels : MixPixels)(dst, a, b, level, n); }},
    {"MixNeighbours",
     [](std::uint32_t* dst, const std::uint32_t* a, const std::uint32_t*, int, int n,
        bool isReference)
     {
         (isReference ? reference::MixNeighbours : MixNeighbours)(
             dst, a, NeighbourPlaces.places.data(), NeighbourPlaces.weights.data(), n);
     }},
};

TEST_P(PixelsTest, GivesTheBitsOfTheReferenceAndNoneBeyond)
{
    for (const PixelCase& row : Cases)
        for (const int n : KernelLengths())
            for (const std::size_t offset : {0U, 1U, 2U, 3U})
                for (const int level : {0, 1, 100, 254, 255})
                {
                    const std::size_t length = static_cast<std::size_t>(std::max(n, 0));
                    const Pixels a = AnyPixels(offset + std::max<std::size_t>(length, 30), 1);
                    const Pixels b = AnyPixels(offset + std::max<std::size_t>(length, 30), 2);
                    Pixels actual = AnyPixels(length + offset + 2 * Guard, 3);
                    Pixels expected = actual;
                    for (Pixels* dst : {&actual, &expected})
                        row.run(dst->data() + Guard + offset, a.data() + offset, b.data() + offset,
                                level, n, dst == &expected);
                    ASSERT_EQ(actual, expected) << row.what << ", length " << n << ", offset "
                                                << offset << ", level " << level;
                }
}

} // namespace
