#pragma once

#include "foundation/xml/MStorageDescriptor.h"
#include "persistence/presets/MPresetBase.h"
#include "persistence/presets/MPresetManagerBase.h"

/// What stores itself in one routine for both directions.
template <typename T>
concept MPresetOwner = requires(T& owner, const MStorageDescriptor& storage)
{
    owner.Store(storage);
};

/// The presets of an object of type T.
template <MPresetOwner T>
class MPresetManagerT final : private MPresetBase, public MPresetManagerBase
{
public:
    /// @p presetOwner has to outlive this.
    MPresetManagerT(T& presetOwner, const MString& prefix)
        : MPresetManagerBase(static_cast<MPresetBase&>(*this), prefix),
          stored(presetOwner)
    {
    }
    MPresetManagerT(T& presetOwner, const MString& prefix, const MString& folder)
        : MPresetManagerBase(static_cast<MPresetBase&>(*this), prefix, folder),
          stored(presetOwner)
    {
    }

private:
    void Store(MXMLItem& preset) override { stored.Store({.storing = true, .item = preset}); }
    void Load(MXMLItem& preset) override { stored.Store({.storing = false, .item = preset}); }

    T& stored;
};
