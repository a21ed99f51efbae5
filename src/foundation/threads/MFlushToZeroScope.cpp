#include "foundation/threads/MFlushToZeroScope.h"

#ifdef __x86_64__

#include <xmmintrin.h>

namespace
{
constexpr unsigned FlushToZero = 0x8000;      ///< results
constexpr unsigned DenormalsAreZero = 0x0040; ///< operands
} // namespace

MFlushToZeroScope::MFlushToZeroScope() noexcept : before(_mm_getcsr())
{
    _mm_setcsr(before | FlushToZero | DenormalsAreZero);
}

MFlushToZeroScope::~MFlushToZeroScope()
{
    _mm_setcsr(before);
}

#else

MFlushToZeroScope::MFlushToZeroScope() noexcept : before(0) {}
MFlushToZeroScope::~MFlushToZeroScope() = default;

#endif
