#include "effect/parameters/ParameterMainBase.h"

#include "effect/parameters/MParameterOwner.h"

ParameterMainBase::ParameterMainBase(std::int32_t objectKind, int indexCount,
                                     const ParameterLabels& objectLabels,
                                     MParameterOwner* parameterOwner)
    : MAutomationAdapter(indexCount),
      kind(objectKind),
      labels(objectLabels)
{
    SetOwner(parameterOwner);
}

MString ParameterMainBase::GetParameterNameWithoutSection(int index) const
{
    if (!Has(index))
        return {};
    MString name = labels.name;
    name.Append(GetSuffix(index));
    return name;
}

MString ParameterMainBase::GetParameterSection(int index) const
{
    return Has(index) ? labels.section : MString();
}

MString ParameterMainBase::GetParameterID(int index) const
{
    if (!Has(index) || labels.id.IsEmpty())
        return MAutomationAdapter::GetParameterID(index);
    MString id = labels.id;
    id.Append(GetSuffix(index));
    return id;
}

MString ParameterMainBase::GetSuffix(int /*index*/) const
{
    return {};
}

void ParameterMainBase::UpdateEditor()
{
    if (GetOwner() != nullptr)
        GetOwner()->NeedUpdateEditor(*this);
}

void ParameterMainBase::InformOwner()
{
    if (GetOwner() != nullptr)
        GetOwner()->OnCustomParameterChanged(*this);
}
