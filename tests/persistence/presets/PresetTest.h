#pragma once

#include <algorithm>

#include "foundation/threads/MException.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/MPresetManagerBase.h"
#include "persistence/presets/PresetTree.h"
#include "tests/persistence/ConfigurationFolder.h"

/// Has a number and a text to keep.
struct PresetOwner final : MPresetBase
{
    void Store(MXMLItem& preset) override
    {
        preset.Clear();
        preset.SetAttribute("State", state);
        preset.AddSubItem("Shape").SetText("one two");
    }
    void Load(MXMLItem& preset) override
    {
        state = static_cast<int>(preset.GetRequiredAttribute("State").ToInteger());
    }

    int state = 1;
};

/// The tree in short, such as "a{b c}d": the names of folders and presets.
inline std::string Outline(const MXMLItem& folder)
{
    std::string text;
    for (const auto& item : folder.GetSubItems())
    {
        text += text.empty() || text.back() == '}' ? "" : " ";
        text += presettree::GetName(*item).ToUTF8();
        if (presettree::IsFolder(*item))
            text.append("{").append(Outline(*item)).append("}");
    }
    return text;
}

/// The other way: a file with plain presets, whose states stand behind their names, as in "a{b=1}".
inline std::string FileOf(std::string_view outline)
{
    std::string text = "<presets>";
    while (!outline.empty())
    {
        const std::string_view word = outline.substr(0, outline.find_first_of(" {}"));
        const std::string name(word.substr(0, word.find('=')));
        outline.remove_prefix(word.size());
        if (outline.starts_with('{'))
            text.append("<Directory Name=\"").append(name).append("\">");
        else if (!word.empty())
            text.append("<preset name=\"")
                .append(name)
                .append("\" State=\"")
                .append(word.substr(std::min(word.size(), name.size() + 1)))
                .append("\"/>");
        if (outline.starts_with('}'))
            text += "</Directory>";
        outline.remove_prefix(outline.empty() ? 0 : 1);
    }
    return text + "</presets>";
}

/// A folder, the file "presets.xml" in it, and a manager of that.
struct PresetTest : testing::Test
{
    static constexpr const char* FileName = "presets.xml";

    std::string Read() const { return folder.ReadText(FileName); }
    void Write(std::string_view text) const { folder.WriteText(FileName, text); }
    /// What another program would see.
    std::string ReadOutline()
    {
        const MPresetManagerBase other(owner, "", folder.GetName());
        return Outline(other.GetRoot());
    }
    /// The state that the preset of this path holds, or 0.
    int StateOf(const MPresetManagerBase& manager, const MString& path)
    {
        MXMLItem* const preset = manager.Find(path);
        owner.state = 0;
        if (preset != nullptr)
            manager.LoadPreset(*preset);
        return owner.state;
    }

    ConfigurationFolder folder;
    PresetOwner owner;
};
