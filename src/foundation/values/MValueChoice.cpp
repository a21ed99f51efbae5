#include "foundation/values/MValueChoice.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "foundation/values/NumberReading.h"
#include "foundation/values/Rounding.h"
#include "foundation/xml/MXMLItem.h"

MString MValueChoice::GetAsString() const
{
    return MString::FromInteger(GetIndex());
}

void MValueChoice::SetFromString(const MString& text)
{
    std::int64_t index = 0;
    numberreading::Read(text, index);
    Put(Saturated<int>(index));
}

bool MValueChoice::SetDefault()
{
    return Set(defaultIndex);
}

void MValueChoice::Load(MXMLItem& item)
{
    if (!item.HasAttribute(GetId()))
    {
        SetDefault();
        return;
    }
    std::int64_t index = 0;
    if (numberreading::Scan("{0}", item.GetAttribute(), index))
        Put(Saturated<int>(index));
}

void MValueChoice::InitFromXML(MXMLItem& item)
{
    MStorable::InitFromXML(item);
    const bool hasDefault = item.HasAttribute("default");
    if (hasDefault)
    {
        defaultIndex = IndexOf(item.GetAttribute());
        Put(defaultIndex);
    }
    if (item.HasAttribute("value"))
    {
        const int index = IndexOf(item.GetAttribute());
        Put(index);
        if (!hasDefault)
            defaultIndex = index;
    }
    Limit();
}

MValueContent MValueChoice::GetContentFrom01(double position) const
{
    return {.text = TextOf(Limited(IndexFrom01(position)))};
}

bool MValueChoice::ParseDisplayText(const MString& text)
{
    return Set(IndexOf(text));
}

void MValueChoice::Limit()
{
    const int limited = Limited(GetIndex());
    if (limited != GetIndex())
        Put(limited);
}

bool MValueChoice::StepScaled(int steps, double /*exponent*/)
{
    return Step(steps);
}

bool MValueChoice::Step(int steps)
{
    return Set(Saturated<int>(std::int64_t{GetIndex()} + steps));
}

double MValueChoice::Get01() const
{
    return static_cast<double>(GetIndex()) / (GetCount() - 1);
}

bool MValueChoice::Set01(double position)
{
    return !std::isnan(position) && Set(IndexFrom01(position));
}

void MValueChoice::TakeDefault()
{
    Limit();
    defaultIndex = GetIndex();
}

int MValueChoice::IndexFrom01(double position) const
{
    return Truncated<int>(position * (GetCount() - 1) + 0.5);
}

int MValueChoice::Limited(int index) const
{
    return std::clamp(index, 0, std::max(GetCount() - 1, 0));
}

MString MValueChoice::TextOf(int index) const
{
    return index >= 0 && index < GetCount() ? NameOf(index) : MString();
}

int MValueChoice::IndexOf(const MString& name) const
{
    return std::max(Find(name), 0);
}

void MValueChoice::Put(int index)
{
    PutIndex(index);
    changed = true;
}

bool MValueChoice::Set(int index)
{
    const int before = GetIndex();
    Put(Limited(index));
    return GetIndex() != before;
}
