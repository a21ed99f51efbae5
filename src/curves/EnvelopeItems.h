#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <new>

#include "curves/MEnvelopeComputer.h"
#include "dsp/kernels/Polynomials.h"

/// Room for an item of any kind.
struct EnvelopeItemSlot
{
    alignas(double) std::array<std::byte, 80> bytes;
};

/// A place on a curve.
struct EnvelopePlace
{
    double x;
    double y;
};

/// One segment of a compiled curve: a function of x, which is used below EndX. It lives in a slot
/// of its computer, holds plain numbers alone, and is given up without its destructor.
///
/// Items reckon from their own start, never from x = 0: a curve over samples has segments a few
/// samples wide at x of millions, where a fourth power of x has no digits left for them.
class MEnvelopeComputer::Item
{
public:
    virtual ~Item() = default;

    /// Makes a copy in @p place.
    virtual Item* Clone(EnvelopeItemSlot& place) const = 0;
    /// Writes the values at x, x + dx, ...; @p dx is above 0.
    virtual void FillFloat(float* out, double x, double dx, int count) const = 0;
    virtual void FillDouble(double* out, double x, double dx, int count) const = 0;
    /// Replaces positions by the values there.
    virtual void MapFloat(float* values, int count) const = 0;
    virtual double Get(double x) const = 0;
    /// Numeric, unless the kind knows better.
    virtual double LeftSlope(double x) const;
    virtual double RightSlope(double x) const;

    double EndX = EndOfAll;

protected:
    Item() = default;
    Item(const Item&) = default;
    Item& operator=(const Item&) = default;
};

/// The virtual operations, made of Get and of a Fill for both kinds of samples. No constructor of
/// an item is inline, so that all loops are compiled in one source alone.
template <class Derived>
class EnvelopeItemT : public MEnvelopeComputer::Item
{
public:
    Item* Clone(EnvelopeItemSlot& place) const final
    {
        static_assert(sizeof(Derived) <= sizeof(EnvelopeItemSlot));
        static_assert(alignof(Derived) <= alignof(EnvelopeItemSlot));
        return ::new (place.bytes.data()) Derived(Self());
    }
    void FillFloat(float* out, double x, double dx, int count) const final
    {
        Self().Fill(out, x, dx, count);
    }
    void FillDouble(double* out, double x, double dx, int count) const final
    {
        Self().Fill(out, x, dx, count);
    }
    void MapFloat(float* values, int count) const final
    {
        const Derived self = Self(); // whose fields the loop can keep in registers
        for (int i = 0; i < count; ++i)
            values[i] = static_cast<float>(self.GetInBatch(values[i]));
    }
    /// What a batch has for Get.
    double GetInBatch(double x) const { return Self().Get(x); }

protected:
    const Derived& Self() const { return static_cast<const Derived&>(*this); }
};

/// A polynomial in x - x0.
template <class Derived, int Order>
class EnvelopePolynomialT : public EnvelopeItemT<Derived>
{
public:
    double Get(double x) const final
    {
        double value = coefficients[Order];
        for (int power = Order - 1; power >= 0; --power)
            value = value * (x - x0) + coefficients[static_cast<std::size_t>(power)];
        return value;
    }
    double LeftSlope(double x) const final
    {
        double slope = Order * coefficients[Order];
        for (int power = Order - 1; power >= 1; --power)
            slope = slope * (x - x0) + power * coefficients[static_cast<std::size_t>(power)];
        return slope;
    }
    double RightSlope(double x) const final { return LeftSlope(x); }

    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count) const
    {
        kernels::Polynomial(out, coefficients.data(), Order, x - x0, dx, count);
    }

protected:
    /// @p ofU are the coefficients over 0 to 1, which here stand for a range of @p width.
    EnvelopePolynomialT(double start, double width, const std::array<double, Order + 1>& ofU)
        : x0(start),
          coefficients(ofU)
    {
        double scale = 1.0;
        for (double& coefficient : coefficients)
        {
            coefficient *= scale;
            scale /= width;
        }
    }

private:
    double x0;
    std::array<double, Order + 1> coefficients;
};

