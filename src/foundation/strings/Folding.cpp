#include "foundation/strings/Folding.h"

#include <algorithm>
#include <iterator>

namespace
{

struct FoldingPair
{
    char16_t character;
    char16_t base;
};

/// In the order of their characters.
constexpr FoldingPair FoldingPairs[] = {
#include "foundation/strings/FoldingTable.inc"
};

static_assert(std::size(FoldingPairs) == 988 && FoldingPairs[0].character == FirstFolded);
static_assert(std::ranges::is_sorted(FoldingPairs, {}, &FoldingPair::character));

} // namespace

char16_t FoldToBaseLetter(char16_t character) noexcept
{
    const FoldingPair* const found =
        std::ranges::lower_bound(FoldingPairs, character, {}, &FoldingPair::character);
    return found != std::end(FoldingPairs) && found->character == character ? found->base
                                                                            : character;
}
