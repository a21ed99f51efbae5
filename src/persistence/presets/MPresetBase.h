#pragma once

class MXMLItem;

/// What a preset manager asks of the object whose presets it keeps. GUI thread.
class MPresetBase
{
public:
    MPresetBase() = default;
    MPresetBase(const MPresetBase&) = delete;
    MPresetBase& operator=(const MPresetBase&) = delete;
    virtual ~MPresetBase() = default;

    /// Makes @p preset the present state. It may be cleared; what names it comes afterwards.
    virtual void Store(MXMLItem& preset) = 0;
    /// Takes over the state in @p preset and shows it; nothing may change if that fails.
    /// @throws MException (any)
    virtual void Load(MXMLItem& preset) = 0;
};
