#include <atomic>
#include <cmath>
#include <thread>

#include <gtest/gtest.h>

#include "OscillatorUnderTest.h"
#include "foundation/xml/MXMLItem.h"

namespace
{

using Effect = TonvaleAudioEffectPlugin;

TEST(TonvaleAudioEffectPluginThreads, BlocksStaySoundWhileOthersSetStoreAndLoad)
{
    OscillatorUnderTest oscillator(2);
    std::atomic<bool> isOver = false;
    std::thread host(
        [&]
        {
            MXMLItem item("settings");
            for (int i = 0; i < 400; ++i)
            {
                oscillator.Set(Effect::Width, i % 3 - 1.0);
                oscillator.Set(Effect::Wet, 0.25 * (i % 5));
                oscillator.Set(Effect::Octaves, i % 7 - 3);
                oscillator.Record(Effect::Pitch).SetModulated(i % 2 == 0);
                oscillator.Call(MPluginCommand::Store, reinterpret_cast<std::intptr_t>(&item));
                oscillator.Call(MPluginCommand::Load, reinterpret_cast<std::intptr_t>(&item));
                oscillator.MIDI().ProcessNote(0, 0.0, 0, i % 128, 1.0, true);
            }
            isOver = true;
        });
    int blocks = 0;
    while (!isOver || blocks < 10)
    {
        ++blocks;
        for (const auto& block : oscillator.Play(64))
            for (const float sample : block)
                ASSERT_LE(std::abs(sample), 1.0f);
    }
    host.join();
}

} // namespace
