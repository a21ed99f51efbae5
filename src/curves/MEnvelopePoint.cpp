#include "curves/MEnvelopePoint.h"

#include <algorithm>
#include <array>
#include <cstddef>

#include "foundation/xml/MXMLItem.h"

namespace
{

using TypeInfo = MEnvelopePoint::TypeInfo;

constexpr unsigned Bendable = TypeInfo::UsesCurvature | TypeInfo::FollowsNeighbours;
constexpr const char* Smooth =
    "Fast, no curvature, provides smooth connection between neighboring segments.";

constexpr std::array<TypeInfo, MEnvelopePoint::TypeCount> Types = {{
    {"Mode 1", Bendable, "Fastest, minimal curvature freedom."},
    {"Mode 2", Bendable, "Fast, average curvature freedom."},
    {"Mode 3", Bendable, "Very slow, very high curvature freedom."},
    {"Free 1", TypeInfo::UsesCurvatureX | TypeInfo::UsesCurvature,
     "Normal speed, curvature adjustable in both axes."},
    {"Smooth 1", TypeInfo::FollowsNeighbours, Smooth},
    {"Smooth 2", TypeInfo::FollowsNeighbours, Smooth},
    {"Stairs", TypeInfo::UsesCurvature, "Stairs-like image, curvature controls number of stairs."},
    {"Pulses", TypeInfo::UsesCurvature, "Pulses, curvature controls number of pulses."},
}};

void StoreUnlessZero(MXMLItem& item, const char* key, double value)
{
    if (value != 0.0)
        item.SetAttribute(key, value);
}

double LoadNumber(const MXMLItem& item, const char* key)
{
    const MString* const text = item.FindAttribute(key);
    return text != nullptr ? text->ToDouble() : 0.0;
}

std::uint8_t LoadFlags(const MXMLItem& item)
{
    const auto read = [](const MString& text)
    { return static_cast<std::uint8_t>(std::clamp<std::int64_t>(text.ToInteger(), 0, 255)); };
    if (const MString* const flags = item.FindAttribute("Flags"))
        return read(*flags);
    // Older files know only whether a point is fixed.
    const MString* const fixed = item.FindAttribute("fixed");
    return (fixed != nullptr ? read(*fixed) : std::uint8_t{0}) | MEnvelopePoint::DefaultFlags;
}

} // namespace

const MEnvelopePoint::TypeInfo& MEnvelopePoint::GetTypeInfo(ControlType type) noexcept
{
    return Types[static_cast<std::size_t>(type)];
}

MEnvelopePoint::ControlType MEnvelopePoint::FindType(const MString& name) noexcept
{
    const auto* const found =
        std::ranges::find_if(Types, [&name](const TypeInfo& type) { return name == type.name; });
    return found == Types.end() ? ControlType::Mode1
                                : static_cast<ControlType>(found - Types.begin());
}

const char* MEnvelopePoint::GetSmoothingName(std::int32_t smoothingType) noexcept
{
    return smoothingType == 1 ? "Mode 2" : "Mode 1";
}

void MEnvelopePoint::Store(MXMLItem& item) const
{
    StoreUnlessZero(item, "c", Curvature);
    StoreUnlessZero(item, "cx", CurvatureX);
    item.SetAttribute("Flags", Flags);
    item.SetAttribute("SmoothingType", GetSmoothingName(SmoothingType));
    StoreUnlessZero(item, "SmoothX1", SmoothX1);
    if (!Has(LockSides))
        StoreUnlessZero(item, "SmoothX2", SmoothX2);
    item.SetAttribute("Type", GetTypeInfo(Type).name);
    StoreUnlessZero(item, "x", X);
    StoreUnlessZero(item, "y", Y);
}

void MEnvelopePoint::Load(MXMLItem& item)
{
    X = LoadNumber(item, "x");
    Y = LoadNumber(item, "y");
    Curvature = std::clamp(LoadNumber(item, "c"), -1.0, 1.0);
    CurvatureX = std::clamp(LoadNumber(item, "cx"), -1.0, 1.0);
    if (const MString* const type = item.FindAttribute("Type"))
        Type = FindType(*type);
    else // files older than the types
        Type = Curvature == 0.0 ? ControlType::Mode2 : ControlType::Mode3;
    Flags = LoadFlags(item);
    const MString* const smoothing = item.FindAttribute("SmoothingType");
    SmoothingType = smoothing != nullptr && *smoothing == GetSmoothingName(1) ? 1 : 0;
    SmoothX1 = std::clamp(LoadNumber(item, "SmoothX1"), 0.0, 1.0);
    SmoothX2 = Has(LockSides) ? SmoothX1 : std::clamp(LoadNumber(item, "SmoothX2"), 0.0, 1.0);
}
