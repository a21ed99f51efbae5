#include "tools/render/ProgressLine.h"

#include <cstdio>

#include "foundation/streams/MConsole.h"

namespace
{

constexpr std::chrono::milliseconds FirstDelay(1000);
constexpr std::chrono::milliseconds Delay(250);

} // namespace

ProgressLine::ProgressLine(std::int64_t totalSteps) noexcept
    : total(totalSteps),
      isTerminal(MConsole::IsErrorRead()),
      next(Clock::now() + FirstDelay)
{
}

void ProgressLine::Show(std::int64_t doneSteps)
{
    if (!isTerminal || Clock::now() < next)
        return;
    const auto percent =
        static_cast<int>(100.0 * static_cast<double>(doneSteps) / static_cast<double>(total));
    std::fprintf(stderr, "\rRendering: %3d %%", percent);
    std::fflush(stderr);
    isShown = true;
    next = Clock::now() + Delay;
}

void ProgressLine::Erase() noexcept
{
    if (isShown)
        std::fputs("\r                \r", stderr);
    isShown = false;
}
