#pragma once

/// The terminal that a program was started from, if any.
class MConsole
{
public:
    /// Whether a person reads what goes to the standard error: a terminal, no file or pipe.
    static bool IsErrorRead() noexcept;
};
