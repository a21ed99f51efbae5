#pragma once

/// For what has other numbers or another order of bytes there, and calls nothing.
#ifdef _WIN32
inline constexpr bool IsWindows = true;
#else
inline constexpr bool IsWindows = false;
#endif
