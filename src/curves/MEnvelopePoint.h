#pragma once

#include <cstdint>

class MString;
class MXMLItem;

/// A control point of a curve, which also says how the segment that begins at it bends.
struct MEnvelopePoint
{
    enum FlagBits : std::uint8_t
    {
        Fixed = 1,        ///< an editor may not delete it
        Locked = 2,       ///< an editor neither moves nor deletes it
        LockSides = 4,    ///< SmoothX1 serves for both sides
        Proportional = 8, ///< the smaller of the two gaps limits the smoothing on both sides
        Selected = 16,    ///< in the editor
        Exempt = 64,      ///< MEnvelope::Sanitise leaves it where it is
        DefaultFlags = LockSides | Proportional,
    };

    /// How a segment runs from its point to the next; stored by name.
    enum class ControlType : std::int32_t
    {
        Mode1 = 0,   ///< second order
        Mode2 = 1,   ///< fourth order
        Mode3 = 2,   ///< powers
        Free1 = 3,   ///< quadratic Bezier
        Smooth1 = 4, ///< cubic with the slopes of its neighbours
        Smooth2 = 5, ///< cubic with the mean slopes of the secants
        Stairs = 6,
        Pulses = 7,
    };
    static constexpr int TypeCount = 8;

    /// What a control type is called, uses and is good for.
    struct TypeInfo
    {
        static constexpr unsigned UsesCurvatureX = 1;
        static constexpr unsigned UsesCurvature = 2;
        static constexpr unsigned FollowsNeighbours = 4; ///< no curvature handle of its own

        const char* name;
        unsigned capabilities;
        const char* description;
    };

    /// @p type is one of the enumerators.
    static const TypeInfo& GetTypeInfo(ControlType type) noexcept;
    /// Mode1 for a name that no type has.
    static ControlType FindType(const MString& name) noexcept;
    /// "Mode 1" or "Mode 2".
    static const char* GetSmoothingName(std::int32_t smoothingType) noexcept;

    /// Under an item that holds nothing yet. What has its default of zero is left out.
    void Store(MXMLItem& item) const;
    /// Replaces all fields. X and Y are any numbers, the others within their ranges.
    void Load(MXMLItem& item);

    bool Has(FlagBits flag) const noexcept { return (Flags & flag) != 0; }

    double X = 0.0;
    double Y = 0.0;
    std::uint8_t Flags = DefaultFlags;
    double CurvatureX = 0.0; ///< -1.0 to 1.0, of Free1 alone
    double Curvature = 0.0;  ///< -1.0 to 1.0
    double SmoothX1 = 0.0;   ///< share of the gap to the left that is smoothed, 0.0 to 1.0
    double SmoothX2 = 0.0;   ///< the same to the right
    ControlType Type = ControlType::Mode2;
    std::int32_t SmoothingType = 0; ///< 1 is faster, and bends more than needed
};
