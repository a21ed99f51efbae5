#include "shell/ActivePresetChoice.h"

#include <algorithm>
#include <limits>

#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr const char* ItemKey = "ActivePreset";
constexpr const char* EditKey = "Edit";
constexpr const char* CurrentKey = "CurrentActivePreset";

} // namespace

void ActivePresetChoice::Store(MXMLItem& settings) const
{
    MXMLItem& item = settings.GetOrAddSubItem(ItemKey);
    item.Clear();
    if (EditPresets)
        item.SetAttribute(EditKey, 1);
    if (CurrentActivePreset != 0)
        item.SetAttribute(CurrentKey, CurrentActivePreset);
}

void ActivePresetChoice::Load(MXMLItem& settings)
{
    if (!settings.HasSubItem(ItemKey))
        return;
    const MXMLItem& item = settings.GetSubItem();
    EditPresets = item.GetAttribute(EditKey, "0").ToInteger() != 0;
    CurrentActivePreset = static_cast<std::int32_t>(
        std::clamp<std::int64_t>(item.GetAttribute(CurrentKey, "0").ToInteger(), 0,
                                 std::numeric_limits<std::int32_t>::max()));
}
