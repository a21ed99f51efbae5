#pragma once

#include <cstdint>
#include <span>

#include "foundation/strings/MString.h"
#include "foundation/threads/MEventTarget.h"

class MParameterOwner;

/// How a host should treat a parameter.
enum class MAutomationType : std::int32_t
{
    Float = 1,
    Int = 2,
    Enum = 3,
    Bool = 4,
};

/// Something that a host can automate: one value, or a row of them, of which each is a number from
/// 0.0 to 1.0 with names and texts. It holds no value itself.
///
/// Each operation takes an index within the row; an index outside gives 0.0 or an empty text, and
/// writes nothing. Values are not limited here: whoever takes them from outside does that; but what
/// is not a number is never written. Any thread may call all of them; those that need a lock take
/// it.
class MAutomationAdapter : public MEventTarget
{
public:
    /// @p indexCount is 1 or more.
    explicit MAutomationAdapter(int indexCount) noexcept : count(indexCount) {}

    virtual void Update() {}
    /// @p quiet leaves out who watches the value: the effect's recalculation and the editor. Then
    /// the caller updates the effect.
    virtual void SetParameter(int index, double value01, bool quiet) = 0;
    struct IndexedValue
    {
        int index;
        double value01;
    };
    /// Sets several, as SetParameter does one after the other; but what follows from them all is
    /// done once.
    virtual void SetParameters(std::span<const IndexedValue> values, bool quiet);
    virtual double GetParameter(int index) const = 0;
    /// With the section: "Follower attack (Modulator 1)".
    virtual MString GetParameterName(int index) const;
    virtual MString GetParameterNameWithoutSection(int index) const;
    virtual MString GetParameterSection(int index) const;
    /// Never changes, so that stored targets find the parameter again: the id, or "section.name".
    virtual MString GetParameterID(int index) const;
    virtual MString GetParameterValueName(int index) const;
    /// What the value would show at @p value01.
    virtual MString GetParameterValueNameFrom01(int index, double value01) const;
    /// Where the value lies that shows as @p text, also outside 0.0 to 1.0; the present one if the
    /// text is blank or cannot be read. SetParameter takes it to that value.
    virtual double ParseParameterValueName(int index, const MString& text) const;
    virtual MString GetParameterUnitsName(int index) const;
    virtual bool IsModulatable(int index) const;
    /// From now on the effect hears what is set, while the value that the user left stays.
    virtual void SetModulated(int index, bool on);
    virtual MAutomationType GetParameterType(int index) const;
    virtual double GetParameterDefaultValue(int index) const;
    virtual bool IsRandomisable(int index) const;
    /// Moves what may be moved by at most @p amount, 0.0 to 1.0, either way.
    virtual void Randomize(double amount);

    /// GetParameter, or the nearest number that SetParameter, also by way of 32 bits, takes back to
    /// the same value: whole numbers are cut, so the plain one may fall short.
    virtual double GetRestorableParameter(int index) const;

    int GetCount() const noexcept { return count; }
    /// Place of the first index among all parameters of the plugin.
    int GetFirstIndex() const noexcept { return firstIndex; }
    void SetFirstIndex(int newFirstIndex) noexcept { firstIndex = newFirstIndex; }

    /// Who drives the effect, and outlives this; null for a ready-made object before it is wired,
    /// which then tells no one of its changes.
    MParameterOwner* GetOwner() const noexcept { return owner; }
    void SetOwner(MParameterOwner* newOwner) noexcept { owner = newOwner; }
    /// Goes when the owner refreshes its list of parameters.
    bool IsTemporary() const noexcept { return temporary; }
    void SetTemporary(bool on) noexcept { temporary = on; }

protected:
    bool Has(int index) const noexcept { return index >= 0 && index < count; }

private:
    int count;
    int firstIndex = 0;
    MParameterOwner* owner = nullptr;
    bool temporary = false;
};
