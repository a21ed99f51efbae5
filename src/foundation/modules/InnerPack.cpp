#include "foundation/modules/MResources.h"

// The assembler takes the file as it is; compiled as an array it would cost seconds per megabyte.
// The labels are local, so that no module exports them.
#ifdef _WIN32
asm(".section .rdata,\"dr\"");
#else
asm(".section .rodata,\"a\"");
#endif
asm("TonvaleInnerPackStart:\n"
    ".incbin \"" TONVALE_PACK_FILE "\"\n"
    "TonvaleInnerPackEnd:\n"
    ".byte 0\n"
    ".text");

extern "C" const std::byte TonvaleInnerPackStart[];
extern "C" const std::byte TonvaleInnerPackEnd[];

namespace
{

[[maybe_unused]] const bool IsSet = []
{
    MResources::SetInnerPack({TonvaleInnerPackStart, TonvaleInnerPackEnd});
    return true;
}();

} // namespace
