// A program of its own, since it stands in for the C library's allocator.

#include <cstdlib>
#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "effect/TonvaleAudioEffectPlugin.h"

namespace
{

thread_local bool isCounting = false;
thread_local int allocations = 0;

[[maybe_unused]] void Count()
{
    allocations += isCounting ? 1 : 0;
}

} // namespace

// The sanitizers stand in for the allocator themselves; operator new ends up here.
#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
// The names are the C library's.
extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_realloc(void* block, std::size_t size);
    void __libc_free(void* block);

    void* malloc(std::size_t size)
    {
        Count();
        return __libc_malloc(size);
    }
    void* realloc(void* block, std::size_t size)
    {
        Count();
        return __libc_realloc(block, size);
    }
    void free(void* block)
    {
        Count();
        __libc_free(block);
    }
}
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
constexpr bool CanCount = true;
#else
constexpr bool CanCount = false;
#endif

namespace
{

using Effect = TonvaleAudioEffectPlugin;

template <typename Work>
int AllocationsOf(const Work& work)
{
    allocations = 0;
    isCounting = true;
    work();
    isCounting = false;
    return allocations;
}

TEST(TonvaleAudioEffectPluginAllocations, NoneOnTheAudioThread)
{
    if (CanCount)
    {
        EXPECT_GT(AllocationsOf([] { EXPECT_NE(std::make_unique<int>(7), nullptr); }), 0);
    }

    const auto effect = std::make_unique<Effect>();
    const MPluginInfo& info = effect->GetInfo();
    auto& generator = *static_cast<MSignalGenerator*>(info.specials[0].data);
    effect->InitProcessing(2, 48000);
    effect->Update();
    effect->ResetParameterRamps();
    std::vector<float> input(256, 0.5f);
    std::vector<float> left(256);
    std::vector<float> right(256);
    const float* const inputs[] = {input.data(), input.data()};
    float* const outputs[] = {left.data(), right.data()};

    EXPECT_EQ(AllocationsOf(
                  [&]
                  {
                      for (int block = 0; block < 3000; ++block)
                      {
                          info.FindParameter(Effect::Wet)->Set01(block % 5 * 0.2);
                          info.FindParameter(Effect::Dry)->Set01(block % 3 * 0.5);
                          info.FindParameter(Effect::Width)->Set01(block % 7 * 0.1);
                          effect->ParameterChanged(Effect::Width);
                          effect->Update();
                          info.midiProcessor->ProcessNote(0, 0.0, 0, block % 128, 1.0, true);
                          info.midiProcessor->ProcessPitchWheel(0, 0.0, 0, block % 2);
                          if (block % 100 == 0)
                          {
                              generator.Shape = block * 0.005;
                              generator.StepDepth = block % 3 * 0.5;
                              generator.Rebuild();
                          }
                          effect->Process(nullptr, inputs, outputs, block % 256 + 1);
                      }
                  }),
              0);
}

} // namespace
