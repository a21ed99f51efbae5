#include "foundation/strings/Folding.h"

char16_t FoldToBaseLetter(char16_t character) noexcept
{
    return character;
}
