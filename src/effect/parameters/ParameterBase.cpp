#include "effect/parameters/ParameterBase.h"

#include <algorithm>
#include <cmath>

#include "effect/MAudioEffectPlugin.h"

namespace
{

bool IsBlank(const MString& text) noexcept
{
    return text.WithCharacters(
        [](auto characters)
        { return std::ranges::all_of(characters, [](auto c) { return c >= 0 && c <= u' '; }); });
}

} // namespace

ParameterRecordBase::ParameterRecordBase(MPluginParameterRecord& parameterRecord,
                                         MParameterOwner& parameterOwner)
    : ParameterMainBase(static_cast<std::int32_t>(parameterRecord.type), 1,
                        {.name = parameterRecord.name,
                         .section = parameterRecord.section,
                         .id = {},
                         .help = parameterRecord.help,
                         .tag = parameterRecord.tag},
                        &parameterOwner),
      record(&parameterRecord)
{
}

void ParameterRecordBase::SetParameter(int index, double value01, bool quiet)
{
    if (!Has(index) || std::isnan(value01))
        return;
    From01(*record, value01);
    if (!quiet)
        NotifyChange();
}

double ParameterRecordBase::GetParameter(int index) const
{
    return Has(index) ? To01(*record) : 0.0;
}

MString ParameterRecordBase::GetParameterValueName(int index) const
{
    return Has(index) ? GetText(*record) : MString();
}

MString ParameterRecordBase::GetParameterValueNameFrom01(int index, double value01) const
{
    if (!Has(index))
        return {};
    Draft draft;
    MakeDraft(draft);
    From01(draft.record, value01);
    return GetText(draft.record);
}

double ParameterRecordBase::ParseParameterValueName(int index, const MString& text) const
{
    // To a text function a blank text would mean to render.
    if (!Has(index) || IsBlank(text))
        return GetParameter(index);
    Draft draft;
    MakeDraft(draft);
    if (record->valueText != nullptr)
    {
        MString result;
        record->valueText(result, draft.record, text, record->format);
    }
    else
        ParsePlainText(draft.record, text);
    const double value01 = ToRestorable01(draft.record);
    return std::isnan(value01) ? GetParameter(index) : value01;
}

bool ParameterRecordBase::IsModulatable(int index) const
{
    return Has(index) && record->Has(MPluginParameterRecord::Modulatable);
}

void ParameterRecordBase::SetModulated(int index, bool on)
{
    if (Has(index))
        record->SetModulated(on);
}

bool ParameterRecordBase::IsRandomisable(int index) const
{
    return Has(index) && record->Has(MPluginParameterRecord::Randomisable);
}

double ParameterRecordBase::GetRestorableParameter(int index) const
{
    return Has(index) ? ToRestorable01(*record) : 0.0;
}

void ParameterRecordBase::UpdateEditorIfInformed()
{
    if (informEditor)
        UpdateEditor();
}

void ParameterRecordBase::MakeDraft(Draft& draft) const
{
    // Not modulated, so that what is tried is the value.
    draft.record.flags = record->flags & ~MPluginParameterRecord::Modulated;
    draft.record.type = record->type;
    draft.record.name = record->name;
    draft.record.valueText = record->valueText;
    draft.record.format = record->format;
    draft.record.tag = record->tag;
    draft.record.law = record->law;
    CopyRange(draft);
}

MString ParameterRecordBase::GetText(MPluginParameterRecord& from) const
{
    if (from.valueText == nullptr)
        return GetPlainText(from);
    MString result;
    from.valueText(result, from, {}, from.format);
    return result;
}

ParameterBase::ParameterBase(MAudioEffectPlugin& effect, MPluginParameterRecord& parameterRecord,
                             MParameterOwner& parameterOwner, int indexInTable)
    : ParameterRecordBase(parameterRecord, parameterOwner),
      plugin(effect),
      recordIndex(indexInTable)
{
}

void ParameterBase::NotifyChange()
{
    plugin.ParameterChanged(recordIndex);
    if (record->Has(MPluginParameterRecord::Recalculate))
        plugin.Update();
    UpdateEditorIfInformed();
}

ParameterBaseCustom::ParameterBaseCustom(MPluginParameterRecord& parameterRecord,
                                         MParameterOwner& parameterOwner)
    : ParameterRecordBase(parameterRecord, parameterOwner)
{
}

void ParameterBaseCustom::NotifyChange()
{
    InformOwner();
    UpdateEditorIfInformed();
}
