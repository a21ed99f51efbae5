#pragma once

#include <functional>

/// Whether allocations can be counted here: the sanitizers stand in for the allocator themselves.
bool CanCountAllocations() noexcept;

/// How often @p work asks for memory or gives it back on this thread, in shared libraries too. To
/// be linked into a program of its own, as it stands in for the GNU C library's allocator.
int AllocationsOf(const std::function<void()>& work);
