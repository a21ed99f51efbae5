#include "shell/multiparameters/MultiParameters.h"

#include "foundation/xml/MXMLItem.h"

namespace
{

constexpr const char* ListKey = "MultiParameters";
constexpr const char* ItemKey = "MultiParameter";

} // namespace

MultiParameters::MultiParameters(MAudioPlugin& drivenPlugin)
    : slots{MMultiParameter(drivenPlugin, 0), MMultiParameter(drivenPlugin, 1),
            MMultiParameter(drivenPlugin, 2), MMultiParameter(drivenPlugin, 3)}
{
}

void MultiParameters::InitProcessing(double sampleRate) noexcept
{
    for (MMultiParameter& slot : slots)
        slot.InitProcessing(sampleRate);
}

bool MultiParameters::Prepare()
{
    bool isAnyMoving = false;
    for (MMultiParameter& slot : slots)
    {
        if (!slot.Enabled)
            continue;
        slot.Follow();
        isAnyMoving |= slot.IsMoving();
    }
    return isAnyMoving;
}

void MultiParameters::Process(int samples)
{
    for (MMultiParameter& slot : slots)
    {
        if (!slot.Enabled)
            continue;
        slot.Follow();
        if (slot.IsMoving())
            slot.ProcessBlock(samples);
    }
}

void MultiParameters::Store(MXMLItem& settings) const
{
    MXMLItem& list = settings.GetOrAddSubItem(ListKey);
    list.Clear();
    for (const MMultiParameter& slot : slots)
        slot.Store(list.AddSubItem(ItemKey));
}

void MultiParameters::Load(MXMLItem& settings)
{
    MXMLItem none("none");
    const MXMLItem& list = settings.HasSubItem(ListKey) ? settings.GetSubItem() : none;
    auto item = list.GetSubItems().begin();
    const auto end = list.GetSubItems().end();
    const MString key = ItemKey;
    for (MMultiParameter& slot : slots)
    {
        while (item != end && !((*item)->GetName() == key))
            ++item;
        slot.Load(item != end ? **item++ : none);
    }
}
