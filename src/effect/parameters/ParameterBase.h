#pragma once

#include "effect/MPluginParameterRecord.h"
#include "effect/parameters/ParameterMainBase.h"

class MAudioEffectPlugin;

/// The parameter object over one record: the flow of reading, writing and texts. How a value of the
/// record's type maps and shows is told by what derives from it.
class ParameterRecordBase : public ParameterMainBase
{
public:
    void SetParameter(int index, double value01, bool quiet) final;
    double GetParameter(int index) const final;
    MString GetParameterValueName(int index) const final;
    MString GetParameterValueNameFrom01(int index, double value01) const final;
    double ParseParameterValueName(int index, const MString& text) const final;
    bool IsModulatable(int index) const final;
    void SetModulated(int index, bool on) final;
    bool IsRandomisable(int index) const final;
    double GetRestorableParameter(int index) const final;

    const MPluginParameterRecord& GetRecord() const noexcept { return *record; }
    /// Whether a change refreshes an open editor, as it does from the start.
    void SetInformEditor(bool on) noexcept { informEditor = on; }

    /// A record to try values on, while other threads may write to the original.
    struct Draft
    {
        MPluginParameterRecord record;
        std::uint8_t byte = 0; ///< in the place of the one elsewhere
    };

protected:
    ParameterRecordBase(MPluginParameterRecord& parameterRecord, MParameterOwner& parameterOwner);

    virtual double To01(const MPluginParameterRecord& from) const noexcept = 0;
    /// Writes the value, or the alternate while modulated.
    virtual void From01(MPluginParameterRecord& to, double value01) const noexcept = 0;
    /// To01, or a number near by that From01 takes back to the same value.
    virtual double ToRestorable01(const MPluginParameterRecord& from) const noexcept = 0;
    /// The text where the record has no function for it.
    virtual MString GetPlainText(const MPluginParameterRecord& from) const = 0;
    /// Leaves the value if @p text cannot be read.
    virtual void ParsePlainText(MPluginParameterRecord& to, const MString& text) const = 0;
    /// Into a draft that has all else.
    virtual void CopyRange(Draft& to) const noexcept = 0;

    void UpdateEditorIfInformed();

    MPluginParameterRecord* record; ///< of the effect

private:
    void MakeDraft(Draft& draft) const;
    MString GetText(MPluginParameterRecord& from) const;

    bool informEditor = true;
};

/// A parameter of the effect: a change goes to the effect's ParameterChanged, then, if the record
/// asks for it, to its Update, then to the editor.
class ParameterBase : public ParameterRecordBase
{
public:
    /// All of them outlive it. @p indexInTable is the index of the record in the effect's list.
    ParameterBase(MAudioEffectPlugin& effect, MPluginParameterRecord& parameterRecord,
                  MParameterOwner& parameterOwner, int indexInTable);

    int GetRecordIndex() const noexcept { return recordIndex; }

protected:
    void NotifyChange() final;

private:
    MAudioEffectPlugin& plugin;
    int recordIndex;
};

/// A parameter that the owner keeps itself: a change goes to the owner instead of the effect.
class ParameterBaseCustom : public ParameterRecordBase
{
public:
    /// Both outlive it.
    ParameterBaseCustom(MPluginParameterRecord& parameterRecord, MParameterOwner& parameterOwner);

protected:
    void NotifyChange() final;
};
