#pragma once

#include <cstdint>

#include "foundation/threads/MRelaxed.h"

class MXMLItem;

/// What the user chose in the view of active presets. Any thread.
struct ActivePresetChoice
{
    /// Writes the subitem "ActivePreset" of @p settings.
    void Store(MXMLItem& settings) const;
    /// Leaves all as it is if there is no such subitem.
    void Load(MXMLItem& settings);

    MRelaxed<bool> EditPresets = false;             ///< the full editor is shown instead
    MRelaxed<std::int32_t> CurrentActivePreset = 0; ///< in the list of active presets, from 0
};
