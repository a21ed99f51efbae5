#include "persistence/presets/MPresetManagerBase.h"

#include <functional>

#include <sys/stat.h>

#include "tests/FileSizeLimit.h"
#include "tests/OrdinaryUser.h"
#include "tests/persistence/presets/PresetTest.h"

namespace
{

TEST_F(PresetTest, AFullDiskLosesNothing)
{
    MPresetManagerBase manager(owner, "", folder.GetName());
    MXMLItem& inner = manager.AddFolder(manager.GetRoot(), "f");
    MXMLItem& preset = manager.AddPreset(inner, "a");
    const std::string before = Read();
    {
        const FileSizeLimit limit(before.size() - 1);
        owner.state = 2;
        const std::function<void()> changes[] = {
            [&] { manager.AddPreset(inner, "b"); },      [&] { manager.ReplacePreset(preset); },
            [&] { manager.RenamePreset(preset, "bb"); }, [&] { manager.AddFolder(inner, "b"); },
            [&] { manager.RenameFolder(inner, "ff"); },
        };
        for (const auto& change : changes)
        {
            EXPECT_EQ(Thrown(change), "Error writing to file \"" +
                                          files::PathJoin(folder.GetName(), FileName).ToUTF8() +
                                          "\". Probably disk full.");
            EXPECT_EQ(Read(), before);
            EXPECT_EQ(Outline(manager.GetRoot()), "f{a}");
        }
        EXPECT_EQ(StateOf(manager, "f/a"), 1);
    }
    // Items of before are still good.
    manager.AddPreset(inner, "b");
    manager.DeletePreset(preset);
    EXPECT_EQ(ReadOutline(), "f{b}");
}

TEST_F(PresetTest, AWriteProtectedFileStays)
{
    struct Case
    {
        const char* what;
        mode_t file;
        mode_t lock;
        const char* failure;
    };
    const Case cases[] = {
        {"file", 0444, 0666, "could not be created"},
        {"lock", 0666, 0444, "Could not lock file"},
        {"secret", 0, 0666, "could not be open"},
    };
    for (const Case& row : cases)
    {
        Write("<presets/>");
        folder.WriteText("presets.xml.lock", "");
        MPresetManagerBase manager(owner, "", folder.GetName());
        if (row.file == 0)
            Write("<presets><preset name=\"a\"/></presets>");
        const std::string before = Read();
        chmod((folder / "f").c_str(), 0777);
        chmod((folder / "f/presets.xml").c_str(), row.file);
        chmod((folder / "f/presets.xml.lock").c_str(), row.lock);
        {
            const OrdinaryUser user;
            EXPECT_NE(Thrown([&] { manager.AddPreset(manager.GetRoot(), "b"); }).find(row.failure),
                      std::string::npos)
                << row.what;
        }
        EXPECT_EQ(Outline(manager.GetRoot()), "") << row.what;
        EXPECT_EQ(Read(), before) << row.what;
    }
}

} // namespace
