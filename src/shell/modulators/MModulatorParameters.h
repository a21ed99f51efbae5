#pragma once

#include <vector>

#include "effect/parameters/MAutomationAdapter.h"
#include "foundation/threads/MRelaxed.h"

struct MModulatorText;

/// One number of a modulator, as a parameter. All that it points to outlives it.
struct MModulatorParameter
{
    const char* group = nullptr; ///< before the key; null for none
    const char* key = nullptr;   ///< as stored, unique within the group
    const char* name = nullptr;
    MRelaxed<double>* number = nullptr;
    double min = 0.0;
    double max = 1.0;
    double defaultNumber = 0.0;
    const MModulatorText* text = nullptr;
};

/// Some of the settings of a modulator as a row of parameters.
///
/// They are linear between the ends of their ranges, to which what is set is limited. Writing is
/// one store, without a lock and without an allocation, and counts from the next block on. There
/// are no alternates, so a modulator moves the setting itself.
class MModulatorParameters final : public MAutomationAdapter
{
public:
    /// @p modulatorIndex, from 0, gives section and ids. The owner outlives it.
    MModulatorParameters(int modulatorIndex, std::vector<MModulatorParameter> published,
                         MParameterOwner& parameterOwner);

    void SetParameter(int index, double value01, bool quiet) override;
    double GetParameter(int index) const override;
    MString GetParameterNameWithoutSection(int index) const override;
    MString GetParameterSection(int index) const override;
    MString GetParameterID(int index) const override;
    MString GetParameterValueName(int index) const override;
    MString GetParameterValueNameFrom01(int index, double value01) const override;
    double ParseParameterValueName(int index, const MString& text) const override;
    bool IsModulatable(int index) const override { return Has(index); }
    MAutomationType GetParameterType(int index) const override;
    double GetParameterDefaultValue(int index) const override;

    /// "Modulator 1" for 0.
    static MString GetSection(int modulatorIndex);
    /// What its ids begin with: "Modulator1." for 0.
    static MString GetIDPrefix(int modulatorIndex);

private:
    const MModulatorParameter& At(int index) const noexcept
    {
        return parameters[static_cast<std::size_t>(index)];
    }

    int place;
    std::vector<MModulatorParameter> parameters;
};
