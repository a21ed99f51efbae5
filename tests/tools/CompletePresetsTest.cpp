#include "tools/presets/CompletePresets.h"

#include <gtest/gtest.h>

#include "foundation/streams/MMemoryStream.h"
#include "foundation/xml/MXMLItem.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/PresetTree.h"
#include "tests/persistence/ConfigurationFolder.h"

namespace
{

/// What @p text, the contents of the topmost folder, becomes.
void Complete(const std::string& text, MXMLItem& root)
{
    const std::string whole = "<presets>" + text + "</presets>";
    MMemoryStream stream = MMemoryStream::Refer(std::as_bytes(std::span(whole)));
    root.Load(stream);
    CompletePresets(root);
}

TEST(CompletePresets, FillsInThePresetAndEachOfItsSlots)
{
    MXMLItem root("");
    Complete(R"(<Directory Name="F"><preset name="P" parameterWet="0.25">
        <Shape value="3"/><Preset2 parameterOctaves="2"/></preset></Directory>)",
             root);
    struct : MPresetBase
    {
        void Store(MXMLItem& /*preset*/) override {}
        void Load(MXMLItem& preset) override { state.CopyContents(preset); }
        MXMLItem state{"settings"};
    } owner;
    presettree::LoadPreset(*presettree::FindPreset(root, "F/P"), owner);
    MXMLItem& state = owner.state;
    EXPECT_EQ(state.GetAttribute("name", ""), "P");
    EXPECT_DOUBLE_EQ(state.GetAttribute("parameterWet", "").ToDouble(), 0.25);
    EXPECT_EQ(state.GetAttribute("parameterOctaves", ""), "0") << "as in a new plugin";

    // Slots that the source leaves out hold the same as the preset.
    for (const auto& [slot, octaves, shape] :
         {std::tuple("Preset1", "0", 3.0), {"Preset2", "2", 5.0}, {"Preset7", "0", 3.0}})
    {
        MXMLItem& item = state.GetRequiredSubItem(slot);
        EXPECT_EQ(item.GetAttribute("parameterOctaves", ""), octaves) << slot;
        EXPECT_EQ(item.GetRequiredSubItem("Shape").GetAttribute("value", "").ToDouble(), shape)
            << slot;
    }
}

TEST(CompletePresets, RefusesWhatWouldBeLost)
{
    struct Case
    {
        const char* text;
        const char* complaint;
    };
    const Case cases[] = {
        {R"(<preset name="P" parameterWett="1"/>)", "\"P\": The plugin does not keep \"param"},
        {R"(<preset name="P" parameterWet="1.5"/>)", "does not keep \"parameterWet\""},
        {R"(<preset name="P"><Shap value="1"/></preset>)", "does not keep \"Shap\""},
        {R"(<preset name="P"><Preset1 NoteIndx="1"/></preset>)", "does not keep \"NoteIndx\""},
        {R"(<preset name="P"><LFOs><LFO><Parameter ParameterName="Wett"/></LFO></LFOs></preset>)",
         "There is no parameter \"Wett\"."},
        {R"(<preset parameterWet="1"/>)", "A preset of \"\" has no name."},
        {R"(<preset name="P"/><preset name="P"/>)", "There are two presets \"P\"."},
        {R"(<Directory Name="F"><prest name="P"/></Directory>)", "\"prest\" is neither"},
    };
    for (const Case& row : cases)
    {
        MXMLItem root("");
        const std::string thrown = Thrown([&] { Complete(row.text, root); });
        EXPECT_NE(thrown.find(row.complaint), std::string::npos) << thrown;
    }
}

} // namespace
