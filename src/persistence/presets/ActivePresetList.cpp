#include "persistence/presets/ActivePresetList.h"

#include "persistence/presets/PresetFile.h"
#include "persistence/presets/PresetTree.h"

ActivePresetList::ActivePresetList() : ActivePresetList(FindProductFolder()) {}

ActivePresetList::ActivePresetList(const MString& folder)
    : fileName(folder.IsEmpty() ? MString() : files::PathJoin(folder, "Tonvalepresets.active"))
{
}

void ActivePresetList::Load()
{
    const bool isThere = !fileName.IsEmpty() && files::GetStamp(fileName).size > 0;
    std::unique_ptr<MXMLItem> loaded = isThere ? ReadPresetTree(fileName) : nullptr;
    presets.clear();
    root = std::move(loaded);
    if (root == nullptr)
        return;
    for (const auto& item : root->GetSubItems())
        if (presettree::IsPreset(*item))
            if (const MString* const name = item->FindAttribute("Name"))
                presets.push_back({*name, item.get()});
}
