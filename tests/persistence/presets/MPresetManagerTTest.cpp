#include "persistence/presets/MPresetManagerT.h"

#include "foundation/modules/MModule.h"
#include "persistence/presets/ActivePresetList.h"
#include "tests/persistence/presets/PresetTest.h"

namespace
{

struct Storing
{
    void Store(const MStorageDescriptor& storage)
    {
        if (storage.storing)
            storage.item.SetAttribute("Key", key);
        else
            key = storage.item.GetRequiredAttribute("Key");
    }

    MString key;
};

TEST(MPresetManagerT, StoresItsOwnerInTheFolderOfTheProduct)
{
    Storing owner{"before"};
    MPresetManagerT<Storing> manager(owner, "Tonvale");
    MXMLItem& preset = manager.AddPreset(manager.GetRoot(), "a");
    owner.key = "after";
    manager.LoadPreset(preset);
    EXPECT_EQ(owner.key, "before");
    EXPECT_TRUE(
        files::FileExists(files::PathJoin(MModule::Get().GetDataPath(), "Tonvalepresets.xml")));
}

TEST_F(PresetTest, ActivePresetsAreThoseWithAName)
{
    constexpr const char* Name = "Tonvalepresets.active";
    ActivePresetList list(folder.GetName());
    list.Load();
    EXPECT_TRUE(list.Get().empty());
    folder.WriteText(Name, "<presets><preset Name=\"a\" State=\"3\"/><preset/><other Name=\"b\"/>"
                           "<preset Name=\"c\"/></presets>");
    list.Load();
    folder.WriteText(Name, "<presets><preset Name=\"d\"/>");
    EXPECT_EQ(Thrown([&] { list.Load(); }), "Invalid file contents. The file is not complete.");
    ASSERT_EQ(list.Get().size(), 2u);
    EXPECT_EQ(list.Get()[1].name, "c");
    presettree::LoadPreset(*list.Get()[0].item, owner);
    EXPECT_EQ(owner.state, 3);
    folder.WriteText(Name, "");
    list.Load();
    EXPECT_TRUE(list.Get().empty());
}

} // namespace
