#pragma once

#include "effect/parameters/MAutomationAdapter.h"

/// What every parameter object is called by.
struct ParameterLabels
{
    MString name;
    MString section; ///< empty for none
    MString id;      ///< empty for the name behind its section
    MString help;    ///< rich text
    std::int32_t tag = 0;
};

/// The base of all parameter objects, the host's view of what an effect publishes as plain data.
/// Whoever drives the effect owns them; they point to the data, which live longer.
class ParameterMainBase : public MAutomationAdapter
{
public:
    /// Kinds beside those of records, which are their MParameterType.
    static constexpr std::int32_t SignalGeneratorKind = 4;
    static constexpr std::int32_t ADSRKind = 11;

    /// @p parameterOwner may come later.
    ParameterMainBase(std::int32_t objectKind, int indexCount, const ParameterLabels& objectLabels,
                      MParameterOwner* parameterOwner);

    MString GetParameterNameWithoutSection(int index) const final;
    MString GetParameterSection(int index) const final;
    MString GetParameterID(int index) const final;

    std::int32_t GetKind() const noexcept { return kind; }
    const MString& GetHelp() const noexcept { return labels.help; }
    std::int32_t GetTag() const noexcept { return labels.tag; }

protected:
    /// What the value @p index of a row adds to the name.
    virtual MString GetSuffix(int index) const;
    /// Tells everyone who watches.
    virtual void NotifyChange() = 0;
    /// An open editor should show the value anew.
    void UpdateEditor();
    /// A parameter that the owner keeps itself has changed.
    void InformOwner();

private:
    std::int32_t kind;
    ParameterLabels labels;
};
