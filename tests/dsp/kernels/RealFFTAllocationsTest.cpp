// A program of its own, since it stands in for the C library's allocator.

#include "dsp/kernels/RealFFT.h"

#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

namespace
{

thread_local int allocations = 0;

} // namespace

// The sanitizers stand in for the allocator themselves; operator new ends up here.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
// The names are the C library's.
extern "C"
{
    void* __libc_malloc(std::size_t size);

    // Exported, so that shared libraries call it as well.
    [[gnu::visibility("default")]] void* malloc(std::size_t size)
    {
        ++allocations;
        return __libc_malloc(size);
    }
}
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
constexpr bool CanCount = true;
#else
constexpr bool CanCount = false;
#endif

namespace
{

using namespace kernels;

TEST(RealFFTAllocations, NoneButForTheConstruction)
{
    std::vector<float> time(RealFFT::MaxSize, 0.5f);
    std::vector<Complex> spectrum(RealFFT::MaxSize / 2 + 1);
    for (const int size : {16, 32, 4096, 65536}) // even and odd powers of two
    {
        allocations = 0;
        RealFFT fft(size);
        if (CanCount)
        {
            EXPECT_GE(allocations, 3) << "those in shared libraries have to be seen";
        }

        allocations = 0;
        fft.Forward(time.data(), spectrum.data());
        fft.Inverse(spectrum.data(), time.data());
        EXPECT_EQ(allocations, 0) << size;
    }
}

} // namespace
