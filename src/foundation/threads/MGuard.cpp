#include "foundation/threads/MGuard.h"

#include <array>
#include <atomic>
#include <cstdio>

namespace
{
std::atomic<MTraceFunction> trace = nullptr;
} // namespace

MTraceFunction SetTraceFunction(MTraceFunction function) noexcept
{
    return trace.exchange(function);
}

void Trace(const char* message) noexcept
{
    if (const MTraceFunction function = trace.load())
        function(message);
}

void TraceSystemException(const char* routine) noexcept
{
    // No MString here: what failed may have been the memory.
    std::array<char, 256> message{};
    std::snprintf(message.data(), message.size(), "SYSTEM EXCEPTION! %s", routine);
    Trace(message.data());
}
