#include "foundation/strings/MStringSlab.h"

#include <algorithm>
#include <new>

MStringSlab::~MStringSlab()
{
    Finish();
}

MString MStringSlab::Make(std::u16string_view characters)
{
    using Block = MString::Block;
    constexpr std::size_t Alignment = alignof(Block);
    if (characters.empty() || characters.size() >= MaxTextBytes / sizeof(char16_t))
        return MString::FromUTF16(characters);

    const std::size_t textBytes = (characters.size() + 1) * sizeof(char16_t);
    const std::size_t bytes = (sizeof(Block) + textBytes + Alignment - 1) / Alignment * Alignment;
    if (slab == nullptr || fill + bytes > SlabBytes)
    {
        MString::Slab* const next = MString::Slab::Allocate(SlabBytes, MaxTexts);
        Finish();
        slab = next;
        fill = sizeof(MString::Slab);
        left = MaxTexts;
    }
    void* const memory = reinterpret_cast<std::byte*>(slab) + fill;
    Block* const block = new (memory) Block{static_cast<std::uint32_t>(2 * fill + 1), 1};
    fill += bytes;
    --left;
    *std::ranges::copy(characters, block->Characters()).out = 0;
    return {block, characters.size()};
}

void MStringSlab::Finish() noexcept
{
    if (slab != nullptr)
        slab->Release(left);
}
