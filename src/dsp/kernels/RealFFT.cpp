#include "dsp/kernels/RealFFT.h"

#include <bit>
#include <new>
#include <type_traits>

#include <kiss_fftr.h>

#include "dsp/kernels/Arithmetic.h"
#include "dsp/kernels/NullPointerTrace.h"
#include "foundation/threads/MException.h"

namespace kernels
{
namespace
{

struct PlanDeleter
{
    void operator()(kiss_fftr_state* plan) const noexcept { kiss_fftr_free(plan); }
};
using Plan = std::unique_ptr<kiss_fftr_state, PlanDeleter>;

Plan MakePlan(int size, bool isInverse)
{
    Plan plan(kiss_fftr_alloc(size, isInverse ? 1 : 0, nullptr, nullptr));
    if (plan == nullptr)
        throw std::bad_alloc();
    return plan;
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

struct RealFFT::Plans
{
    explicit Plans(int size) : forward(MakePlan(size, false)), inverse(MakePlan(size, true)) {}

    Plan forward;
    Plan inverse;
};

RealFFT::RealFFT(int transformSize)
    : size(CheckedSize(transformSize)),
      plans(std::make_unique<Plans>(size))
{
}

RealFFT::~RealFFT() = default;
RealFFT::RealFFT(RealFFT&&) noexcept = default;
RealFFT& RealFFT::operator=(RealFFT&&) noexcept = default;

void RealFFT::Forward(const float* time, Complex* spectrum) noexcept
{
    TRACE_NULL_POINTERS(RealFFT::Forward, (time, spectrum));
    if (time != nullptr && spectrum != nullptr)
        kiss_fftr(plans->forward.get(), time, reinterpret_cast<kiss_fft_cpx*>(spectrum));
}

void RealFFT::Inverse(const Complex* spectrum, float* time) noexcept
{
    TRACE_NULL_POINTERS(RealFFT::Inverse, (spectrum, time));
    if (spectrum == nullptr || time == nullptr)
        return;
    kiss_fftri(plans->inverse.get(), reinterpret_cast<const kiss_fft_cpx*>(spectrum), time);
    Scale(time, time, 1.0f / static_cast<float>(size), size);
}

} // namespace kernels
