#include "tools/render/Interruption.h"

#include <csignal>

#include "tools/render/Failure.h"

namespace
{

volatile std::sig_atomic_t isInterrupted = 0;

extern "C" void OnSignal(int /*signal*/)
{
    isInterrupted = 1;
}

} // namespace

namespace interruption
{

void Install() noexcept
{
    std::signal(SIGINT, &OnSignal);
    std::signal(SIGTERM, &OnSignal);
}

void Check()
{
    if (isInterrupted != 0)
        throw Failure("interrupted; nothing was written");
}

} // namespace interruption
