#include "host/MAudioPluginHostSync.h"

#include <cmath>
#include <iterator>

#include "foundation/xml/MXMLItem.h"

namespace
{

struct SyncLength
{
    const char* name;
    double cycles; ///< in four quarters
};

constexpr SyncLength Lengths[] = {
    {"8/1", 0.125}, {"8/1D", 0.125 / 1.5}, {"8/1T", 0.125 * 1.5}, //
    {"4/1", 0.25},  {"4/1D", 0.25 / 1.5},  {"4/1T", 0.25 * 1.5},  //
    {"2/1", 0.5},   {"2/1D", 0.5 / 1.5},   {"2/1T", 0.5 * 1.5},   //
    {"1/1", 1.0},   {"1/1D", 1.0 / 1.5},   {"1/1T", 1.0 * 1.5},   //
    {"1/2", 2.0},   {"1/2D", 2.0 / 1.5},   {"1/2T", 2.0 * 1.5},   //
    {"1/4", 4.0},   {"1/4D", 4.0 / 1.5},   {"1/4T", 4.0 * 1.5},   //
    {"1/8", 8.0},   {"1/8D", 8.0 / 1.5},   {"1/8T", 8.0 * 1.5},   //
    {"1/16", 16.0}, {"1/16D", 16.0 / 1.5}, {"1/16T", 16.0 * 1.5}, //
    {"1/32", 32.0}, {"1/32D", 32.0 / 1.5}, {"1/32T", 32.0 * 1.5},
};
static_assert(std::size(Lengths) == MAudioPluginHostSync::LengthCount);

constexpr bool Has(int index) noexcept
{
    return index >= 0 && index < MAudioPluginHostSync::LengthCount;
}

} // namespace

MString MAudioPluginHostSync::GetLengthName(int index) noexcept
{
    return Has(index) ? Lengths[index].name : "";
}

int MAudioPluginHostSync::FindLength(const MString& name) noexcept
{
    for (int index = 0; index < LengthCount; ++index)
        if (name == Lengths[index].name)
            return index;
    return -1;
}

double MAudioPluginHostSync::GetSyncLength() const noexcept
{
    const int index = Length;
    return Lengths[Has(index) ? index : DefaultLength].cycles;
}

void MAudioPluginHostSync::Store(MXMLItem& item) const
{
    const int index = Length;
    item.SetAttribute("Enabled", Enabled ? 1 : 0);
    item.SetAttribute("Length", GetLengthName(Has(index) ? index : DefaultLength));
    item.SetAttribute("Phase", Phase);
}

void MAudioPluginHostSync::Load(MXMLItem& item)
{
    Enabled = item.GetAttribute("Enabled", "0").ToInteger() != 0;
    const int index = FindLength(item.GetAttribute("Length", {}));
    Length = Has(index) ? index : DefaultLength;
    const double phase = item.GetAttribute("Phase", "0").ToDouble();
    Phase = phase - std::floor(phase);
}
