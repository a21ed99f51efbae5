#include <thread>

#include "foundation/strings/MStringFormatter.h"
#include "tests/persistence/presets/PresetTest.h"

namespace
{

TEST(MPresetManagerBaseThreads, ManagersThatAddAtOnceLoseNothing)
{
    constexpr int Managers = 3;
    constexpr int Presets = 20;
    const ConfigurationFolder folder;
    const auto add = [&](int number)
    {
        PresetOwner owner;
        MPresetManagerBase manager(owner, "", folder.GetName());
        manager.AddFolder(manager.GetRoot(), MString::FromInteger(number));
        for (int i = 0; i < Presets; ++i)
        {
            owner.state = 100 * number + i;
            // Others may have put folders before ours, and new items in the place of all.
            for (const auto& item : manager.GetRoot().GetSubItems())
                if (presettree::GetName(*item) == MString::FromInteger(number))
                {
                    manager.AddPreset(*item, MString::FromInteger(i));
                    break;
                }
        }
    };
    std::thread threads[Managers];
    for (int i = 0; i < Managers; ++i)
        threads[i] = std::thread(add, i);
    for (std::thread& thread : threads)
        thread.join();

    PresetOwner owner;
    const MPresetManagerBase manager(owner, "", folder.GetName());
    EXPECT_EQ(std::ssize(manager.ListPresets()), Managers * Presets);
    for (int number = 0; number < Managers; ++number)
        for (int i = 0; i < Presets; ++i)
        {
            MXMLItem* const preset =
                manager.Find(MStringFormatter("{0}/{1}").Add(number).Add(i).Result());
            ASSERT_NE(preset, nullptr);
            manager.LoadPreset(*preset);
            EXPECT_EQ(owner.state, 100 * number + i);
        }
}

} // namespace
