#include "dsp/kernels/RealFFT.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <memory>
#include <new>
#include <numbers>
#include <type_traits>

#include <kiss_fft.h>

#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "dsp/kernels/RealFFT.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "dsp/kernels/DefineKernel.h"
#include "foundation/threads/MException.h"
#include "foundation/threads/MLock.h"
#include "foundation/threads/MLockGuard.h"

HWY_BEFORE_NAMESPACE();
namespace kernels
{
namespace HWY_NAMESPACE
{
namespace
{
namespace hn = hwy::HWY_NAMESPACE;

// Samples in pairs make complex numbers z, half as many. Between their transform Z and the first
// half X of the real one, of which the rest is a mirror image, stands for each k with its mirror m:
//
//     X[k] = (Z[k] + conj Z[m]) / 2 + turn[k] * (Z[k] - conj Z[m])
//     X[m] = the conjugate of the same with a minus in the middle
//
// The way back is the same with X and Z exchanged and the turns conjugated.

#if HWY_TARGET == HWY_SCALAR

template <class D>
void FoldAt(D /*lanes*/, Complex* dst, const Complex* src, const Complex* turns, int k, int m,
            float turnSign, float scale)
{
    const float re = src[k].real() - src[m].real();
    const float im = src[k].imag() + src[m].imag();
    const float turnRe = turns[k].real() * scale;
    const float turnIm = turns[k].imag() * turnSign * scale;
    const float half = 0.5f * scale;
    const float evenRe = (src[k].real() + src[m].real()) * half;
    const float evenIm = (src[k].imag() - src[m].imag()) * half;
    const float oddRe = turnRe * re - turnIm * im;
    const float oddIm = turnRe * im + turnIm * re;
    dst[k] = Complex(evenRe + oddRe, evenIm + oddIm);
    dst[m] = Complex(evenRe - oddRe, oddIm - evenIm);
}

#else

/// The complex numbers of @p v back to front.
template <class D, class V>
V ReverseNumbers(D lanes, V v)
{
    const hn::Repartition<double, D> numbers;
    return hn::BitCast(lanes, hn::Reverse(numbers, hn::BitCast(numbers, v)));
}

/// For as many numbers from @p k on as fit into a vector, and as many up to their mirror @p m.
template <class D>
void FoldAt(D lanes, Complex* dst, const Complex* src, const Complex* turns, int k, int m,
            float turnSign, float scale)
{
    const int back = m + 1 - static_cast<int>(hn::Lanes(lanes)) / 2;
    const auto minusOdd = hn::OddEven(hn::SignBit(lanes), hn::Zero(lanes));
    const auto left = hn::LoadU(lanes, reinterpret_cast<const float*>(src + k));
    const auto right =
        hn::Xor(ReverseNumbers(lanes, hn::LoadU(lanes, reinterpret_cast<const float*>(src + back))),
                minusOdd);

    const auto even = hn::Mul(hn::Add(left, right), hn::Set(lanes, 0.5f * scale));
    const auto difference = hn::Sub(left, right);
    const auto turn = hn::LoadU(lanes, reinterpret_cast<const float*>(turns + k));
    const auto turnRe = hn::Mul(hn::DupEven(turn), hn::Set(lanes, scale));
    const auto turnIm = hn::Mul(hn::DupOdd(turn), hn::Set(lanes, turnSign * scale));
    const auto crossed = hn::Mul(turnIm, hn::Reverse2(lanes, difference));
    const auto minusEven = hn::OddEven(hn::Zero(lanes), hn::SignBit(lanes));
    const auto odd = hn::Add(hn::Mul(turnRe, difference), hn::Xor(crossed, minusEven));

    hn::StoreU(hn::Add(even, odd), lanes, reinterpret_cast<float*>(dst + k));
    hn::StoreU(ReverseNumbers(lanes, hn::Xor(hn::Sub(even, odd), minusOdd)), lanes,
               reinterpret_cast<float*>(dst + back));
}

#endif

/// All but the first number and the last, of @p count; @p turnSign is -1 on the way back. Rounds
/// alike on all processors: a @p scale that is a power of two takes nothing away.
void Fold(Complex* dst, const Complex* src, const Complex* turns, int count, float turnSign,
          float scale)
{
    const hn::ScalableTag<float> lanes;
    const int width = std::max(static_cast<int>(hn::Lanes(lanes)) / 2, 1);
    const int middle = count / 2;
    int k = 1;
    for (; k + width - 1 <= middle; k += width)
        FoldAt(lanes, dst, src, turns, k, count - k, turnSign, scale);
    for (; k <= middle; ++k)
        FoldAt(hn::CappedTag<float, 2>(), dst, src, turns, k, count - k, turnSign, scale);
}

} // namespace
} // namespace HWY_NAMESPACE
} // namespace kernels
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace kernels
{
namespace
{

HWY_EXPORT(Fold);

struct PlanDeleter
{
    void operator()(kiss_fft_state* state) const noexcept { kiss_fft_free(state); }
};
using ComplexPlan = std::unique_ptr<kiss_fft_state, PlanDeleter>;

ComplexPlan MakeComplexPlan(int size, bool isInverse)
{
    ComplexPlan plan(kiss_fft_alloc(size, isInverse ? 1 : 0, nullptr, nullptr));
    if (plan == nullptr)
        throw std::bad_alloc();
    return plan;
}

/// Does not write into the plan, as the blocks are not the same.
void Transform(const ComplexPlan& plan, const Complex* src, Complex* dst) noexcept
{
    kiss_fft(plan.get(), reinterpret_cast<const kiss_fft_cpx*>(src),
             reinterpret_cast<kiss_fft_cpx*>(dst));
}

int CheckedSize(int size)
{
    if (size < RealFFT::MinSize || size > RealFFT::MaxSize ||
        !std::has_single_bit(static_cast<unsigned>(size)))
        throw MException("Invalid transform size.", MException::BadArgument);
    return size;
}

static_assert(sizeof(Complex) == sizeof(kiss_fft_cpx) &&
              std::is_same_v<decltype(kiss_fft_cpx::r), float>);

} // namespace

/// What only depends on the size, and is only read once it is made.
struct RealFFT::Plan
{
    explicit Plan(int size)
        : forward(MakeComplexPlan(size / 2, false)),
          inverse(MakeComplexPlan(size / 2, true)),
          turns(static_cast<std::size_t>(size / 4 + 1))
    {
        for (std::size_t k = 0; k < turns.size(); ++k)
        {
            const double angle = 2.0 * std::numbers::pi * static_cast<double>(k) / size;
            turns[k] = std::complex<double>(0.0, -0.5) * std::polar(1.0, -angle);
        }
    }

    static const Plan* OfSize(int size);

    ComplexPlan forward;
    ComplexPlan inverse;
    std::vector<Complex> turns; ///< -j / 2 * exp(-2 * pi * j * k / size)
};

const RealFFT::Plan* RealFFT::Plan::OfSize(int size)
{
    static MLock lock;
    static std::array<std::unique_ptr<const Plan>, std::bit_width(unsigned{MaxSize})> plans;
    const MLockGuard guard(lock);
    std::unique_ptr<const Plan>& plan = plans[std::bit_width(static_cast<unsigned>(size)) - 1U];
    if (plan == nullptr)
        plan = std::make_unique<const Plan>(size);
    return plan.get();
}

RealFFT::RealFFT(int transformSize)
    : size(CheckedSize(transformSize)),
      plan(Plan::OfSize(size)),
      scratch(static_cast<std::size_t>(size / 2))
{
}

void RealFFT::Forward(const float* time, Complex* spectrum) noexcept
{
    TRACE_NULL_POINTERS(RealFFT::Forward, (time, spectrum));
    if (time == nullptr || spectrum == nullptr)
        return;

    const int count = size / 2;
    Transform(plan->forward, reinterpret_cast<const Complex*>(time), scratch.data());
    ChooseVersion(HWY_DISPATCH_TABLE(Fold))(spectrum, scratch.data(), plan->turns.data(), count,
                                            1.0f, 1.0f);
    const Complex first = scratch[0];
    spectrum[0] = first.real() + first.imag();
    spectrum[count] = first.real() - first.imag();
}

void RealFFT::Inverse(const Complex* spectrum, float* time) noexcept
{
    TRACE_NULL_POINTERS(RealFFT::Inverse, (spectrum, time));
    if (spectrum == nullptr || time == nullptr)
        return;

    const int count = size / 2;
    const float scale = 1.0f / static_cast<float>(count);
    ChooseVersion(HWY_DISPATCH_TABLE(Fold))(scratch.data(), spectrum, plan->turns.data(), count,
                                            -1.0f, scale);
    const float first = spectrum[0].real() * 0.5f * scale;
    const float last = spectrum[count].real() * 0.5f * scale;
    scratch[0] = Complex(first + last, first - last);
    Transform(plan->inverse, scratch.data(), reinterpret_cast<Complex*>(time));
}

} // namespace kernels
#endif
