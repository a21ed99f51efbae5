#include "tests/CountedAllocations.h"

#include <cstdlib>

namespace
{

thread_local bool isCounting = false;
thread_local int allocations = 0;

[[maybe_unused]] void Count()
{
    allocations += isCounting ? 1 : 0;
}

} // namespace

#if !defined(__SANITIZE_ADDRESS__) && !defined(__SANITIZE_THREAD__)
// NOLINTBEGIN(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)
// The names are the C library's. They are exported, so that shared libraries call them as well.
extern "C"
{
    void* __libc_malloc(std::size_t size);
    void* __libc_realloc(void* block, std::size_t size);
    void __libc_free(void* block);

    [[gnu::visibility("default")]] void* malloc(std::size_t size)
    {
        Count();
        return __libc_malloc(size);
    }
    [[gnu::visibility("default")]] void* realloc(void* block, std::size_t size)
    {
        Count();
        return __libc_realloc(block, size);
    }
    [[gnu::visibility("default")]] void free(void* block)
    {
        Count();
        __libc_free(block);
    }
}
// NOLINTEND(bugprone-reserved-identifier, readability-inconsistent-declaration-parameter-name)

bool CanCountAllocations() noexcept
{
    return true;
}
#else
bool CanCountAllocations() noexcept
{
    return false;
}
#endif

int AllocationsOf(const std::function<void()>& work)
{
    allocations = 0;
    isCounting = true;
    work();
    isCounting = false;
    return allocations;
}
