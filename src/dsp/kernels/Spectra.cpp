#include "dsp/kernels/Spectra.h"

#include <algorithm>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/Spectra.cpp"
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

// Real parts stand in the even lanes and imaginary ones in the odd lanes. The rest of a block goes
// through vectors of one number each: out of the formula as plain code, g++ makes fused operations
// for the processors that have them, whatever its options say.

#if HWY_TARGET == HWY_SCALAR

template <class D>
void MultiplyAt(D /*lanes*/, Complex* dst, const Complex* a, const Complex* b)
{
    *dst = Complex(a->real() * b->real() - a->imag() * b->imag(),
                   a->real() * b->imag() + a->imag() * b->real());
}

template <class D>
void SquareAt(D /*lanes*/, Complex* dst)
{
    *dst = Complex(dst->real() * dst->real() + dst->imag() * dst->imag(), 0.0f);
}

#else

float* Parts(Complex* numbers)
{
    return reinterpret_cast<float*>(numbers);
}

const float* Parts(const Complex* numbers)
{
    return reinterpret_cast<const float*>(numbers);
}

template <class D>
void MultiplyAt(D lanes, Complex* dst, const Complex* a, const Complex* b)
{
    const auto x = hn::LoadU(lanes, Parts(a));
    const auto y = hn::LoadU(lanes, Parts(b));
    const auto direct = hn::Mul(hn::DupEven(x), y);
    const auto crossed = hn::Mul(hn::DupOdd(x), hn::Reverse2(lanes, y));
    const auto minusEven = hn::OddEven(hn::Zero(lanes), hn::SignBit(lanes));
    hn::StoreU(hn::Add(direct, hn::Xor(crossed, minusEven)), lanes, Parts(dst));
}

template <class D>
void SquareAt(D lanes, Complex* dst)
{
    const auto x = hn::LoadU(lanes, Parts(dst));
    const auto squares = hn::Mul(x, x);
    const auto sums = hn::Add(squares, hn::Reverse2(lanes, squares));
    hn::StoreU(hn::OddEven(hn::Zero(lanes), sums), lanes, Parts(dst));
}

#endif

/// Whole vectors first, then number by number: @p at(lanes, i).
template <class At>
void ForAll(int n, At at)
{
    const hn::ScalableTag<float> lanes;
    const int width = std::max(static_cast<int>(hn::Lanes(lanes)) / 2, 1);
    int i = 0;
    for (; n - i >= width; i += width)
        at(lanes, i);
    for (; i < n; ++i)
        at(hn::CappedTag<float, 2>(), i);
}

void MultiplySpectra(Complex* dst, const Complex* a, const Complex* b, int n)
{
    if (dst != nullptr && a != nullptr && b != nullptr)
        ForAll(n, [=](auto lanes, int i) HWY_ATTR { MultiplyAt(lanes, dst + i, a + i, b + i); });
}

void PowerSpectrum(Complex* dst, int n)
{
    if (dst != nullptr)
        ForAll(n, [=](auto lanes, int i) HWY_ATTR { SquareAt(lanes, dst + i); });
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{

DEFINE_KERNEL(void, MultiplySpectra, (Complex * dst, const Complex* a, const Complex* b, int n),
              (dst, a, b, n))
DEFINE_KERNEL(void, PowerSpectrum, (Complex * dst, int n), (dst, n))

} // namespace kernels
#endif
