#include "shell/MUpsampler.h"

#include <vector>

#include <gtest/gtest.h>

#include "tests/CountedAllocations.h"

namespace
{

TEST(MUpsamplerAllocations, NoneForTheBlocksAnnounced)
{
    const std::vector<float> input(4097, 0.5f);
    std::vector<float> output(4097);
    for (const bool isHigh : {true, false})
        for (const int factor : {2, 13, 16})
        {
            MUpsampler upsampler;
            upsampler.Configure(48000, factor, isHigh, 4096);
            const auto run = [&](int n)
            {
                upsampler.Upsample(input.data(), n);
                upsampler.Downsample(output.data(), n, true);
                upsampler.Reset();
                upsampler.Configure(48000, factor, isHigh, 4096);
            };
            EXPECT_EQ(AllocationsOf(
                          [&]
                          {
                              for (const int n : {1, 64, 4096})
                                  run(n);
                          }),
                      0)
                << factor;
            if (CanCountAllocations())
            {
                EXPECT_GT(AllocationsOf([&] { run(4097); }), 0) << factor;
            }
        }
}

} // namespace
