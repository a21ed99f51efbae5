#pragma once

#include <memory>
#include <utility>

#include "foundation/values/MValue.h"

/// Shows another value on a curved scale: places are bent, and everything else, such as texts,
/// storage, items and scaled steps, is that of the inner value, which it owns. Its own name and
/// text callback play no part.
class MValueScale : public MValue
{
public:
    MValue& GetInner() const noexcept { return *inner; }

    MString GetAsString() const override;
    void SetFromString(const MString& text) override;
    bool SetDefault() override;
    void Store(MXMLItem& item) const override;
    void Load(MXMLItem& item) override;
    void InitFromXML(MXMLItem& item) override;

    MString GetText() const override;
    MString GetDisplayText() const override;
    MValueContent GetContent() const override;
    MValueContent GetContentFrom01(double position) const override;
    bool SetText(const MString& text) override;
    bool ParseDisplayText(const MString& text) override;
    void Limit() override;
    bool StepScaled(int steps, double exponent) override;
    /// By thousandths of the bent range.
    bool Step(int steps) override;
    double Get01() const override;
    bool Set01(double position) override;
    int GetItemCount() const override;
    MValueContent GetItemContent(int index) const override;
    int IsSpecial() const override;
    bool SetItem(int index) override;

protected:
    /// @p newInner may not be null.
    explicit MValueScale(std::unique_ptr<MValue> newInner) noexcept : inner(std::move(newInner)) {}

private:
    /// The place of the inner value; keeps 0.0 and 1.0.
    virtual double ToInner(double position) const = 0;
    /// The inverse for 0.0 and above.
    virtual double FromInner(double position) const = 0;

    std::unique_ptr<MValue> inner;
};

/// More room for low values: the inner place is the square of this one.
class MValueScaleSqr : public MValueScale
{
public:
    explicit MValueScaleSqr(std::unique_ptr<MValue> newInner) noexcept
        : MValueScale(std::move(newInner))
    {
    }

private:
    double ToInner(double position) const override;
    double FromInner(double position) const override;
};

/// The same with a higher power.
template <int Power>
class MValueScalePower : public MValueScale
{
public:
    explicit MValueScalePower(std::unique_ptr<MValue> newInner) noexcept
        : MValueScale(std::move(newInner))
    {
    }

private:
    double ToInner(double position) const override;
    double FromInner(double position) const override;
};

extern template class MValueScalePower<4>;
