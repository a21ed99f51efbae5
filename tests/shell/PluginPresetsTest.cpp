#include "shell/PluginPresets.h"

#include <cstdint>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include "foundation/threads/MException.h"
#include "tests/TemporaryFolder.h"
#include "tests/shell/PluginUnderTest.h"
#include "tests/shell/ToldParameters.h"

namespace
{

/// Presets that tell themselves apart by their note, one of them in a folder.
struct PresetFolder : TemporaryFolder
{
    PresetFolder()
    {
        WriteText("Tonvalepresets.xml",
                  "<presets><preset name=\"one\" NoteIndex=\"1\"/><Directory Name=\"folder\">"
                  "<preset name=\"two\" NoteIndex=\"2\"/></Directory>"
                  "<preset name=\"three\" NoteIndex=\"3\" Bypass=\"1\"/></presets>");
        WriteText("Tonvalepresets.active",
                  "<presets><preset Name=\"folder/two\"/><preset Name=\"two\"/>"
                  "<preset Name=\"own\" NoteIndex=\"50\"/><preset Name=\"gone\"/></presets>");
    }
    void WriteText(const char* name, std::string_view text) const
    {
        Write(name, std::vector<std::uint8_t>(text.begin(), text.end()));
    }
    MString GetName() const { return MString::FromUTF8(GetPath().generic_string()); }
};

class PluginPresetsInAFile : public testing::Test
{
protected:
    std::int64_t GetNote() const
    {
        return plugin.Store()->GetAttribute("NoteIndex", "0").ToInteger();
    }

    const PresetFolder folder;
    PluginUnderTest plugin;
    PluginPresets presets{*plugin, folder.GetName()};
};

TEST_F(PluginPresetsInAFile, NeighboursFollowTheOrderOfTheFileRoundTheEnds)
{
    for (const int note : {1, 2, 3, 1})
    {
        EXPECT_TRUE(presets.LoadNext());
        EXPECT_EQ(GetNote(), note);
        EXPECT_EQ(plugin->GetCurrentPresetIndex(), note - 1);
        EXPECT_EQ(plugin->IsBypassed(), note == 3);
    }
    EXPECT_TRUE(presets.LoadPrevious());
    EXPECT_EQ(GetNote(), 3);

    // The place goes with the state, also into a plugin that has loaded none.
    PluginUnderTest other;
    other.Load(*plugin.Store());
    PluginPresets others(*other, folder.GetName());
    others.LoadPrevious();
    EXPECT_EQ(other->GetCurrentPresetIndex(), 1);

    other->SetCurrentPresetIndex(99);
    others.LoadPrevious();
    EXPECT_EQ(other->GetCurrentPresetIndex(), 2) << "as if there were no current one";
}

TEST_F(PluginPresetsInAFile, ALoadTellsTheHostAndARefusedOneChangesNothing)
{
    ToldParameters host;
    plugin->SetAdapter(&host);
    presets.Load("folder/two");
    EXPECT_EQ(host.told.size(), static_cast<std::size_t>(plugin->GetParameterCount()));
    host.told.clear();
    EXPECT_THROW(presets.Load("folder/three"), MException);

    presets.GetManager().GetRoot().GetSubItems().front()->SetAttribute("compressed", 1);
    EXPECT_THROW(presets.LoadPrevious(), MException) << "it has no text to inflate";
    EXPECT_EQ(GetNote(), 2);
    EXPECT_EQ(plugin->GetCurrentPresetIndex(), 1);
    EXPECT_TRUE(host.told.empty());
    plugin->SetAdapter(nullptr);
}

TEST_F(PluginPresetsInAFile, ActivePresetsHoldStatesOrNames)
{
    const int notes[] = {2, 2, 50};
    for (int i = 0; i < 3; ++i)
    {
        presets.Load("one");
        presets.LoadActive(i);
        EXPECT_EQ(GetNote(), notes[i]);
        EXPECT_EQ(plugin->GetActivePresets().CurrentActivePreset, i);
    }
    for (const int none : {-1, 3, 4})
        EXPECT_THROW(presets.LoadActive(none), MException) << none;
    EXPECT_EQ(plugin->GetActivePresets().CurrentActivePreset, 2);
}

TEST(PluginPresets, WithoutFilesThereAreNone)
{
    const PluginUnderTest plugin;
    EXPECT_FALSE(plugin->GetPresets().LoadNext());
    EXPECT_FALSE(plugin->GetPresets().LoadPrevious());
    EXPECT_TRUE(plugin->GetPresets().GetActivePresets().Get().empty());
}

} // namespace
