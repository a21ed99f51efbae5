#pragma once

#include <memory>
#include <span>
#include <vector>

#include "foundation/xml/MXMLItem.h"

/// The presets that the user has put at hand, of the file "Tonvalepresets.active". GUI thread.
class ActivePresetList
{
public:
    struct ActivePreset
    {
        MString name;
        /// Of the list, as long as it is not loaded anew; for presettree::LoadPreset. Holds no more
        /// than the name where a preset of the file of presets is meant.
        MXMLItem* item;
    };

    /// In the folder of the product; nothing is read yet.
    ActivePresetList();
    explicit ActivePresetList(const MString& folder);

    /// Reads the file; one that is missing or empty makes the list empty.
    /// @throws MException as ReadPresetTree does; the list then stays
    void Load();
    std::span<const ActivePreset> Get() const noexcept { return presets; }

private:
    const MString fileName;
    std::unique_ptr<MXMLItem> root; ///< null for an empty list
    std::vector<ActivePreset> presets;
};
