#pragma once

#include <memory>
#include <span>
#include <vector>

#include "effect/parameters/MAutomationAdapter.h"
#include "effect/parameters/MParameterOwner.h"
#include "foundation/threads/MLock.h"
#include "host/ParameterInterpolation.h"
#include "shell/midi/MMIDIProcessor.h"

/// All that a host can automate, by one index: the routing of parameters to the adapters that have
/// them. It knows no sound.
///
/// Any thread reads and writes parameters, without a lock: the list changes only while processing
/// is suspended and the processing lock is held. An index below 0 gives 0.0 or an empty text, one
/// behind the last goes to the last adapter, which answers as neutrally.
class MAudioPluginAutomation : public MMIDIProcessor, public MParameterOwner
{
public:
    using AutomationAdapter = MAutomationAdapter;

    // Routed; see MAutomationAdapter. A value that is set while the parameter is on its way in a
    // running block takes its place at the end of the block, and is read back at once.
    virtual void SetParameter(int index, double value01, bool quiet);
    /// The same for several of @p adapter, whose indices are those within it, in one go.
    void SetParameters(AutomationAdapter& adapter,
                       std::span<const AutomationAdapter::IndexedValue> values, bool quiet);
    virtual double GetParameter(int index) const;
    /// What SetParameter takes back to the same value, for hosts that echo what they read.
    double GetRestorableParameter(int index) const;
    virtual MString GetParameterName(int index) const;
    virtual MString GetParameterSection(int index) const;
    virtual MString GetParameterNameWithoutSection(int index) const;
    virtual MString GetParameterID(int index) const;
    virtual MString GetParameterValueName(int index) const;
    virtual MString GetParameterValueNameFrom01(int index, double value01) const;
    virtual double ParseParameterValueName(int index, const MString& text) const;
    virtual MString GetParameterUnitsName(int index) const;
    virtual MAutomationType GetParameterType(int index) const;
    virtual double GetParameterDefaultValue(int index) const;
    bool IsModulatable(int index) const;
    void SetModulated(int index, bool on);

    /// Sets only what differs by more than 1e-7, so that an echo does no harm.
    void SetParameterIfChanged(int index, double value01, bool quiet);
    /// One more than the highest index.
    int GetParameterCount() const noexcept { return parameterCount; }
    /// -1 if no parameter has this id, which is compared as text.
    int FindParameter(const MString& id) const;
    /// The same by its name with section.
    int FindParameterByName(const MString& name) const;

    /// Puts @p adapter, not owned, behind the others and tells it its first index. Before
    /// processing starts, or while it is suspended.
    void AddAdapter(AutomationAdapter& adapter);
    /// The same for one that DestroyTemporaryAutomationAdapters takes away again.
    void AddTemporaryAdapter(std::unique_ptr<AutomationAdapter> adapter);
    /// The others keep their indices. Forgets all pending editor updates.
    void DestroyTemporaryAutomationAdapters();
    const std::vector<AutomationAdapter*>& GetAdapters() const noexcept { return adapters; }
    /// Who answers for @p index, which is past its count if no parameter has it; null below 0.
    AutomationAdapter* FindAdapter(int index) const noexcept;

    /// Notes that an editor should show @p adapter anew. Any thread; does not allocate.
    void NeedUpdateEditor(AutomationAdapter& adapter) override;
    /// Takes those noted since the last call, each once. GUI thread.
    std::vector<AutomationAdapter*> TakePendingEditorUpdates();
    bool HasPendingEditorUpdates() const;

    /// Recalculates the effect after quiet changes.
    virtual void UpdateEffect() {}

    ParameterInterpolation& GetInterpolation() noexcept { return interpolation; }

protected:
    /// Whoever keeps pointers to temporary adapters drops them now.
    virtual void OnTemporaryAdaptersEnd() {}

private:
    /// What @p operation, a member of the adapter that has @p index, answers to the index within
    /// that adapter; 0.0, an empty text and the like for none.
    template <typename Result, typename... Parameters, typename... Arguments>
    Result Ask(int index, Result (AutomationAdapter::*operation)(int, Parameters...) const,
               const Arguments&... arguments) const;
    /// Index of the parameter whose @p text, a member of the adapters, is @p wanted; -1 for none.
    int FindByText(MString (AutomationAdapter::*text)(int) const, const MString& wanted) const;

    std::vector<AutomationAdapter*> adapters; ///< by rising first index
    std::vector<std::unique_ptr<AutomationAdapter>> temporaryAdapters;
    int parameterCount = 0;
    ParameterInterpolation interpolation{*this};
    mutable MLock adapterLock; ///< of pendingEditorUpdates; calls nothing while it is held
    std::vector<AutomationAdapter*> pendingEditorUpdates; ///< room for all adapters
};
