#pragma once

#include <chrono>
#include <cstdint>

/// Tells on stderr how far a long render is: one line, from one second on, a few times a second,
/// and only if a person looks on.
class ProgressLine
{
public:
    /// @p totalSteps is above 0.
    explicit ProgressLine(std::int64_t totalSteps) noexcept;
    ~ProgressLine() { Erase(); }
    ProgressLine(const ProgressLine&) = delete;
    ProgressLine& operator=(const ProgressLine&) = delete;

    void Show(std::int64_t doneSteps);
    void Erase() noexcept;

private:
    using Clock = std::chrono::steady_clock;

    std::int64_t total;
    bool isTerminal;
    bool isShown = false;
    Clock::time_point next; ///< when the line is due again
};
