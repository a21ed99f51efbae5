#pragma once

/// Lets Ctrl-C or a terminating signal end the program like any failure, so that no partial file is
/// left. For the main thread.
namespace interruption
{

/// From now on signals are noted instead of ending the process.
void Install() noexcept;

/// @throws MException if a signal came since.
void Check();

} // namespace interruption
