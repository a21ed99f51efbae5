#include "foundation/values/MValue.h"

MString MValue::GetText() const
{
    return HasTextCallback() ? GetTextCallback().get() : GetDisplayText();
}

MValueContent MValue::GetContent() const
{
    return {.text = GetText()};
}

bool MValue::SetText(const MString& text)
{
    bool isTaken = true;
    if (HasTextCallback())
        GetTextCallback().set(text);
    else
        isTaken = ParseDisplayText(text);
    Limit();
    return isTaken;
}

MValueContent MValue::GetItemContent(int index) const
{
    return GetContentFrom01(ItemPosition(index));
}

bool MValue::SetItem(int index)
{
    return Set01(ItemPosition(index));
}

double MValue::ItemPosition(int index) const
{
    const int count = GetItemCount();
    return count > 1 ? static_cast<double>(index) / (count - 1) : 0.0;
}
