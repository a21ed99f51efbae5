#pragma once

#include <hwy/highway.h>

/// Defines what callers see of a kernel: a function that calls the version of @p name for this
/// processor out of those that were compiled. Only behind HWY_ONCE; @p parameters and @p arguments
/// stand in parentheses:
///
///     DEFINE_KERNEL(void, Add, (float* dst, const float* src, int n), (dst, src, n))
#define DEFINE_KERNEL(result, name, parameters, arguments)                                         \
    HWY_EXPORT(name);                                                                              \
    result name parameters noexcept                                                                \
    {                                                                                              \
        return HWY_DYNAMIC_DISPATCH(name) arguments;                                               \
    }
