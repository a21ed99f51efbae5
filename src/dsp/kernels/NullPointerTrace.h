#pragma once

#include <string_view>
#include <type_traits>

#include "foundation/threads/MGuard.h"

namespace kernels
{

/// Tells the trace function of null pointers among the arguments of a kernel, in debug builds
/// alone. Kernels pass over such calls; whoever makes one by mistake wants to know.
struct NullPointerTrace
{
    const char* message; ///< what to tell

    template <class... Arguments>
    void operator()([[maybe_unused]] Arguments... arguments) const noexcept
    {
#ifndef NDEBUG
        if ((... || IsNull(arguments)))
            Trace(message);
#endif
    }

private:
    template <class Argument>
    static bool IsNull(Argument argument) noexcept
    {
        if constexpr (std::is_pointer_v<Argument>)
            return argument == nullptr;
        else
            return false;
    }
};

} // namespace kernels

/// To begin a kernel with; @p arguments are its own, in parentheses.
#define TRACE_NULL_POINTERS(name, arguments)                                                       \
    kernels::NullPointerTrace{"kernels::" #name ": null pointer"} arguments
