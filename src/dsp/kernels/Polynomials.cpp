#include "dsp/kernels/Polynomials.h"

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Polynomials.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/DefineKernel.h"

HWY_BEFORE_NAMESPACE();
namespace kernels
{
namespace HWY_NAMESPACE
{
namespace
{
namespace hn = hwy::HWY_NAMESPACE;

template <class D>
void StoreValues(D lanes, hn::VFromD<D> values, double* dst)
{
    hn::StoreU(values, lanes, dst);
}

template <class D>
void StoreValues(D /*lanes*/, hn::VFromD<D> values, float* dst)
{
    const hn::Rebind<float, D> narrow;
    hn::StoreU(hn::DemoteTo(narrow, values), narrow, dst);
}

/// What the values of one call have in common.
struct Curve
{
    const double* c;
    int order;
    double x;
    double dx;
};

/// The values @p first and up, @p Vectors vectors of them, which do not wait for each other.
template <int Vectors, class D, typename T>
void Evaluate(D lanes, T* dst, const Curve& curve, int first)
{
    const int width = static_cast<int>(hn::Lanes(lanes));
    hn::VFromD<D> x[Vectors];
    hn::VFromD<D> y[Vectors];
    for (int v = 0; v < Vectors; ++v)
    {
        const auto index = hn::Iota(lanes, static_cast<double>(first + v * width));
        x[v] = hn::Add(hn::Set(lanes, curve.x), hn::Mul(index, hn::Set(lanes, curve.dx)));
        y[v] = hn::Set(lanes, curve.c[curve.order]);
    }
    for (int power = curve.order - 1; power >= 0; --power)
        for (int v = 0; v < Vectors; ++v)
            y[v] = hn::Add(hn::Mul(y[v], x[v]), hn::Set(lanes, curve.c[power]));
    for (int v = 0; v < Vectors; ++v)
        StoreValues(lanes, y[v], dst + first + v * width);
}

template <typename T>
void EvaluateAll(T* dst, const Curve& curve, int n)
{
    if (dst == nullptr || curve.c == nullptr || curve.order < 0)
        return;

    const hn::ScalableTag<double> lanes;
    const int width = static_cast<int>(hn::Lanes(lanes));
    int i = 0;
    for (; n - i >= 4 * width; i += 4 * width)
        Evaluate<4>(lanes, dst, curve, i);
    for (; n - i >= width; i += width)
        Evaluate<1>(lanes, dst, curve, i);
    for (; i < n; ++i)
        Evaluate<1>(hn::CappedTag<double, 1>(), dst, curve, i);
}

void PolynomialFloat(float* dst, const double* c, int order, double x, double dx, int n)
{
    EvaluateAll(dst, {c, order, x, dx}, n);
}

void PolynomialDouble(double* dst, const double* c, int order, double x, double dx, int n)
{
    EvaluateAll(dst, {c, order, x, dx}, n);
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

// The versions need a name of their own for each type.
HWY_EXPORT(PolynomialFloat);
HWY_EXPORT(PolynomialDouble);

void Polynomial(float* dst, const double* c, int order, double x, double dx, int n) noexcept
{
    TRACE_NULL_POINTERS(Polynomial, (dst, c));
    ChooseVersion(HWY_DISPATCH_TABLE(PolynomialFloat))(dst, c, order, x, dx, n);
}

void Polynomial(double* dst, const double* c, int order, double x, double dx, int n) noexcept
{
    TRACE_NULL_POINTERS(Polynomial, (dst, c));
    ChooseVersion(HWY_DISPATCH_TABLE(PolynomialDouble))(dst, c, order, x, dx, n);
}

} // namespace kernels
#endif
