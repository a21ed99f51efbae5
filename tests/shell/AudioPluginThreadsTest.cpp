#include <atomic>
#include <chrono>
#include <string>
#include <thread>

#include <gtest/gtest.h>

#include "tests/shell/PluginUnderTest.h"

namespace
{

/// Values that go together in a state; no other thread of the test sets them.
std::string TellSettings(MXMLItem& item)
{
    MXMLItem& shape = item.GetRequiredSubItem("Shape");
    MXMLItem& controllers = item.GetRequiredSubItem("Controllers");
    std::string told;
    const auto add = [&told](const MXMLItem& from, const char* key)
    { told += from.GetAttribute(key, "none").ToUTF8() + " "; };
    for (const char* const key : {"parameterOctaves", "parameterSemitones", "parameterCents",
                                  "NoteIndex", "MaxLFOBlockSize"})
        add(item, key);
    add(shape.GetRequiredSubItem("Step"), "Item0");
    add(shape.GetRequiredSubItem("Operations"), "Skew");
    for (const char* const name : {"Controller0", "Controller15"})
        add(controllers.GetRequiredSubItem(name), "Controller");
    for (const auto& modulator : item.GetRequiredSubItem("LFOs").GetSubItems())
        add(modulator->GetRequiredSubItem("Random"), "Speed");
    return told + std::to_string(shape.GetRequiredSubItem("Envelope").GetSubItems().size());
}

std::unique_ptr<MXMLItem> MakeState(const PluginUnderTest& plugin, int number)
{
    auto item = plugin.Store();
    for (const char* const key :
         {"parameterOctaves", "parameterSemitones", "parameterCents", "NoteIndex"})
        item->SetAttribute(key, number);
    item->SetAttribute("MaxLFOBlockSize", 100 * number);
    MXMLItem& shape = item->GetRequiredSubItem("Shape");
    shape.GetRequiredSubItem("Step").SetAttribute("Item0", 0.1 * number);
    shape.GetRequiredSubItem("Operations").SetAttribute("Skew", 0.1 * number);
    for (int point = 0; point < 100 * number; ++point)
        shape.GetRequiredSubItem("Envelope").AddSubItem("Point").SetAttribute("x", point * 0.001);
    for (const auto& row : item->GetRequiredSubItem("Controllers").GetSubItems())
        row->SetAttribute("Controller", 20 + number);
    for (const auto& modulator : item->GetRequiredSubItem("LFOs").GetSubItems())
        modulator->GetRequiredSubItem("Random").SetAttribute("Speed", number);
    return item;
}

TEST(AudioPluginThreads, BlocksAndStatesStaySoundWhateverHostsDo)
{
    PluginUnderTest plugin;
    const std::string toldNew = TellSettings(*plugin.Store()); // as the other slots stay
    const auto a = MakeState(plugin, 1);
    const auto b = MakeState(plugin, 2);
    plugin.Load(*b);
    const std::string toldB = TellSettings(*plugin.Store());
    plugin.Load(*a);
    const std::string toldA = TellSettings(*plugin.Store());
    ASSERT_NE(toldA, toldB);

    std::atomic<bool> isOver = false;
    const auto forever = [&isOver](auto work)
    {
        return std::jthread(
            [&isOver, work]
            {
                for (int round = 0; !isOver; ++round)
                    work(round);
            });
    };
    {
        const std::jthread threads[] = {
            forever(
                [&](int round)
                {
                    const int index =
                        round % 2 == 0 ? 6 + round % 6 : round % 2; // not those of TellSettings
                    plugin->SetParameter(index, round % 11 * 0.1, round % 3 == 0);
                    plugin->GetParameterValueName(round % 12);
                    const int ofModulator = round % 100;
                    if (ofModulator % 50 != 37) // nor the speeds, which TellSettings tells
                        plugin->SetParameter(12 + ofModulator, round % 13 * 0.08, round % 3 == 0);
                    plugin->GetParameter(12 + round % 77);
                    plugin->SetBypassed(round % 16 == 0);
                    MModulator& modulator = plugin->GetModulators()[round % 2 == 0 ? 0 : 1];
                    modulator.Enabled = round % 5 != 0;
                    modulator.SetMode(static_cast<MModulatorMode>(round % 4));
                    modulator.EditTargets(
                        [&](MModulator::TargetList& list)
                        {
                            list.resize(static_cast<std::size_t>(round % 3 + 1));
                            list.back().Assign(round % 4 == 0 ? 12 + round % 35 : index, *plugin);
                        });
                    MIDIControllers::Source source{};
                    plugin->GetControllers().TakeSource(source);
                    plugin->TakePendingEditorUpdates();
                    std::this_thread::yield();
                }),
            forever(
                [&](int round)
                {
                    const int channels = round % 8 + 1;
                    plugin->SetChannels(channels, channels);
                    plugin->SetHostSampleRate(44100 + round % 3 * 1950);
                    plugin->SetMaxBlock(round % 5 * 2048);
                    plugin->InitProcessing();
                    plugin->SetChannelMode(static_cast<MChannelMode>(round % 8));
                    plugin->SetUpsampling(1 << round % 3, round % 2 == 0);
                    plugin->ProcessUpdate();
                    std::this_thread::sleep_for(std::chrono::milliseconds(3)); // or no block plays
                }),
            forever(
                [&](int round)
                {
                    plugin.Load(round % 2 == 0 ? *b : *a);
                    plugin->SelectPresetSlot(round % PresetSlots::Count);
                    std::this_thread::sleep_for(std::chrono::milliseconds(2));
                }),
            forever(
                [&](int)
                {
                    const std::string told = TellSettings(*plugin.Store());
                    EXPECT_TRUE(told == toldA || told == toldB || told == toldNew) << told;
                }),
        };
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(1);
        int loudBlocks = 0;
        for (int block = 0; std::chrono::steady_clock::now() < end; ++block)
        {
            const int samples = block % 10 == 0 ? 4096 : block % 700 + 1;
            plugin.Send({0xB0 + block % 16, block % 128, block % 128});
            plugin.Send({0xE0, 0, block % 128});
            plugin.Play(samples, 0.5f);
            EXPECT_TRUE(plugin.IsFinite(samples));
            loudBlocks += plugin.outputs[0].front() != 0.0f;
        }
        isOver = true;
        EXPECT_GT(loudBlocks, 0);
    }
}

} // namespace
