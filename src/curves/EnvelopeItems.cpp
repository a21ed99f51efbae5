#include "curves/EnvelopeItems.h"

#include <algorithm>
#include <limits>

namespace
{

/// The width over which slopes are measured. Far from 0 it grows, as a fixed one would fall between
/// two neighbouring numbers.
double GetSlopeStep(double x)
{
    return std::max(1e-10, std::abs(x) * 1e-13);
}

/// The share of t^4 in a fourth order bend, and with a negative curvature its mirror image.
std::array<double, 5> GetFourthOrder(EnvelopePlace from, EnvelopePlace to, double c)
{
    const double dy = to.y - from.y;
    if (c > 0.0)
        return {from.y, dy * (1.0 - c), 0.0, 0.0, dy * c};
    return {from.y, dy * (1.0 - 3.0 * c), dy * 6.0 * c, dy * -4.0 * c, dy * c};
}

} // namespace

int CountSamplesBefore(double end, double x, double dx, int limit)
{
    const double count = std::ceil((end - x) / dx);
    return count < limit ? std::max(1, static_cast<int>(std::max(count, 0.0))) : limit;
}

double MEnvelopeComputer::Item::LeftSlope(double x) const
{
    const double left = x - GetSlopeStep(x);
    return (Get(x) - Get(left)) / (x - left);
}

double MEnvelopeComputer::Item::RightSlope(double x) const
{
    const double right = x + GetSlopeStep(x);
    return (Get(right) - Get(x)) / (right - x);
}

MEnvelopeComputer::ItemConstant::ItemConstant(double y) : value(y) {}

template <class Sample>
void MEnvelopeComputer::ItemConstant::Fill(Sample* out, double, double, int count) const
{
    std::fill_n(out, count, static_cast<Sample>(value));
}

MEnvelopeComputer::ItemLinear::ItemLinear(EnvelopePlace from, EnvelopePlace to)
    : EnvelopePolynomialT(from.x, to.x - from.x, {from.y, to.y - from.y})
{
}

MEnvelopeComputer::ItemQuadratic::ItemQuadratic(EnvelopePlace from, EnvelopePlace to,
                                                double curvature)
    : EnvelopePolynomialT(
          from.x, to.x - from.x,
          {from.y, (to.y - from.y) * (1.0 - curvature), (to.y - from.y) * curvature})
{
}

MEnvelopeComputer::ItemFourthOrder::ItemFourthOrder(EnvelopePlace from, EnvelopePlace to,
                                                    double curvature)
    : EnvelopePolynomialT(from.x, to.x - from.x, GetFourthOrder(from, to, curvature))
{
}

MEnvelopeComputer::ItemCubic::ItemCubic(EnvelopePlace from, EnvelopePlace to, double slopeFrom,
                                        double slopeTo)
    : EnvelopePolynomialT(from.x, to.x - from.x,
                          {from.y, slopeFrom * (to.x - from.x),
                           3.0 * (to.y - from.y) - (2.0 * slopeFrom + slopeTo) * (to.x - from.x),
                           (slopeFrom + slopeTo) * (to.x - from.x) - 2.0 * (to.y - from.y)})
{
}

MEnvelopeComputer::ItemExponencial::ItemExponencial(EnvelopePlace from, EnvelopePlace to,
                                                    double curvature)
    : minusX0(-from.x),
      inverseWidth(1.0 / (to.x - from.x)),
      y0(from.y),
      height(to.y - from.y),
      power(std::exp(3.0 * curvature)),
      inversePower(1.0 / power)
{
}

double MEnvelopeComputer::ItemExponencial::Get(double x) const
{
    const double u = std::max(0.0, (x + minusX0) * inverseWidth);
    return y0 + height * (1.0 - std::pow(std::max(0.0, 1.0 - std::pow(u, power)), inversePower));
}

template <class Sample>
void MEnvelopeComputer::ItemExponencial::Fill(Sample* out, double x, double dx, int count) const
{
    for (int i = 0; i < count; ++i)
        out[i] = static_cast<Sample>(Get(x + i * dx));
}

MEnvelopeComputer::ItemBezier::ItemBezier(EnvelopePlace from, EnvelopePlace control,
                                          EnvelopePlace to)
    : x0(from.x),
      reach(control.x),
      reachSquared(reach * reach),
      bend((to.x - from.x) - 2.0 * reach),
      ofT{from.y, 2.0 * control.y, (to.y - from.y) - 2.0 * control.y},
      Linear(std::abs(bend) < 1e-10)
{
    if (Linear)
    {
        const double width = to.x - from.x;
        ofT[1] /= width;
        ofT[2] /= width * width;
    }
}

double MEnvelopeComputer::ItemBezier::Get(double x) const
{
    return GetValue(x - x0, GetRadicand(x - x0));
}

double MEnvelopeComputer::ItemBezier::GetInBatch(double x) const
{
    const double radicand = GetRadicand(x - x0);
    return GetValue(x - x0, radicand > 0.0 ? radicand : 0.0);
}

double MEnvelopeComputer::ItemBezier::GetValue(double distance, double radicand) const
{
    // The root as a quotient: the usual difference over the bend has no digits left when the curve
    // is nearly straight in x, as almost every rounded corner is. At the start both may be 0.
    const double divisor = reach + std::sqrt(radicand);
    const double t = distance / (divisor > 1e-300 ? divisor : 1e-300);
    const double position = Linear ? distance : t;
    return (ofT[2] * position + ofT[1]) * position + ofT[0];
}

template <class Sample>
void MEnvelopeComputer::ItemBezier::Fill(Sample* out, double x, double dx, int count) const
{
    if (Linear)
    {
        kernels::Polynomial(out, ofT.data(), 2, x - x0, dx, count);
        return;
    }
    const ItemBezier self = *this; // whose fields the loop can keep in registers
    const double start = x - x0;
    for (int i = 0; i < count; ++i)
    {
        const double distance = start + i * dx;
        const double radicand = self.GetRadicand(distance);
        out[i] = static_cast<Sample>(self.GetValue(distance, radicand > 0.0 ? radicand : 0.0));
    }
}

MEnvelopeComputer::ItemStairs::ItemStairs(EnvelopePlace from, EnvelopePlace to, double count)
    : EnvelopeStepsT(from.x, to.x - from.x, count),
      y0(from.y),
      stairHeight((to.y - from.y) / count)
{
}

MEnvelopeComputer::ItemPulses::ItemPulses(double start, double length, double count, double first,
                                          double second)
    : EnvelopeStepsT(start, length, 2.0 * count),
      even(first),
      odd(second)
{
}

template <class Derived>
template <class Sample>
void EnvelopeStepsT<Derived>::Fill(Sample* out, double x, double dx, int count) const
{
    for (int i = 0; i < count;)
    {
        const double from = x + i * dx;
        const double index = GetIndex(from);
        const double end = x0 + (index >= 0.0 ? index + 1.0 : index) * width;
        int run = CountSamplesBefore(end, from, dx, count - i);
        // Rounding may put the last one behind the edge.
        if (run > 1 && GetIndex(x + (i + run - 1) * dx) != index)
            --run;
        std::fill_n(out + i, run, static_cast<Sample>(this->Self().GetLevel(index)));
        i += run;
    }
}
