#pragma once

#include <cstdint>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"
#include "foundation/threads/MLockGuard.h"
#include "foundation/threads/MRelaxed.h"
#include "shell/modulators/MModulatorTarget.h"

class MAudioPlugin;
class MXMLItem;

/// Stored by name.
enum class MMultiParameterMode : std::int32_t
{
    Normal = 0,  ///< the knob is the place
    Switch = 1,  ///< the place glides to the end that the knob is nearer to
    Trigger = 2, ///< the place glides up and back once, and the knob goes back to 0
};

/// What the knob shows. Stored by name.
enum class MMultiParameterValueMode : std::int32_t
{
    Percents = 0,
    ByFirstParameter = 1, ///< the text of the first target
};

/// A knob that moves any number of parameters, each in a range of its own, directly or by a glide.
/// It is a parameter of the plugin itself.
///
/// Any thread may turn the knob; glides go on with the blocks. Whatever moves targets holds the
/// plugin's processing lock and then one lock that all multiparameters of the process share.
class MMultiParameter final : public MAutomationAdapter
{
public:
    using TargetList = std::vector<MModulatorTarget>; ///< never empty

    static constexpr double MaxSwitchTime = 1000.0; ///< seconds

    /// @p slotIndex, from 0, gives the name while the user has given none. The plugin outlives it.
    MMultiParameter(MAudioPlugin& drivenPlugin, int slotIndex);

    /// Guards the targets and the glide.
    static MLock& GetMultiParameterLock() noexcept;

    void InitProcessing(double newSampleRate) noexcept { SampleRate = newSampleRate; }
    /// Before the pieces of a block: starts the glide that the knob asks for.
    void Follow();
    /// Goes on with the glide and writes to the targets. Under the processing lock.
    void ProcessBlock(int samples);
    /// Whether a glide cuts blocks into pieces.
    bool IsMoving() const noexcept { return Moving; }

    /// Writes to the targets; with @p notify editors hear of it.
    void Apply(bool notify);
    /// Starts a glide, or turns the one under way.
    void Toggle();

    /// Writes to @p item, in place of all that it held.
    void Store(MXMLItem& item) const;
    /// What is missing takes its default; no glide is under way then, and targets are left alone.
    /// @throws MException (256) as CheckSettingsTree does, with all as it was
    void Load(MXMLItem& item);
    /// The state as a text for the clipboard. GUI thread, as Paste. @throws MException as
    /// clipboardtext::Write does
    MString Copy() const;
    /// Takes over what Copy of a multiparameter made. @throws MException (256) as
    /// clipboardtext::Read and Load do, with all as it was
    void Paste(const MString& text);

    /// Calls @p edit with the list, under its lock. Not on the audio thread.
    template <typename Edit>
    void EditTargets(Edit&& edit)
    {
        const MLockGuard guard(GetMultiParameterLock());
        edit(Targets);
    }

    void SetParameter(int index, double value01, bool quiet) override;
    double GetParameter(int index) const override;
    MString GetParameterName(int index) const override;
    MString GetParameterID(int index) const override;
    MString GetParameterValueName(int index) const override;
    MString GetParameterValueNameFrom01(int index, double value01) const override;
    double ParseParameterValueName(int index, const MString& text) const override;
    MAutomationType GetParameterType(int index) const override;
    double GetParameterDefaultValue(int index) const override;

    // Any thread.
    MRelaxed<bool> Enabled = false; ///< in use
    MRelaxed<bool> Frozen = false;  ///< it moves nothing meanwhile; not stored
    MRelaxed<double> Value = 0.5;   ///< the knob, 0.0 to 1.0
    MRelaxed<double> DefaultValue = 0.5;
    MRelaxed<std::int32_t> Mode = 0;      ///< MMultiParameterMode
    MRelaxed<std::int32_t> ValueMode = 0; ///< MMultiParameterValueMode
    MRelaxed<double> SwitchTime = 1.0;    ///< seconds from one end to the other
    // Under the lock.
    MString Name;  ///< empty for the slot's own; a first '*' hides it from the active presets
    MString Group; ///< of slots that belong together there
    MString Info;  ///< for the user

private:
    bool IsMode(MMultiParameterMode mode) const noexcept
    {
        return Mode == static_cast<std::int32_t>(mode);
    }
    /// The end that the glide goes to, or else is at. Under the lock.
    bool IsUp() const noexcept { return Moving ? Direction > 0.0 : Position > 0.5; }

    MAudioPlugin& plugin;
    const int slot;
    TargetList Targets;            ///< under the lock, as the glide
    MRelaxed<bool> Moving = false; ///< read without it
    double Position = 0.0;         ///< of the glide, 0.0 to 1.0
    double Direction = 1.0;        ///< of the glide, 1.0 or -1.0
    double SampleRate = 44100.0;   ///< Hz
    bool Applying = false;         ///< under the lock; a target of the targets may be this one
};
