#include "dsp/kernels/RealFFT.h"

#include <cstddef>
#include <latch>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace kernels;

/// The block of an impulse at @p place, there and back @p turns times.
std::vector<float> ThereAndBack(int size, std::size_t place, int turns)
{
    RealFFT fft(size);
    std::vector<float> time(static_cast<std::size_t>(size));
    time[place] = 1.0f;
    std::vector<Complex> spectrum(time.size() / 2 + 1);
    for (int i = 0; i < turns; ++i)
    {
        fft.Forward(time.data(), spectrum.data());
        fft.Inverse(spectrum.data(), time.data());
    }
    return time;
}

TEST(RealFFTThreads, ObjectsOfOneSizeWorkAtTheSameTime)
{
    constexpr std::size_t Count = 4;
    for (const int size : {16, 512, 8192}) // the first of each size is made in the race
    {
        std::vector<std::vector<float>> results(Count);
        std::latch start(Count);
        std::vector<std::thread> threads;
        for (std::size_t i = 0; i < Count; ++i)
            threads.emplace_back(
                [&, i, size]
                {
                    start.arrive_and_wait();
                    results[i] = ThereAndBack(size, i + 3, 20);
                });
        for (std::thread& thread : threads)
            thread.join();
        for (std::size_t i = 0; i < Count; ++i)
            EXPECT_EQ(results[i], ThereAndBack(size, i + 3, 20)) << i << " of size " << size;
    }
}

} // namespace