/// Levels that hold for a width each: runs of equal samples.
template <class Derived>
class EnvelopeStepsT : public EnvelopeItemT<Derived>
{
public:
    double Get(double x) const final { return this->Self().GetLevel(GetIndex(x)); }
    double LeftSlope(double) const final { return 0.0; }
    double RightSlope(double) const final { return 0.0; }

    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count) const;

protected:
    EnvelopeStepsT(double start, double length, double count)
        : x0(start),
          width(length / count),
          inverseWidth(count / length)
    {
    }

private:
    /// Not as an integer, which could not hold all that comes of a position far outside.
    double GetIndex(double x) const { return std::trunc((x - x0) * inverseWidth); }

    double x0;
    double width;
    double inverseWidth;
};

class MEnvelopeComputer::ItemConstant final : public EnvelopeItemT<ItemConstant>
{
public:
    explicit ItemConstant(double y);

    double Get(double) const override { return value; }
    double LeftSlope(double) const override { return 0.0; }
    double RightSlope(double) const override { return 0.0; }
    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count) const;

private:
    double value;
};

class MEnvelopeComputer::ItemLinear final : public EnvelopePolynomialT<ItemLinear, 1>
{
public:
    ItemLinear(EnvelopePlace from, EnvelopePlace to);
};

class MEnvelopeComputer::ItemQuadratic final : public EnvelopePolynomialT<ItemQuadratic, 2>
{
public:
    ItemQuadratic(EnvelopePlace from, EnvelopePlace to, double curvature);
};

class MEnvelopeComputer::ItemFourthOrder final : public EnvelopePolynomialT<ItemFourthOrder, 4>
{
public:
    ItemFourthOrder(EnvelopePlace from, EnvelopePlace to, double curvature);
};

/// Hermite's cubic.
class MEnvelopeComputer::ItemCubic final : public EnvelopePolynomialT<ItemCubic, 3>
{
public:
    ItemCubic(EnvelopePlace from, EnvelopePlace to, double slopeFrom, double slopeTo);
};

/// An arc between the tangents of a superellipse; two powers a value.
class MEnvelopeComputer::ItemExponencial final : public EnvelopeItemT<ItemExponencial>
{
public:
    ItemExponencial(EnvelopePlace from, EnvelopePlace to, double curvature);

    double Get(double x) const override;
    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count) const;

private:
    double minusX0;
    double inverseWidth;
    double y0;
    double height;
    double power;
    double inversePower;
};

/// A quadratic Bezier curve over x. Its parameter t solves a quadratic equation, of which single
/// values keep a root that is none, while batches take the nearest t.
class MEnvelopeComputer::ItemBezier final : public EnvelopeItemT<ItemBezier>
{
public:
    /// @p control lies that far from @p from: as a place it would lose digits at large x.
    ItemBezier(EnvelopePlace from, EnvelopePlace control, EnvelopePlace to);

    double Get(double x) const override;
    double GetInBatch(double x) const;
    template <class Sample>
    void Fill(Sample* out, double x, double dx, int count) const;

private:
    double GetRadicand(double distance) const { return bend * distance + reachSquared; }
    double GetValue(double distance, double radicand) const;

    double x0;
    double reach; ///< from x0 to the control point
    double reachSquared;
    double bend; ///< of x(t): twice its second coefficient
    std::array<double, 3> ofT{};
    bool Linear; ///< t is a share of the width; then ofT stands for a polynomial in x - x0
};

class MEnvelopeComputer::ItemStairs final : public EnvelopeStepsT<ItemStairs>
{
public:
    /// @p count levels, the first of which is that of @p from.
    ItemStairs(EnvelopePlace from, EnvelopePlace to, double count);

    double GetLevel(double index) const { return y0 + index * stairHeight; }

private:
    double y0;
    double stairHeight;
};

/// Two levels in turn.
class MEnvelopeComputer::ItemPulses final : public EnvelopeStepsT<ItemPulses>
{
public:
    /// @p count whole periods from @p start on; @p first is the level of the first half.
    ItemPulses(double start, double length, double count, double first, double second);

    double GetLevel(double index) const
    {
        return std::trunc(0.5 * index) == 0.5 * index ? even : odd;
    }

private:
    double even;
    double odd;
};

/// How many of @p limit samples at x, x + dx, ... lie before @p end: at least one.
int CountSamplesBefore(double end, double x, double dx, int limit);
