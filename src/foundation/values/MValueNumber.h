#pragma once

#include <cstdint>
#include <optional>

#include "foundation/values/MValue.h"
#include "foundation/values/MValueBinding.h"

/// A number with a range, kept as @p Stored and worked on as @p Computed. Whole numbers are mapped
/// in 64 bits, and what would leave their type stops at its end.
template <typename Stored, typename Computed, bool IsIntegral>
class MValueNumber : public MValue
{
public:
    using Binding = MValueBinding<Stored>;

    /// Limits the variable; what it then holds is the default. Steps are a thousandth of the range,
    /// or 1 if that is nothing, the largest step ten times as much.
    explicit MValueNumber(Binding binding = {}, Computed lowest = 0, Computed highest = 100);

    MString GetAsString() const override;
    void SetFromString(const MString& text) override;
    bool SetDefault() override;
    void Store(MXMLItem& item) const override;
    void Load(MXMLItem& item) override;
    /// Also "min", "max", "default" and "value" (either is both, unless both are given), "inc",
    /// "maxinc", "format", as far as they are numbers, or a format that can be used. Does not
    /// limit.
    void InitFromXML(MXMLItem& item) override;

    MString GetDisplayText() const override { return TextOf(Get()); }
    MValueContent GetContentFrom01(double position) const override;
    bool ParseDisplayText(const MString& text) override;
    void Limit() override;
    /// Whole numbers: the factor is cut to a whole number as well, so that below 1 nothing moves.
    bool StepScaled(int steps, double exponent) override;
    /// Whole numbers: by one step in the direction of @p steps, however many these are.
    bool Step(int steps) override;
    double Get01() const override;
    bool Set01(double position) override;
    int GetItemCount() const override;

    Computed Get() const noexcept { return static_cast<Computed>(*variable); }
    /// Writes and limits.
    bool Set(Computed newValue);

    /// Whether the variable was written through this object since the owner last cleared this.
    bool IsChanged() const noexcept { return changed; }
    void ClearChanged() noexcept { changed = false; }

    Computed GetMin() const noexcept { return min; }
    Computed GetMax() const noexcept { return max; }
    Computed GetInc() const noexcept { return inc; }
    Computed GetMaxInc() const noexcept { return maxInc; }
    Computed GetDefault() const noexcept { return defaultValue; }
    const MString& GetFormat() const noexcept { return format; }

    void SetSteps(Computed newInc, Computed newMaxInc) noexcept;
    /// How the plain number is shown and read, with one argument. A format that is broken is not
    /// taken.
    void SetFormat(const MString& newFormat);

protected:
    // What a unit changes. All are pure functions of their argument.
    virtual MString TextOf(Computed value) const;
    /// What a typed number means; nothing if it is refused.
    virtual std::optional<Computed> FromTyped(Computed typed) const { return typed; }
    /// The value at a place, before it is limited.
    virtual Computed From01(double position) const;
    /// @p value within the range; 0 counts in the place of what is not a number.
    virtual Computed Limited(Computed value) const { return Clamped(value); }

    /// Writes as it is.
    void Put(Computed newValue) noexcept;

private:
    Computed Clamped(Computed value) const noexcept;
    void PutLimited(Computed limited) noexcept;
    void TakeDefault() noexcept;

    Stored local; ///< the variable of a value that is bound to none
    Stored* variable;
    bool changed = false;
    Computed min;
    Computed max;
    Computed inc{};
    Computed maxInc{};
    Computed defaultValue{};
    MString format = "{0}";
};

using MValueDouble = MValueNumber<double, double, false>;

extern template class MValueNumber<double, double, false>;
extern template class MValueNumber<float, double, false>;
extern template class MValueNumber<std::int32_t, std::int32_t, true>;
extern template class MValueNumber<std::int16_t, std::int32_t, true>;
extern template class MValueNumber<std::int64_t, std::int64_t, true>;
