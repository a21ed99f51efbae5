#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "effect/TonvaleAudioEffectPlugin.h"
#include "effect/parameters/MParameterList.h"
#include "tests/CountedAllocations.h"
#include "tests/effect/parameters/ParametersUnderTest.h"

namespace
{

using Effect = TonvaleAudioEffectPlugin;

TEST(TonvaleAudioEffectPluginAllocations, NoneOnTheAudioThread)
{
    if (CanCountAllocations())
    {
        EXPECT_GT(AllocationsOf(
                      []
                      {
                          int* volatile number = new int(7); // volatile, or it is left out
                          delete number;
                      }),
                  0);
    }

    const auto effect = std::make_unique<Effect>();
    const MPluginInfo& info = effect->GetInfo();
    auto& generator = *static_cast<MSignalGenerator*>(info.specials[0].data);
    FakeOwner owner;
    MParameterList list;
    list.Wire(*effect, owner);
    const auto set = [&list](int index, double value01)
    { list.FindAdapter(index)->SetParameter(0, value01, true); };
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
                          set(Effect::Wet, block % 5 * 0.2);
                          set(Effect::Dry, block % 3 * 0.5);
                          set(Effect::Width, block % 7 * 0.1);
                          effect->ParameterChanged(Effect::Width);
                          effect->Update();
                          info.midiProcessor->ProcessNote(0, 0.0, 0, block % 128, 1.0, true);
                          info.midiProcessor->ProcessPitchWheel(0, 0.0, 0, block % 2);
                          if (block % 100 == 0)
                          {
                              set(Effect::ParameterCount, block / 3000.0); // the shape
                              generator.StepDepth = block % 3 * 0.5;
                              generator.Rebuild();
                          }
                          effect->Process(nullptr, inputs, outputs, block % 256 + 1);
                      }
                  }),
              0);
}

} // namespace
