#pragma once

#include <cstdint>

#include "foundation/strings/MString.h"
#include "foundation/threads/MRelaxed.h"

class MXMLItem;
struct MPluginParameterRecord;

/// Renders or parses the value of a record. With an empty @p input it writes the display text of
/// the present value to @p result; otherwise it parses @p input into the value (an unreadable text
/// leaves it) and empties @p result. @p format is the record's own.
using MValueTextFunction = void (*)(MString& result, MPluginParameterRecord& record,
                                    const MString& input, const MString& format);

enum class MParameterType : std::int32_t
{
    Empty = 0,
    Float = 1,
    Int = 2,
    Enum = 3,
    Bool = 4,
    BoolElsewhere = 5,
    Heading = 6, ///< published by no effect
    Text = 7,
};

/// How a float's normalised value bends: x, x squared, x to the fourth.
enum class MParameterLaw : std::int32_t
{
    Linear = 0,
    Squared = 1,
    FourthPower = 2,
};

/// One parameter as an effect publishes it, and the only place that holds its value.
/// The effect owns it. Any thread may read and write values and flags without a lock, and a write
/// counts from the next Update or block on. All else is fixed once the effect is published.
struct MPluginParameterRecord
{
    static constexpr std::uint32_t Published = 1u << 0; ///< the shell builds an object for it
    static constexpr std::uint32_t Modulatable = 1u << 3;
    /// The alternate value is in force; value stays what the user set.
    static constexpr std::uint32_t Modulated = 1u << 4;
    static constexpr std::uint32_t Recalculate = 1u << 5; ///< a change runs Update
    static constexpr std::uint32_t Randomisable = 1u << 6;
    static constexpr std::uint32_t SectionStart = 1u << 11;
    static constexpr std::uint32_t DefaultFlags = 0x0561;

    struct FloatRange
    {
        double min, max, defaultValue;
        MRelaxed<double> value;
        MRelaxed<double> alternate; ///< in force while Modulated is set
        double rampStart; ///< value at which the last gain ramp ended; under the plugin's lock
    };
    struct IntRange
    {
        std::int32_t min, max, defaultValue;
        MRelaxed<std::int32_t> value;
        MRelaxed<std::int32_t> alternate; ///< in force while Modulated is set
    };
    struct EnumRange
    {
        const char* const* names; ///< count of them
        std::int32_t count, defaultValue;
        MRelaxed<std::int32_t> value;
        bool loadedByName;
    };
    struct BoolRange
    {
        bool defaultValue;
        MRelaxed<bool> value;
    };
    union Range
    {
        FloatRange asFloat{};
        IntRange asInt;
        EnumRange asEnum;
        BoolRange asBool;
        std::uint8_t* elsewhere; ///< the byte of a BoolElsewhere, not owned, or null
    };

    /// An empty record becomes a parameter that stands at its default.
    void SetFloat(const MString& parameterName, double min, double max, double defaultValue);
    void SetInt(const MString& parameterName, std::int32_t min, std::int32_t max,
                std::int32_t defaultValue);

    bool Has(std::uint32_t flag) const noexcept { return (flags & flag) != 0; }
    /// What the user set a float or int to; others have no number.
    double GetNumber() const noexcept;
    /// Takes what GetNumber returned.
    void SetNumber(double number) noexcept;
    /// Value of a float or int as the effect hears it.
    double Effective() const noexcept;
    /// Turns modulation on or off; it starts from the value where the user left it.
    void SetModulated(bool on) noexcept;

    /// Under "parameter" + key (enums: + "Enum", by name). Headings are not stored.
    void Store(MXMLItem& item) const;
    /// Missing or unknown values become the default, others are limited to the range.
    void Load(MXMLItem& item);
    /// Moves a randomisable value at random by at most @p amount (0.0 to 1.0) of its range.
    void Randomize(double amount) noexcept;

    MRelaxed<std::uint32_t> flags = DefaultFlags;
    MParameterType type = MParameterType::Empty;
    MString name;
    MString key;  ///< what it is stored under
    MString help; ///< rich text
    MString section;
    std::uint32_t reserved = 0;
    MValueTextFunction valueText = nullptr; ///< also tells the law of a gain, see MRampedGain
    MString format;
    std::int32_t tag = 0;
    Range range;
    MParameterLaw law = MParameterLaw::Linear;
    MString text; ///< value of a Text
    std::uint32_t reservedEnd = 0;
};
