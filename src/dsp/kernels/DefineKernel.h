#pragma once

#include <cstddef>

#include <hwy/highway.h>

#include "dsp/kernels/NullPointerTrace.h"

namespace kernels
{

/// Where the version for this processor stands in @p versions, the table of a kernel. Highway's own
/// HWY_DYNAMIC_DISPATCH asks the library anew at every call, which on a block of 64 samples takes
/// as long as the work.
template <class Version, std::size_t Count>
Version ChooseVersion(const Version (&versions)[Count]) noexcept
{
    // What is chosen may change, as tests do it; the place where that is kept does not.
    static hwy::ChosenTarget& chosen = hwy::GetChosenTarget();
    return versions[Count == 1 ? 0 : chosen.GetIndex()];
}

} // namespace kernels

/// Defines what callers see of a kernel: a function that calls the version of @p name for this
/// processor out of those that were compiled. Only behind HWY_ONCE; @p parameters and @p arguments
/// stand in parentheses:
///
///     DEFINE_KERNEL(void, Add, (float* dst, const float* src, int n), (dst, src, n))
#define DEFINE_KERNEL(result, name, parameters, arguments)                                         \
    HWY_EXPORT(name);                                                                              \
    result name parameters noexcept                                                                \
    {                                                                                              \
        TRACE_NULL_POINTERS(name, arguments);                                                      \
        return ChooseVersion(HWY_DISPATCH_TABLE(name)) arguments;                                  \
    }
