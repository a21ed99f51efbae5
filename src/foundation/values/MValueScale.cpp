#include "foundation/values/MValueScale.h"

#include <algorithm>
#include <cmath>

MString MValueScale::GetAsString() const
{
    return inner->GetAsString();
}

void MValueScale::SetFromString(const MString& text)
{
    inner->SetFromString(text);
}

bool MValueScale::SetDefault()
{
    return inner->SetDefault();
}

void MValueScale::Store(MXMLItem& item) const
{
    inner->Store(item);
}

void MValueScale::Load(MXMLItem& item)
{
    inner->Load(item);
}

void MValueScale::InitFromXML(MXMLItem& item)
{
    inner->InitFromXML(item);
}

MString MValueScale::GetText() const
{
    return inner->GetText();
}

MString MValueScale::GetDisplayText() const
{
    return inner->GetDisplayText();
}

MValueContent MValueScale::GetContent() const
{
    return inner->GetContent();
}

MValueContent MValueScale::GetContentFrom01(double position) const
{
    return inner->GetContentFrom01(ToInner(position));
}

bool MValueScale::SetText(const MString& text)
{
    return inner->SetText(text);
}

bool MValueScale::ParseDisplayText(const MString& text)
{
    return inner->ParseDisplayText(text);
}

void MValueScale::Limit()
{
    inner->Limit();
}

bool MValueScale::StepScaled(int steps, double exponent)
{
    return inner->StepScaled(steps, exponent);
}

bool MValueScale::Step(int steps)
{
    return Set01(std::clamp(Get01() + steps * 0.001, 0.0, 1.0));
}

double MValueScale::Get01() const
{
    // A frequency below its range lies below 0.
    return FromInner(std::max(inner->Get01(), 0.0));
}

bool MValueScale::Set01(double position)
{
    return inner->Set01(ToInner(position));
}

int MValueScale::GetItemCount() const
{
    return inner->GetItemCount();
}

MValueContent MValueScale::GetItemContent(int index) const
{
    return inner->GetItemContent(index);
}

int MValueScale::IsSpecial() const
{
    return inner->IsSpecial();
}

bool MValueScale::SetItem(int index)
{
    return inner->SetItem(index);
}

double MValueScaleSqr::ToInner(double position) const
{
    return position * position;
}

double MValueScaleSqr::FromInner(double position) const
{
    return std::sqrt(position);
}

template <int Power>
double MValueScalePower<Power>::ToInner(double position) const
{
    double result = position;
    for (int i = 1; i < Power; ++i)
        result *= position;
    return result;
}

template <int Power>
double MValueScalePower<Power>::FromInner(double position) const
{
    return std::pow(position, 1.0 / Power);
}

template class MValueScalePower<4>;
